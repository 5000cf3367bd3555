// Feeds a PostScript file through the conversion face as a host does: read in
// pieces (64 KiB unless told), each piece handed to PSConvertToPdf, the whole
// run failing at the first piece that fails. The library side of
// compare_gs.py and vector_bench.py.
//
//   ps_feed [--pages] [--stats] [--content FILE] JOB [PIECE_BYTES]
//
// --pages      calls PSStartPage (identity matrix) at each line that begins
//              with "%%Page:", cutting the piece there, as a host that ends
//              pages by the DSC comments does.
// --stats      prints one line to stdout: input bytes, pages, content bytes,
//              CPU and wall seconds of the feeding, MB/s of PostScript by CPU
//              time, and the peak resident memory (VmHWM on Linux) at the
//              end and before the first piece (the handle open, nothing fed).
// --content F  writes the page content the calls return to F, and with
//              --pages the byte offset in F at which each page starts to
//              F.pages, one a line.
//
// Silent on success without --stats; on a failure prints the reason, the
// byte offset of the failing piece and the page, and exits 1.
#include "kelumpd64/conversion.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

const char pageMark[] = "%%Page:";
constexpr std::size_t pageMarkLength = sizeof pageMark - 1;

struct Usage {
    double cpuSeconds;
    long peakKiB;
};

// The peak resident memory of this process in KiB. On Linux the VmHWM of
// /proc/self/status: it counts only since the exec, where ru_maxrss also
// counts the memory of the parent that forked this process.
long peakResidentKiB(long fallback) {
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (!status) return fallback;
    char line[256];
    long kib = fallback;
    while (std::fgets(line, sizeof line, status))
        if (std::strncmp(line, "VmHWM:", 6) == 0) kib = std::strtol(line + 6, nullptr, 10);
    std::fclose(status);
    return kib;
}

Usage usageNow() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto seconds = [](const timeval& t) { return t.tv_sec + t.tv_usec / 1e6; };
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime), peakResidentKiB(usage.ru_maxrss)};
}

bool lineBreak(unsigned char c) {
    return c == '\n' || c == '\r';
}

bool markAt(const unsigned char* data, std::size_t at, std::size_t size, bool startsLine) {
    return startsLine && at + pageMarkLength <= size &&
           std::memcmp(data + at, pageMark, pageMarkLength) == 0;
}

// The offset of the first "%%Page:" in [from, size) that begins a line, or
// size. atLineStart tells whether offset 0 begins a line.
std::size_t findPageMark(const unsigned char* data, std::size_t from, std::size_t size,
                         bool atLineStart) {
    for (std::size_t at = from; at < size; ++at) {
        const void* percent = std::memchr(data + at, '%', size - at);
        if (!percent) break;
        at = static_cast<std::size_t>(static_cast<const unsigned char*>(percent) - data);
        if (markAt(data, at, size, at == 0 ? atLineStart : lineBreak(data[at - 1]))) return at;
    }
    return size;
}

