#include "Deflate.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#if KELPS2PDF_LIBDEFLATE
#include <libdeflate.h>
#else
#include <zlib.h>
#endif

namespace kelps2pdf {

// Level 1: on the vector job's content libdeflate compresses 5 times faster
// than at level 6 for 8% more bytes, and page content is most of what a job
// writes (bench/flate_compare). Noise images do not shrink at any level.
constexpr int level = 1;

#if KELPS2PDF_LIBDEFLATE

namespace {
struct Compressor {
    libdeflate_compressor* handle = libdeflate_alloc_compressor(level);
    ~Compressor() { libdeflate_free_compressor(handle); }
};
} // namespace

void deflateInto(const unsigned char* data, std::size_t size, std::string& out) {
    thread_local Compressor compressor;
    if (!compressor.handle) throw std::bad_alloc();
    out.resize(libdeflate_zlib_compress_bound(compressor.handle, size));
    const std::size_t written =
        libdeflate_zlib_compress(compressor.handle, data, size, out.data(), out.size());
    if (written == 0) throw std::runtime_error("deflate failed");
    out.resize(written);
}

const char* deflateLibrary() {
    return "libdeflate " LIBDEFLATE_VERSION_STRING;
}

#else

void deflateInto(const unsigned char* data, std::size_t size, std::string& out) {
    // zlib counts in 32 bits on Windows: feed and drain at most 1 GiB a step.
    constexpr std::size_t step = std::size_t(1) << 30;
    z_stream stream{};
    if (deflateInit(&stream, level) != Z_OK) throw std::bad_alloc();
    out.resize(size / 2 + 65536);
    std::size_t taken = 0, produced = 0;
    for (;;) {
        if (stream.avail_in == 0 && taken < size) {
            const std::size_t piece = std::min(size - taken, step);
            stream.next_in = const_cast<unsigned char*>(data + taken);
            stream.avail_in = static_cast<uInt>(piece);
            taken += piece;
        }
        if (out.size() - produced < 65536) out.resize(out.size() * 2);
        const std::size_t room = std::min(out.size() - produced, step);
        stream.next_out = reinterpret_cast<unsigned char*>(out.data() + produced);
        stream.avail_out = static_cast<uInt>(room);
        const int status = deflate(&stream, taken == size ? Z_FINISH : Z_NO_FLUSH);
        produced += room - stream.avail_out;
        if (status == Z_STREAM_END) break;
        if (status != Z_OK && status != Z_BUF_ERROR) {
            deflateEnd(&stream);
            throw std::runtime_error("deflate failed");
        }
    }
    deflateEnd(&stream);
    out.resize(produced);
}

const char* deflateLibrary() {
    return "zlib " ZLIB_VERSION;
}

#endif

} // namespace kelps2pdf
