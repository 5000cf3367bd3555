#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A text read as _wtoi reads it: blanks, a sign, digits; nothing readable is 0, and a number
// beyond 32 bits is the nearest that fits.
std::int32_t intValue(std::u16string_view text);

// A printer's settings: name to text, names without regard to case, at most 190 entries.
class StringMap {
public:
    static constexpr std::size_t capacity = 190;

    virtual ~StringMap() = default;
    void clear() { entries_.clear(); }
    // The value or null.
    const std::u16string* get(std::u16string_view key) const;
    // Replaces or adds; a full table takes no new key and gives false. A null value is
    // stored as empty.
    bool set(std::u16string_view key, const char16_t* value);
    bool set(std::u16string_view key, std::u16string_view value);
    bool setInt(std::u16string_view key, std::int32_t value);
    // The value read as _wtoi reads it, or the fallback when the key is absent.
    std::int32_t getInt(std::u16string_view key, std::int32_t fallback) const;
    std::size_t size() const { return entries_.size(); }
    // Key and value in table order.
    const std::vector<std::pair<std::u16string, std::u16string>>& entries() const {
        return entries_;
    }

private:
    std::vector<std::pair<std::u16string, std::u16string>> entries_;
};
