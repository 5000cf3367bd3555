// The whole machine through the exports, on arbitrary programs fed in two
// buffers cut where the input's first byte says. A step budget ends the
// endless programs that the design runs for ever: they are no finding. Keep
// every input that crashed in regressions/interpreter/, under a name that
// says what it does; the tests replay them.
#include "InterpreterInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    runInterpreterInput(data, size, 200000);
    return 0;
}
