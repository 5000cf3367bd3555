// zlib against libdeflate on the data kelps2pdf compresses: page content of
// the vector job and image samples. For each file and level: MB/s of input
// (best of five) and the compressed size.
//
//   flate_compare FILE...
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

template <class Compress>
void measure(const char* name, int level, const std::string& data, Compress compress) {
    std::vector<unsigned char> out(data.size() + data.size() / 10 + 4096);
    double best = 1e30;
    std::size_t size = 0;
    for (int round = 0; round < 5; ++round) {
        const auto start = Clock::now();
        size = compress(level, data, out);
        best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
    }
    std::printf("  %-10s level %d: %8.1f MB/s, %10zu bytes (%.1f%%)\n", name, level,
                data.size() / 1e6 / best, size, 100.0 * size / data.size());
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        const std::string data((std::istreambuf_iterator<char>(in)), {});
        std::printf("%s: %zu bytes\n", argv[i], data.size());
        for (int level : {1, 6}) {
            measure("zlib", level, data, [](int lvl, const std::string& d, auto& out) {
                uLongf length = out.size();
                compress2(out.data(), &length, reinterpret_cast<const Bytef*>(d.data()), d.size(),
                          lvl);
                return static_cast<std::size_t>(length);
            });
            measure("libdeflate", level, data, [](int lvl, const std::string& d, auto& out) {
                libdeflate_compressor* c = libdeflate_alloc_compressor(lvl);
                const std::size_t n =
                    libdeflate_zlib_compress(c, d.data(), d.size(), out.data(), out.size());
                libdeflate_free_compressor(c);
                return n;
            });
        }
    }
    return 0;
}
