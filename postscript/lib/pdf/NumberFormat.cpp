#include "pdf/NumberFormat.h"

#include <charconv>
#include <cmath>

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
    // to_chars rounds the exact binary value as glibc's printf does and spells
    // NaN "nan" or "-nan" by its sign, the same on every system, without the
    // locale and format parsing: this runs for every coordinate of a job. A
    // NaN fails every comparison and takes the finest template, as in printf.
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
