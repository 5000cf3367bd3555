#include "umpd/StringMap.h"

#include "platform/WideText.h"

const std::u16string* StringMap::get(std::u16string_view key) const {
    for (const auto& [k, v] : entries_)
        if (platform::equalsIgnoreCase(k, key)) return &v;
    return nullptr;
}

void StringMap::set(std::u16string_view key, std::u16string_view value) {
    for (auto& [k, v] : entries_) {
        if (platform::equalsIgnoreCase(k, key)) {
            v = value;
            return;
        }
    }
    if (entries_.size() < capacity) entries_.emplace_back(key, value);
}

void StringMap::set(std::u16string_view key, const char16_t* value) {
    set(key, value ? std::u16string_view(value) : std::u16string_view());
}

void StringMap::setInt(std::u16string_view key, std::int32_t value) {
    set(key, std::u16string_view(platform::fromUtf8(std::to_string(value))));
}