// How many bytes at the end of [0, size) to hold back: a line start followed
// by fewer bytes than the mark, all of them its beginning, may be a mark that
// the next read completes.
std::size_t partialMarkTail(const unsigned char* data, std::size_t size, bool atLineStart) {
    for (std::size_t tail = pageMarkLength - 1; tail > 0; --tail) {
        if (tail > size) continue;
        std::size_t at = size - tail;
        bool startsLine = at == 0 ? atLineStart : lineBreak(data[at - 1]);
        if (startsLine && std::memcmp(data + at, pageMark, tail) == 0) return tail;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    bool pages = false, stats = false;
    const char* contentPath = nullptr;
    std::vector<const char*> positional;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--pages") == 0)
            pages = true;
        else if (std::strcmp(argv[i], "--stats") == 0)
            stats = true;
        else if (std::strcmp(argv[i], "--content") == 0 && i + 1 < argc)
            contentPath = argv[++i];
        else
            positional.push_back(argv[i]);
    }
    if (positional.empty() || positional.size() > 2) {
        std::fprintf(stderr,
                     "usage: ps_feed [--pages] [--stats] [--content FILE] JOB [PIECE_BYTES]\n");
        return 2;
    }
    const std::size_t piece =
        positional.size() > 1 ? std::strtoul(positional[1], nullptr, 10) : 64 << 10;
    if (piece < pageMarkLength) {
        std::fprintf(stderr, "ps_feed: pieces of at least %zu bytes\n", pageMarkLength);
        return 2;
    }
    std::FILE* in = std::fopen(positional[0], "rb");
    if (!in) {
        std::fprintf(stderr, "ps_feed: cannot read %s\n", positional[0]);
        return 2;
    }
    std::FILE* content = contentPath ? std::fopen(contentPath, "wb") : nullptr;
    std::FILE* pageOffsets =
        content && pages ? std::fopen((std::string(contentPath) + ".pages").c_str(), "w") : nullptr;
    if (contentPath && (!content || (pages && !pageOffsets))) {
        std::fprintf(stderr, "ps_feed: cannot write %s\n", contentPath);
        return 2;
    }

    const float identity[6] = {1, 0, 0, 1, 0, 0};
    PSHandle handle = PSOpen(identity);
    if (!handle) return 1;
    const Usage opened = usageNow();
    const auto wallStart = std::chrono::steady_clock::now();

    std::vector<unsigned char> buffer(piece);
    std::size_t held = 0;     // bytes at the buffer's start not fed yet
    bool atLineStart = true;  // whether the buffer's first byte begins a line
    bool markStarted = false; // the mark at the buffer's start has started its page
    bool end = false;
    unsigned long long fed = 0, contentBytes = 0, pageCount = 0;
    int status = 0;
    while (!end || held > 0) {
        if (!end) {
            const std::size_t wanted = piece - held;
            const std::size_t got = std::fread(buffer.data() + held, 1, wanted, in);
            held += got;
            end = got < wanted;
        }
        const unsigned char* data = buffer.data();
        std::size_t cut = held;
        if (pages) {
            if (!markStarted && markAt(data, 0, held, atLineStart)) {
                PSStartPage(handle, identity);
                ++pageCount;
                markStarted = true;
                if (pageOffsets) std::fprintf(pageOffsets, "%llu\n", contentBytes);
            }
            cut = findPageMark(data, 1, held, atLineStart);
            if (cut == held && !end) cut = held - partialMarkTail(data, held, atLineStart);
        }
        if (cut == 0) continue; // only the start of a mark: read on
        uint32_t length = static_cast<uint32_t>(cut);
        const char* out = PSConvertToPdf(handle, data, &length);
        if (!out) {
            std::fprintf(stderr, "ps_feed: the piece at byte %llu (page %llu) failed: %s", fed,
                         pageCount, PSGetErrorStr(handle));
            status = 1;
            break;
        }
        contentBytes += length;
        if (content && length) std::fwrite(out, 1, length, content);
        fed += cut;
        atLineStart = lineBreak(data[cut - 1]);
        markStarted = false;
        held -= cut;
        std::memmove(buffer.data(), buffer.data() + cut, held);
    }
    if (std::ferror(in)) {
        std::fprintf(stderr, "ps_feed: cannot read %s\n", positional[0]);
        status = 2;
    }

    const Usage done = usageNow();
    const double wall =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
    PSClose(handle);
    std::fclose(in);
    if (content) std::fclose(content);
    if (pageOffsets) std::fclose(pageOffsets);
    if (stats && status == 0) {
        const double cpu = done.cpuSeconds - opened.cpuSeconds;
        std::printf("input_bytes=%llu pages=%llu content_bytes=%llu cpu_s=%.3f wall_s=%.3f "
                    "MB_per_s=%.2f peak_rss_kib=%ld open_rss_kib=%ld\n",
                    fed, pageCount, contentBytes, cpu, wall, cpu > 0 ? fed / 1e6 / cpu : 0.0,
                    done.peakKiB, opened.peakKiB);
    }
    return status;
}
