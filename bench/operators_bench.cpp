// Operator-heavy PostScript: nested for loops with arithmetic, comparisons,
// stack shuffles and dictionary look-ups, with the name look-up cache on and
// off.
#include "DictionarySet.h"
#include "Interpreter.h"
#include "Postscript2Pdf.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>

namespace {

constexpr int outer = 1000;
constexpr int inner = 1000;
// Operators run per inner iteration: dup mul exch add copy gt if exch pop mod
// roll pop pop pop add exch def, the call of body, and for's own step.
constexpr int operatorsPerIteration = 19;

const std::string program =
    "/work 10 dict def work begin "
    "/acc 0 def "
    "/body { dup 3 mul exch 2 add 2 copy gt { exch } if pop 7 mod "
    "1 2 3 3 1 roll pop pop pop acc add /acc exch def } def "
    "0 1 " + std::to_string(outer) + " { pop 0 1 " + std::to_string(inner) +
    " { body } for } for end ";

void BM_OperatorLoops(benchmark::State& state) {
    const double identity[6] = {1, 0, 0, 1, 0, 0};
    for (auto _ : state) {
        state.PauseTiming();
        Postscript2Pdf pdf(identity);
        pdf.interpreter->dictionaries->useLookupCache = state.range(0) != 0;
        state.ResumeTiming();
        if (!pdf.executeBuffer(reinterpret_cast<const unsigned char*>(program.data()),
                               static_cast<uint32_t>(program.size()))) {
            state.SkipWithError(pdf.errorText.c_str());
            return;
        }
    }
    // The for loops never reach their limits: 0..outer-1 and 0..inner-1.
    double operators = double(outer) * inner * operatorsPerIteration;
    state.counters["operators_per_second"] =
        benchmark::Counter(operators * state.iterations(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_OperatorLoops)->ArgName("cache")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
