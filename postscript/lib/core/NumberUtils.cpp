#include "core/NumberUtils.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace numbers {

namespace {
bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 99;
}

int32_t saturate(int64_t v) {
    if (v > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    if (v < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(v);
}
} // namespace

std::size_t parseLong(std::string_view text, int base, int32_t& value) {
    value = 0;
    if (base < 0 || base == 1 || base > 36) return 0;
    std::size_t i = 0;
    while (i < text.size() && isSpace(text[i]))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    auto hexPrefix = [&] {
        return i + 1 < text.size() && text[i] == '0' && (text[i + 1] == 'x' || text[i + 1] == 'X');
    };
    if (base == 0) {
        if (hexPrefix())
            base = 16;
        else if (i < text.size() && text[i] == '0')
            base = 8;
        else
            base = 10;
    }
    // "0x" counts only when a hexadecimal digit follows; else the 0 alone is read.
    if (base == 16 && hexPrefix() && i + 2 < text.size() && digitValue(text[i + 2]) < 16) i += 2;
    std::size_t digitsStart = i;
    int64_t magnitude = 0;
    while (i < text.size() && digitValue(text[i]) < base) {
        if (magnitude <= (int64_t{1} << 33)) magnitude = magnitude * base + digitValue(text[i]);
        ++i;
    }
    if (i == digitsStart) return 0;
    value = saturate(negative ? -magnitude : magnitude);
    return i;
}

int32_t parseDecimal(std::string_view text) {
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    int64_t magnitude = 0;
    for (; i < text.size() && isDigit(text[i]); ++i)
        if (magnitude <= (int64_t{1} << 33)) magnitude = magnitude * 10 + (text[i] - '0');
    return saturate(negative ? -magnitude : magnitude);
}

bool isDecimalToken(std::string_view token) {
    if (token.empty()) return false;
    std::size_t i = (token[0] == '+' || token[0] == '-') ? 1 : 0;
    for (; i < token.size(); ++i)
        if (!isDigit(token[i])) return false;
    return true;
}

bool parseIntegerToken(std::string_view token, int32_t& value) {
    if (token.size() >= 3 && token[1] == '#' && isDigit(token[0])) {
        std::string_view digits = token.substr(2);
        if (parseLong(digits, token[0] - '0', value) == digits.size()) return true;
    }
    if (token.size() >= 4 && token[2] == '#' && isDigit(token[0]) && isDigit(token[1])) {
        std::string_view digits = token.substr(3);
        if (parseLong(digits, (token[0] - '0') * 10 + (token[1] - '0'), value) == digits.size())
            return true;
    }
    if (!isDecimalToken(token)) return false;
    value = parseDecimal(token);
    return true;
}

int32_t truncateToInt32(double value) {
    // The comparisons are false for NaN as well.
    if (value > -2147483649.0 && value < 2147483648.0) return static_cast<int32_t>(value);
    return std::numeric_limits<int32_t>::min();
}

bool isRealToken(std::string_view token) {
    bool dot = false, exponent = false;
    for (std::size_t i = 0; i < token.size(); ++i) {
        char c = token[i];
        if (isDigit(c)) continue;
        if (c == '.' && !dot)
            dot = true;
        else if ((c == 'e' || c == 'E') && !exponent)
            exponent = true;
        else if ((c == '+' || c == '-') && i == 0)
            continue;
        else
            return false;
    }
    return !token.empty();
}

bool parseReal(std::string_view token, double& value) {
    value = 0.0;
    if (!token.empty() && token[0] == '+') token.remove_prefix(1);
    auto result = std::from_chars(token.data(), token.data() + token.size(), value,
                                  std::chars_format::general);
    if (result.ec == std::errc::invalid_argument) {
        value = 0.0; // no digits: zero, and no failure
        return true;
    }
    if (result.ec == std::errc::result_out_of_range || std::isinf(value)) return false;
    // Below the normal range the C library reports a range error too.
    if (value != 0.0 && std::fabs(value) < std::numeric_limits<double>::min()) return false;
    if (value == 0.0) {
        // A zero from non-zero digits is an underflow.
        for (const char* p = token.data(); p < result.ptr && *p != 'e' && *p != 'E'; ++p)
            if (*p >= '1' && *p <= '9') return false;
    }
    return true;
}

QuickNumber quickNumber(std::string_view token, int32_t& integer, double& real) {
    std::size_t i = 0;
    const bool negative = !token.empty() && token[0] == '-';
    if (!token.empty() && (token[0] == '-' || token[0] == '+')) ++i;
    uint64_t mantissa = 0;
    std::size_t digits = 0, fraction = 0;
    bool dot = false;
    for (; i < token.size(); ++i) {
        const char c = token[i];
        if (isDigit(c)) {
            mantissa = mantissa * 10 + static_cast<uint64_t>(c - '0');
            ++digits;
            if (dot) ++fraction;
        } else if (c == '.' && !dot) {
            dot = true;
        } else {
            return QuickNumber::unknown;
        }
    }
    // Up to 9 digits an integer can't saturate; up to 15 a real's digits and
    // the power of ten are exact doubles, so one division rounds correctly.
    if (digits == 0) return QuickNumber::unknown;
    if (!dot) {
        if (digits > 9) return QuickNumber::unknown;
        integer = static_cast<int32_t>(negative ? -static_cast<int64_t>(mantissa) : mantissa);
        return QuickNumber::integer;
    }
    if (digits > 15) return QuickNumber::unknown;
    static constexpr double powers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const double value = static_cast<double>(mantissa) / powers[fraction];
    real = negative ? -value : value;
    return QuickNumber::real;
}

} // namespace numbers
