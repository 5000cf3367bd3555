#include "umpd/StringMap.h"

#include "platform/WideText.h"

const std::u16string* StringMap::get(std::u16string_view key) const {
    for (const auto& [k, v] : entries_)
        if (platform::equalsIgnoreCase(k, key)) return &v;
    return nullptr;
}

bool StringMap::set(std::u16string_view key, std::u16string_view value) {
    for (auto& [k, v] : entries_) {
        if (platform::equalsIgnoreCase(k, key)) {
            v = value;
            return true;
        }
    }
    if (entries_.size() >= capacity) return false;
    entries_.emplace_back(key, value);
    return true;
}

bool StringMap::set(std::u16string_view key, const char16_t* value) {
    return set(key, value ? std::u16string_view(value) : std::u16string_view());
}

bool StringMap::setInt(std::u16string_view key, std::int32_t value) {
    return set(key, std::u16string_view(platform::fromUtf8(std::to_string(value))));
}

std::int32_t StringMap::getInt(std::u16string_view key, std::int32_t fallback) const {
    const auto* value = get(key);
    return value ? intValue(*value) : fallback;
}

std::int32_t intValue(std::u16string_view text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == u' ' || (text[i] >= u'\t' && text[i] <= u'\r')))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) negative = text[i++] == u'-';
    std::int64_t value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        value = value * 10 + (text[i] - u'0');
        if (value > std::int64_t{1} << 32) break; // already beyond either limit
    }
    value = negative ? -value : value;
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return static_cast<std::int32_t>(value);
}
