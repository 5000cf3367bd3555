// formatNumber, which runs for every coordinate of a job: nanoseconds per
// number over values spread like page coordinates and matrix entries.
#include "pdf/NumberFormat.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <random>
#include <vector>

namespace {

// Mostly coordinates in points with a few decimals, some matrix entries below
// 1, some large values and integers.
std::vector<double> sampleValues() {
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> coordinate(-100, 1000);
    std::uniform_real_distribution<double> unit(-1, 1);
    std::uniform_int_distribution<int> integer(0, 20000);
    std::vector<double> values;
    for (int i = 0; i < 4096; ++i) {
        switch (i % 8) {
        case 0:
            values.push_back(unit(random));
            break;
        case 1:
            values.push_back(integer(random));
            break;
        case 2:
            values.push_back(coordinate(random) * 20);
            break;
        default:
            values.push_back(coordinate(random));
            break;
        }
    }
    return values;
}

void BM_FormatNumber(benchmark::State& state) {
    const std::vector<double> values = sampleValues();
    char text[numberTextSize];
    for (auto _ : state) {
        for (double value : values) {
            benchmark::DoNotOptimize(formatNumber(value, text));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * values.size()));
}
BENCHMARK(BM_FormatNumber);

// The C library's printf of one template alone, without the band choice and
// trimming: what formatNumber would cost at least through printf.
void BM_PrintfTemplateOnly(benchmark::State& state) {
    const std::vector<double> values = sampleValues();
    char text[numberTextSize];
    for (auto _ : state) {
        for (double value : values) {
            benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%.3f", value));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * values.size()));
}
BENCHMARK(BM_PrintfTemplateOnly);

} // namespace

BENCHMARK_MAIN();
