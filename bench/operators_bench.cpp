// Operator-heavy PostScript: nested for loops with arithmetic, comparisons,
// stack shuffles and dictionary look-ups, with the name look-up cache on and
// off.
#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/ValueObjects.h"
#include "pdf/Postscript2Pdf.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>

namespace {

constexpr int outer = 1000;
constexpr int inner = 1000;

// Each inner turn runs the body (one procedure call) with dup mul exch add
// copy gt if pop mod roll pop pop pop add exch def, plus exch when 3x > x+2,
// which holds from x = 2 on, and one step of the for context. Each outer turn
// adds its own context step, pop and for. Look-ups of acc are not counted.
constexpr double operatorsPerRun = double(outer) * (inner * 18.0 + (inner - 2) + 3);

// acc sums min(3x, x+2) mod 7 over x = 0..inner-1, once per outer turn: the
// check that the loops ran as many turns as counted.
int32_t expectedAcc() {
    int32_t sum = 0;
    for (int32_t x = 0; x < inner; ++x)
        sum += (3 * x > x + 2 ? x + 2 : 3 * x) % 7;
    return sum * outer;
}

const std::string program = "/work 10 dict def work begin "
                            "/acc 0 def "
                            "/body { dup 3 mul exch 2 add 2 copy gt { exch } if pop 7 mod "
                            "1 2 3 3 1 roll pop pop pop acc add /acc exch def } def "
                            "0 1 " +
                            std::to_string(outer) + " { pop 0 1 " + std::to_string(inner) +
                            " { body } for } for end work /acc get ";

void BM_OperatorLoops(benchmark::State& state) {
    const double identity[6] = {1, 0, 0, 1, 0, 0};
    const int32_t expected = expectedAcc();
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
        const PostscriptObject* acc = pdf.interpreter->operandStack->top();
        if (!acc || acc->type != ps_integer ||
            static_cast<const IntegerObject*>(acc)->value != expected) {
            state.SkipWithError("the loops did not compute the expected sum");
            return;
        }
    }
    state.counters["operators_per_second"] =
        benchmark::Counter(operatorsPerRun * state.iterations(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_OperatorLoops)->ArgName("cache")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
