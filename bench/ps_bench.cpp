// Throughput of the scanner and run loop on a generated program of about
// 30 MB: numbers, names, strings in every notation, procedures, comments;
// and the cost of opening a handle.
#include "core/Interpreter.h"
#include "pdf/Postscript2Pdf.h"

#include <benchmark/benchmark.h>
#include <string>
#include <sys/resource.h>

namespace {

std::string generateProgram(std::size_t targetBytes) {
    std::string program;
    program.reserve(targetBytes + 4096);
    for (unsigned i = 0; program.size() < targetBytes; ++i) {
        program += std::to_string(i % 10007) + " -" + std::to_string(i % 97) + " 3.25 16#FF 1e3 ";
        program += "/literal" + std::to_string(i % 50) + " name" + std::to_string(i % 300) + " ";
        program += "(a string \\n with (nested) \\101 escapes) <48656C6C6F20776F726C64> ";
        program += "<~87cURD]i,\"Ebo80~> ";
        program += "{ 1 2 { 3 /x (y) } z 0.5 } //languagelevel % a comment line\n";
    }
    return program;
}

const std::string& program() {
    static const std::string text = generateProgram(30u << 20);
    return text;
}

double peakResidentMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;
}

void runInPieces(Postscript2Pdf& pdf, const std::string& text, std::size_t piece) {
    auto* data = reinterpret_cast<const unsigned char*>(text.data());
    for (std::size_t at = 0; at < text.size(); at += piece) {
        std::size_t n = std::min(piece, text.size() - at);
        if (!pdf.executeBuffer(data + at, static_cast<uint32_t>(n))) std::abort();
        // Nothing consumes the operands yet: drop them between buffers, as
        // painting operators would, so memory shows what the machine keeps.
        pdf.interpreter->operandStack->clear();
    }
}

void BM_ScanAndRun(benchmark::State& state) {
    const std::string& text = program();
    const double identity[6] = {1, 0, 0, 1, 0, 0};
    // The program text itself is in the peak; what the machine adds is the growth.
    const double before = peakResidentMiB();
    for (auto _ : state) {
        Postscript2Pdf pdf(identity);
        runInPieces(pdf, text, static_cast<std::size_t>(state.range(0)));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    state.counters["input_MB"] = text.size() / 1e6;
    state.counters["peak_RSS_MiB"] = peakResidentMiB();
    state.counters["peak_growth_MiB"] = peakResidentMiB() - before;
}
BENCHMARK(BM_ScanAndRun)->Arg(64 << 10)->Arg(4 << 10)->Unit(benchmark::kMillisecond)->Iterations(3);

// What every PSOpen costs: the machine and its operator layers, and the
// start-up texts run through the scanner.
void BM_Open(benchmark::State& state) {
    const double identity[6] = {1, 0, 0, 1, 0, 0};
    for (auto _ : state) {
        Postscript2Pdf pdf(identity);
        benchmark::DoNotOptimize(pdf.interpreter.get());
    }
}
BENCHMARK(BM_Open)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
