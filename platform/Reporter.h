#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

inline constexpr std::uint32_t mbServiceNotification = 0x200000;
inline constexpr std::uint32_t mbIconError = 0x10;

// Message boxes and debug output.
class Reporter {
public:
    virtual ~Reporter() = default;
    virtual int messageBox(const std::u16string& text, const std::u16string& caption,
                           std::uint32_t style) = 0;
    virtual int messageBoxA(const std::string& text, const std::string& caption,
                            std::uint32_t style) = 0;
    virtual void debugOutput(std::string_view text) = 0;
    virtual void debugOutputW(const std::u16string& text) = 0;
};

} // namespace platform
