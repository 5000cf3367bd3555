// Image data read from the current file: readhexstring and readstring fed in
// buffers of 4 KiB and 64 KiB, row by row as drivers read it and in one read
// that waits over every buffer. Figures are MB/s of the data bytes fed; a read
// that waits must cost no more than the data, so the one-read figure stays
// flat as the image grows.
#include "core/Interpreter.h"
#include "pdf/Postscript2Pdf.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace {

constexpr int64_t rowBytes = 2400; // one row of an 800-pixel RGB image

// A program that reads `decoded` bytes in reads of `row` bytes (all at once
// for 0), and its data: hexadecimal digits in lines of 64, or raw bytes
// without white space, which a read that ends in one call would drop, and
// without NUL and form feed, which currentfile eats at the start of a row.
std::string program(bool hex, int64_t decoded, int64_t row) {
    const int64_t read = row ? row : decoded;
    const int64_t reads = decoded / read;
    decoded = reads * read; // no data left over for the scanner
    const std::string op = hex ? "readhexstring" : "readstring";
    std::string text = std::to_string(reads) + " { currentfile " + std::to_string(read) +
                       " string " + op + " pop pop } repeat\n";
    std::mt19937 random(1);
    std::uniform_int_distribution<int> byte(0, 255);
    const char* digits = "0123456789abcdef";
    for (int64_t i = 0; i < decoded; ++i) {
        int value = byte(random);
        if (hex) {
            text += digits[value >> 4];
            text += digits[value & 15];
            if (i % 32 == 31) text += '\n';
        } else {
            if (std::string_view(" \t\n\r\f\0", 6).find(static_cast<char>(value)) !=
                std::string_view::npos)
                value = 'w';
            text += static_cast<char>(value);
        }
    }
    return text + "\n";
}

void feed(benchmark::State& state, bool hex) {
    const auto buffer = static_cast<std::size_t>(state.range(0)) * 1024;
    const std::string text = program(hex, state.range(2), state.range(1));
    const double identity[6] = {1, 0, 0, 1, 0, 0};
    const auto* data = reinterpret_cast<const unsigned char*>(text.data());
    for (auto _ : state) {
        state.PauseTiming();
        Postscript2Pdf pdf(identity);
        state.ResumeTiming();
        for (std::size_t at = 0; at < text.size(); at += buffer) {
            const std::size_t length = std::min(buffer, text.size() - at);
            if (!pdf.executeBuffer(data + at, static_cast<uint32_t>(length))) {
                state.SkipWithError(pdf.errorText.c_str());
                return;
            }
        }
        const Interpreter& in = *pdf.interpreter;
        if (!in.operandStack->empty() || !in.executionStack->empty()) {
            state.SkipWithError("the reads did not all finish");
            return;
        }
    }
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(text.size()) / 1e6 *
                                                    static_cast<double>(state.iterations()),
                                                benchmark::Counter::kIsRate);
}

void BM_Readhexstring(benchmark::State& state) {
    feed(state, true);
}

void BM_Readstring(benchmark::State& state) {
    feed(state, false);
}

// Buffer KiB, bytes a read (0: one read of everything), decoded bytes.
void sizes(benchmark::internal::Benchmark* b) {
    b->ArgNames({"bufferKiB", "read", "bytes"});
    for (int64_t buffer : {4, 64})
        for (int64_t read : {rowBytes, int64_t{0}})
            b->Args({buffer, read, 4 << 20});
    // The one read over a four times larger image: the same rate if it is linear.
    b->Args({4, 0, 16 << 20});
    b->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Readhexstring)->Apply(sizes);
BENCHMARK(BM_Readstring)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
