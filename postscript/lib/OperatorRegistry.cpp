#include "OperatorRegistry.h"

#include "ArrayOperators.h"

void registerLanguageOperators(Interpreter& interpreter) {
    registerOperatorClass<LeftCurlyBraceOperator>(interpreter, "{");
    registerOperatorClass<RightCurlyBraceOperator>(interpreter, "}");
}
