#include "Progress.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace kelps2pdf {

bool standardErrorIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

Progress::Progress(bool wanted, std::uint64_t total)
    : enabled_(wanted), total_(total), start_(std::chrono::steady_clock::now()), last_(start_) {}

void Progress::update(int pages, std::uint64_t bytes, bool force) {
    if (!enabled_) return;
    const auto now = std::chrono::steady_clock::now();
    if (!force && now - last_ < std::chrono::milliseconds(200)) return;
    last_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = seconds > 0 ? bytes / 1e6 / seconds : 0;
    if (total_ > 0) {
        std::fprintf(stderr, "\r%d pages, %.1f of %.1f MB (%.0f%%), %.1f MB/s   ", pages,
                     bytes / 1e6, total_ / 1e6, 100.0 * bytes / total_, rate);
    } else {
        std::fprintf(stderr, "\r%d pages, %.1f MB, %.1f MB/s   ", pages, bytes / 1e6, rate);
    }
    std::fflush(stderr);
    shown_ = true;
}

void Progress::finish() {
    if (!shown_) return;
    std::fprintf(stderr, "\r%60s\r", "");
    std::fflush(stderr);
    shown_ = false;
}

} // namespace kelps2pdf
