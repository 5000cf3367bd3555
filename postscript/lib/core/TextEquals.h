#pragma once

#include <cstring>
#include <string_view>

// Equality of two key or name texts, which are mostly a few bytes long: by
// hand up to a word's length, where a call to memcmp costs more than the bytes.
inline bool textEquals(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    if (a.size() > 8) return std::memcmp(a.data(), b.data(), a.size()) == 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i]) return false;
    return true;
}
