#pragma once

#include <string>
#include <string_view>

namespace platform {

// UTF-16 to UTF-8 and back; unpaired surrogates become U+FFFD.
std::string toUtf8(std::u16string_view text);
std::u16string fromUtf8(std::string_view text);

// The callers' wchar_t text, which is UTF-16 on Windows and UTF-32 elsewhere; null gives
// empty text. Code points beyond 16 bits become pairs, and come back as one.
std::u16string fromWchar(const wchar_t* text);
std::wstring toWchar(std::u16string_view text);

// ASCII-only case folding, as the system's case-insensitive comparisons of names need.
std::u16string foldCase(std::u16string_view text);
bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b);

} // namespace platform
