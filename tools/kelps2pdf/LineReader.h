// Reads a job line by line, with bounded memory: a line longer than the
// bound comes in pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

namespace kelps2pdf {

struct Line {
    std::string_view text; // with its end: LF, CR LF or CR
    bool startsLine;       // false for the later pieces of a long line
};

class LineReader {
public:
    LineReader(std::FILE* in, std::size_t longestPiece);

    // The next line or piece; false at the end of the input or on a read error.
    bool next(Line& line);
    bool failed() const { return failed_; }
    std::uint64_t consumed() const { return consumed_; }

private:
    bool fill();

    std::FILE* in_;
    std::size_t longest_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0, end_ = 0;
    bool eof_ = false, failed_ = false, atLineStart_ = true;
    std::uint64_t consumed_ = 0;
};

} // namespace kelps2pdf
