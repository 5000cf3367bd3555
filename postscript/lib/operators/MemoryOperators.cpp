#include "operators/LanguageOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void CurrentglobalOperator::execute(Interpreter&) {
    PS_THROW("currentglobal is not built yet");
}
void SetglobalOperator::execute(Interpreter&) {
    PS_THROW("setglobal is not built yet");
}
