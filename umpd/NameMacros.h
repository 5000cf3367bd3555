#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

// The characters no file name may hold: <>:"/\|?* and everything below 32.
bool isIllegalNameChar(char16_t c);

// How many units of text a cut to at most n keeps without parting a surrogate pair.
std::size_t cutLength(std::u16string_view text, std::size_t n);

// The text before its first NUL: every text here is a C string in the end.
std::u16string_view untilNul(std::u16string_view text);

// The template language of file names, stage by stage: date codes, environment variables,
// the AUTONUM numbers, the document macros, and (with sanitise) illegal characters as "-".
std::u16string expandMacros(std::u16string_view templateText, std::u16string_view docName,
                            std::int32_t number, bool sanitise);

// The date codes of the C library's wide time format, in the "C" locale; nullopt when the
// format holds a code this does not know, or the result needs more than capacity - 1 units.
// biasMinutes is the time zone's bias (UTC = local + bias), for %z.
std::optional<std::u16string> formatTime(std::u16string_view format, const std::tm& time,
                                         std::int32_t biasMinutes, std::size_t capacity);

// Percent and plus decoding of a file name: "+" is a space, "%hh" a character, and what may
// not stand in a name becomes "_". Never longer than its input.
std::u16string urlDecode(std::u16string_view text);
