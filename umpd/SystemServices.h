#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The small services every part of the job face leans on: which system this is,
// and how failures reach the user.

std::uint32_t getOsMajorVersion();
std::uint32_t getPlatformId();
bool isNt4();        // major version 4 on the NT platform
bool isNt5OrLater(); // any platform

inline constexpr std::uint32_t platformWindows = 1; // the old consumer systems
inline constexpr std::uint32_t platformNt = 2;

// The system's text for the last error, or "Error string not found".
std::u16string lastErrorText();

// A printf-formatted box captioned "Error", shown as a service notification.
void errorBox(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The same box for a text that carries a wide name.
void errorBoxText(std::u16string_view text);

// A box after a failed system call: the error's text, captioned with the failure's words.
void failureBox(std::u16string_view caption, std::uint32_t style);

// The log vocabulary of the job face. It takes a format and its arguments and does
// nothing: a debugging build gives it a body.
template <typename... Args> inline void trace(const char16_t* /*format*/, const Args&...) {}

// Copies as much of text as fits in a field of N units, always NUL-terminated; gives the
// units copied, not counting the NUL.
template <std::size_t N> std::size_t copyField(char16_t (&field)[N], std::u16string_view text) {
    std::size_t n = text.size() < N - 1 ? text.size() : N - 1;
    text.copy(field, n);
    field[n] = u'\0';
    return n;
}

// The text of a NUL-terminated field, never reading past its end.
template <std::size_t N> std::u16string fieldText(const char16_t (&field)[N]) {
    std::size_t n = 0;
    while (n < N && field[n])
        ++n;
    return std::u16string(field, n);
}
