#pragma once

#include <cstdint>

namespace platform {

// System error codes as the job face tests them; the values are Windows' own, so
// that the win32 backend passes them through unchanged.
namespace error {
inline constexpr std::uint32_t success = 0;
inline constexpr std::uint32_t fileNotFound = 2;
inline constexpr std::uint32_t pathNotFound = 3;
inline constexpr std::uint32_t accessDenied = 5;
inline constexpr std::uint32_t invalidHandle = 6;
inline constexpr std::uint32_t notEnoughMemory = 8;
inline constexpr std::uint32_t invalidParameter = 87;
inline constexpr std::uint32_t insufficientBuffer = 122;
inline constexpr std::uint32_t invalidName = 123;
inline constexpr std::uint32_t badPathname = 161;
inline constexpr std::uint32_t procNotFound = 127;
inline constexpr std::uint32_t alreadyExists = 183;
inline constexpr std::uint32_t moreData = 234;
inline constexpr std::uint32_t noMoreItems = 259;
inline constexpr std::uint32_t invalidPrinterName = 1801;
} // namespace error

} // namespace platform
