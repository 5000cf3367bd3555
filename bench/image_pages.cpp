// Image pages through the conversion face, timed block by block, to show how
// the cost of a page grows with the pages before it. Each page is one gray
// image of noise in hexadecimal, read by the driver's source
// {currentfile buf readhexstring pop}; every image above the inline limit is
// a record of the process-wide list, which a new image is looked up in.
//
//   image_pages [--pages N] [--image-bytes B] [--row-bytes R] [--piece P]
//               [--same] [--block K]
//
// --pages N        pages (1000)
// --image-bytes B  bytes of each image (1048576), rounded down to whole rows
// --row-bytes R    bytes per round, the string the source reads into (4096)
// --piece P        bytes of PostScript per PSConvertToPdf (65536)
// --same           every page carries the same image: one record, many "Do"
// --block K        a line of figures every K pages (100)
//
// The figures count only the time inside PSConvertToPdf (CPU of the process
// over those calls); making the noise and its hexadecimal text is outside.
// Every page's content must be its "/PSIn Do" line, else the run fails.
#include "kelumpd64/conversion.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace {

long residentKiB(const char* field) {
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (!status) return -1;
    char line[256];
    long kib = -1;
    const std::size_t length = std::strlen(field);
    while (std::fgets(line, sizeof line, status))
        if (std::strncmp(line, field, length) == 0) kib = std::strtol(line + length, nullptr, 10);
    std::fclose(status);
    return kib;
}

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// Noise that nothing compresses: xorshift64*, seeded per page.
struct Noise {
    uint64_t state;
    unsigned char next() {
        state ^= state >> 12;
        state ^= state << 25;
        state ^= state >> 27;
        return static_cast<unsigned char>((state * 0x2545F4914F6CDD1Dull) >> 56);
    }
};

struct Feeder {
    explicit Feeder(PSHandle handle) : handle(handle) {}
    PSHandle handle;
    double seconds = 0;
    uint64_t bytes = 0;
    std::string content;

    bool feed(const std::string& text) {
        uint32_t length = static_cast<uint32_t>(text.size());
        const double start = cpuSeconds();
        const char* out =
            PSConvertToPdf(handle, reinterpret_cast<const unsigned char*>(text.data()), &length);
        seconds += cpuSeconds() - start;
        bytes += text.size();
        if (!out) {
            std::fprintf(stderr, "image_pages: %s", PSGetErrorStr(handle));
            return false;
        }
        content.append(out, length);
        return true;
    }
};

long argument(int argc, char** argv, const char* name, long fallback) {
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], name) == 0) return std::strtol(argv[i + 1], nullptr, 10);
    return fallback;
}

} // namespace

int main(int argc, char** argv) {
    const long pages = argument(argc, argv, "--pages", 1000);
    const long rowBytes = argument(argc, argv, "--row-bytes", 4096);
    const long rows = argument(argc, argv, "--image-bytes", 1 << 20) / rowBytes;
    const std::size_t piece = static_cast<std::size_t>(argument(argc, argv, "--piece", 65536));
    const long block = argument(argc, argv, "--block", 100);
    bool same = false;
    for (int i = 1; i < argc; ++i)
        same = same || std::strcmp(argv[i], "--same") == 0;
    if (pages < 1 || rowBytes < 1 || rows < 1 || piece < 64 || block < 1) {
        std::fprintf(stderr, "image_pages: bad arguments\n");
        return 2;
    }

    const float identity[6] = {1, 0, 0, 1, 0, 0};
    Feeder feeder(PSOpen(identity));
    if (!feeder.handle) return 1;
    const long openKiB = residentKiB("VmRSS:");
    char head[200];
    std::snprintf(head, sizeof head,
                  "/buf %ld string def %ld %ld 8 [%ld 0 0 -%ld 0 %ld] "
                  "{currentfile buf readhexstring pop} image\n",
                  rowBytes, rowBytes, rows, rowBytes, rows, rows);
    static const char digits[] = "0123456789abcdef";

    std::printf("%ld pages of %ld x %ld gray (%.2f MiB each, %s), rounds of %ld bytes, "
                "pieces of %zu bytes\n",
                pages, rowBytes, rows, rowBytes * rows / 1048576.0,
                same ? "all the same" : "each different", rowBytes, piece);
    std::printf("%8s %10s %10s %12s %10s\n", "pages", "block s", "MB/s", "s per page", "RSS MiB");
    double blockStart = 0;
    uint64_t blockBytes = 0;
    std::string text;
    for (long page = 1; page <= pages; ++page) {
        PSStartPage(feeder.handle, identity);
        feeder.content.clear();
        Noise noise{same ? 88172645463325252ull : 88172645463325252ull + 7919ull * page};
        text = head;
        for (long at = 0; at < rows * rowBytes; ++at) {
            const unsigned char byte = noise.next();
            text += digits[byte >> 4];
            text += digits[byte & 15];
            if (at % 40 == 39) text += '\n';
            if (text.size() >= piece) {
                if (!feeder.feed(text)) return 1;
                text.clear();
            }
        }
        text += "\nshowpage\n";
        if (!feeder.feed(text)) return 1;
        const std::string expected = "/PSI" + std::to_string(same ? 1 : page) + " Do\n";
        if (feeder.content != expected) {
            std::fprintf(stderr, "image_pages: page %ld wrote \"%s\", not \"%s\"\n", page,
                         feeder.content.substr(0, 80).c_str(), expected.c_str());
            return 1;
        }
        if (page % block == 0 || page == pages) {
            const double seconds = feeder.seconds - blockStart;
            const uint64_t bytes = feeder.bytes - blockBytes;
            const long pagesInBlock = page % block == 0 ? block : page % block;
            std::printf("%8ld %10.3f %10.1f %12.5f %10.1f\n", page, seconds, bytes / 1e6 / seconds,
                        seconds / pagesInBlock, residentKiB("VmRSS:") / 1024.0);
            std::fflush(stdout);
            blockStart = feeder.seconds;
            blockBytes = feeder.bytes;
        }
    }
    uint64_t records = 0;
    PSGetPdfObjects(feeder.handle, &records);
    std::printf("total: %.2f s in PSConvertToPdf for %.1f MB of PostScript, %.1f MB/s; "
                "%llu records; RSS %.1f MiB with the handle open, peak %.1f MiB\n",
                feeder.seconds, feeder.bytes / 1e6, feeder.bytes / 1e6 / feeder.seconds,
                static_cast<unsigned long long>(records), openKiB / 1024.0,
                residentKiB("VmHWM:") / 1024.0);
    PSClose(feeder.handle);
    return 0;
}
