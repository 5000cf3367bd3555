#pragma once

#include <cstdint>
#include <string_view>

// FNV-1a over the bytes: names and keys are short, and this is cheaper than a
// general-purpose hash. The name table and the dictionaries share it, so a
// name's hash, taken once, serves every dictionary it is looked up in.
inline uint64_t textHash(std::string_view text) {
    uint64_t h = 14695981039346656037ull;
    for (unsigned char c : text)
        h = (h ^ c) * 1099511628211ull;
    return h;
}
