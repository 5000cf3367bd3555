#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A printer's settings: name to text, names without regard to case, at most 190 entries.
class StringMap {
public:
    static constexpr std::size_t capacity = 190;

    virtual ~StringMap() = default;
    void clear() { entries_.clear(); }
    // The value or null.
    const std::u16string* get(std::u16string_view key) const;
    // Replaces or adds; a full table takes no new key. A null value is stored as empty.
    void set(std::u16string_view key, const char16_t* value);
    void set(std::u16string_view key, std::u16string_view value);
    void setInt(std::u16string_view key, std::int32_t value);
    std::size_t size() const { return entries_.size(); }

private:
    std::vector<std::pair<std::u16string, std::u16string>> entries_;
};
