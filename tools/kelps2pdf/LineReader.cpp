#include "LineReader.h"

#include <algorithm>
#include <cstring>

namespace kelps2pdf {

LineReader::LineReader(std::FILE* in, std::size_t longestPiece)
    : in_(in), longest_(longestPiece ? longestPiece : 1),
      buffer_(std::max<std::size_t>(2 * longest_, 1 << 16)) {}

bool LineReader::fill() {
    if (eof_) return false;
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    const std::size_t got = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, in_);
    end_ += got;
    if (got == 0) {
        eof_ = true;
        failed_ = std::ferror(in_) != 0;
    }
    return got > 0;
}

bool LineReader::next(Line& line) {
    std::size_t scanned = 0; // bytes after begin_ known to hold no line end
    for (;;) {
        const char* start = buffer_.data() + begin_;
        const std::size_t available = end_ - begin_;
        const std::size_t limit = std::min(available, longest_);
        std::size_t length = 0;
        bool needMore = false;
        for (std::size_t i = scanned; i < limit; ++i) {
            const char c = start[i];
            if (c == '\n') {
                length = i + 1;
                break;
            }
            if (c == '\r') {
                if (i + 1 < available) {
                    length = start[i + 1] == '\n' ? i + 2 : i + 1;
                } else if (eof_) {
                    length = i + 1;
                } else {
                    needMore = true; // a CR at the end: an LF may follow
                    scanned = i;
                }
                break;
            }
        }
        if (length == 0 && !needMore) {
            if (available >= longest_) {
                length = longest_;
            } else if (eof_) {
                length = available;
                if (length == 0) return false;
            } else {
                scanned = available;
            }
        }
        if (length > 0) {
            line.text = std::string_view(start, length);
            line.startsLine = atLineStart_;
            const char last = start[length - 1];
            atLineStart_ = last == '\n' || last == '\r';
            begin_ += length;
            consumed_ += length;
            return true;
        }
        fill();
    }
}

} // namespace kelps2pdf
