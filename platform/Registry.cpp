#include "platform/Registry.h"

#include <cstring>

namespace platform {

RegistryValue stringValue(const std::u16string& text) {
    RegistryValue v;
    v.type = regtype::string;
    v.data.resize((text.size() + 1) * 2);
    std::memcpy(v.data.data(), text.c_str(), v.data.size());
    return v;
}

RegistryValue dwordValue(std::uint32_t value) {
    RegistryValue v;
    v.type = regtype::dword;
    v.data.resize(4);
    std::memcpy(v.data.data(), &value, 4);
    return v;
}

std::optional<std::u16string> valueText(const RegistryValue& value) {
    if (value.type != regtype::string && value.type != regtype::expandString) return std::nullopt;
    std::u16string text(value.data.size() / 2, u'\0');
    std::memcpy(text.data(), value.data.data(), text.size() * 2);
    return text.substr(0, text.find(u'\0'));
}

std::optional<std::uint32_t> valueDword(const RegistryValue& value) {
    if (value.type != regtype::dword || value.data.size() != 4) return std::nullopt;
    std::uint32_t out;
    std::memcpy(&out, value.data.data(), 4);
    return out;
}

} // namespace platform
