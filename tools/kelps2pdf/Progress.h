// One updating line on standard error: pages done, bytes read, speed. Only
// when standard error is a terminal.
#pragma once

#include <chrono>
#include <cstdint>

namespace kelps2pdf {

class Progress {
public:
    // total: the input's size, 0 when unknown (a pipe).
    Progress(bool wanted, std::uint64_t total);
    void update(int pages, std::uint64_t bytes, bool force = false);
    void finish(); // clears the line

private:
    bool enabled_;
    std::uint64_t total_;
    std::chrono::steady_clock::time_point start_, last_;
    bool shown_ = false;
};

bool standardErrorIsTerminal();

} // namespace kelps2pdf
