#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

// A growable array of 32-bit values that grows by a fixed step while it is small and by a
// quarter once it is not.
template <typename K> class Vector {
    static_assert(sizeof(K) == 4, "a vector of 32-bit values");

public:
    Vector() = default;
    virtual ~Vector() { std::free(data); }
    Vector(const Vector&) = delete;
    Vector& operator=(const Vector&) = delete;

    // False when no room can be had; the values stay as they were.
    bool add(K value) {
        if (size == capacity && !grow()) return false;
        data[size++] = value;
        return true;
    }
    bool contains(K value) const {
        for (std::uint32_t i = 0; i < size; ++i)
            if (data[i] == value) return true;
        return false;
    }
    K operator[](std::uint32_t i) const { return data[i]; }

    K* data = nullptr;
    std::uint32_t capacity = 0;
    std::uint32_t size = 0;
    std::uint32_t growthHint = 200;

private:
    bool grow() {
        if (!data) {
            data = static_cast<K*>(std::calloc(growthHint, sizeof(K)));
            if (!data) return false;
            capacity = growthHint;
            return capacity > 0;
        }
        std::uint64_t wanted =
            capacity < 804 ? std::uint64_t{capacity} + 200 : std::uint64_t{capacity} + capacity / 4;
        if (wanted > std::numeric_limits<std::uint32_t>::max() / sizeof(K)) return false;
        auto* bigger = static_cast<K*>(std::realloc(data, wanted * sizeof(K)));
        if (!bigger) return false;
        std::memset(bigger + capacity, 0, (wanted - capacity) * sizeof(K));
        data = bigger;
        capacity = static_cast<std::uint32_t>(wanted);
        return true;
    }
};
