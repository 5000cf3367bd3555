#include "pdf/NumberFormat.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr double scales[] = {1, 10, 100, 1000, 10000, 100000};
constexpr uint64_t divisors[] = {1, 10, 100, 1000, 10000, 100000};

// The digits of a scaled integer with its point, "-" for a negative value
// that does not round to zero, trailing zeros of the decimals and a bare
// point left out.
std::size_t writeScaled(bool negative, uint64_t scaled, int decimals, char* at) {
    char* p = at;
    if (negative && scaled != 0) *p++ = '-';
    uint64_t whole = scaled / divisors[decimals];
    uint64_t fraction = scaled % divisors[decimals];
    char digits[24];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + whole % 10);
        whole /= 10;
    } while (whole != 0);
    while (count > 0)
        *p++ = digits[--count];
    if (fraction != 0) {
        while (fraction % 10 == 0)
            fraction /= 10, --decimals;
        *p++ = '.';
        for (int i = decimals - 1; i >= 0; --i) {
            p[i] = static_cast<char>('0' + fraction % 10);
            fraction /= 10;
        }
        p += decimals;
    }
    *p = '\0';
    return static_cast<std::size_t>(p - at);
}

} // namespace

std::size_t formatNumber(double value, char* at) {
    const double magnitude = std::fabs(value);
    int decimals = 5;
    if (magnitude >= 10000)
        decimals = 0;
    else if (magnitude >= 1000)
        decimals = 1;
    else if (magnitude >= 10)
        decimals = 3;
    else if (magnitude >= 1)
        decimals = 4;
    // Below 10000 the scaled value stays under 1e6, where the product carries
    // an error under 1e-10: only a value within 1e-9 of a rounding tie needs
    // the exact digits. This runs for every coordinate of a job.
    if (magnitude < 10000) {
        const double scaled = magnitude * scales[decimals];
        const double whole = std::floor(scaled);
        const double fraction = scaled - whole;
        if (std::fabs(fraction - 0.5) > 1e-9)
            return writeScaled(value < 0, static_cast<uint64_t>(whole) + (fraction > 0.5), decimals,
                               at);
    }
    // to_chars rounds the exact binary value as glibc's printf does and spells
    // NaN "nan" or "-nan" by its sign, the same on every system. A NaN fails
    // every comparison and takes the finest template, as in printf.
    char* end =
        std::to_chars(at, at + numberTextSize - 1, value, std::chars_format::fixed, decimals).ptr;
    if (decimals > 0) {
        while (end - at > 1 && end[-1] == '0')
            --end;
        if (end[-1] == '.') --end;
        if (end - at == 2 && at[0] == '-' && at[1] == '0') end = at + 1, at[0] = '0';
    }
    *end = '\0';
    return static_cast<std::size_t>(end - at);
}
