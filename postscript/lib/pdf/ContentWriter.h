#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The page content of the current call. It may hold NUL bytes (raw image
// data), so it is appended to by length and handed out with its length; its
// room grows geometrically and is kept from call to call.
class ContentWriter {
public:
    void append(std::string_view bytes) { text_.append(bytes.data(), bytes.size()); }
    void append(const char* bytes, std::size_t length) { text_.append(bytes, length); }
    // A splice: what stands from the offset on moves behind the bytes.
    void insert(std::size_t at, std::string_view bytes) { text_.insert(at, bytes); }
    void clear() { text_.clear(); }
    // Drops what stands from the offset on.
    void truncate(std::size_t length) { text_.resize(length); }

    const char* data() const { return text_.data(); }
    std::size_t size() const { return text_.size(); }
    bool empty() const { return text_.empty(); }
    std::string_view view() const { return text_; }

private:
    std::string text_;
};
