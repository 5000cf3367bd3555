#pragma once

#include <cstdint>
#include <string_view>

// The number rules of the scanner, reproduced by hand so that they do not
// depend on the C library's locale or on the width of long.
namespace numbers {

// strtol() with Windows' 32-bit long: leading white space, a sign, base 0 for
// C prefixes, saturation. Returns how many bytes were used, 0 when none.
std::size_t parseLong(std::string_view text, int base, int32_t& value);

// atoi(), saturating at the 32-bit limits.
int32_t parseDecimal(std::string_view text);

// An optional sign or a first digit, then digits only. "+" and "-" qualify.
bool isDecimalToken(std::string_view token);

// The scanner's integer forms: "base#digits" with a base of one or two decimal
// digits and all the digits used up, or else a decimal token read as atoi().
bool parseIntegerToken(std::string_view token, int32_t& value);

// A float truncated toward zero to 32 bits. NaN and values beyond the range
// give the lowest integer, as the processor's conversion does.
int32_t truncateToInt32(double value);

// Digits, at most one ".", at most one "E" or "e", a sign only at the start.
bool isRealToken(std::string_view token);

// strtod() of a token that passed isRealToken: no digits give 0; overflow and
// underflow are failures (false).
bool parseReal(std::string_view token, double& value);

// The common tokens at a glance: a sign, then decimal digits with at most one
// ".", few enough digits to be exact. The value is what the full rules give;
// anything else is unknown and goes through them.
enum class QuickNumber { unknown, integer, real };
QuickNumber quickNumber(std::string_view token, int32_t& integer, double& real);

} // namespace numbers
