#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "operators/FileOperators.h"
#include "operators/GeneratedOps.h"
#include "operators/LoopOperators.h"
#include "operators/StackOperators.h"
#include "operators/StopOperators.h"

void registerLanguageOperators(Interpreter& interpreter) {
#define KEL_LANGUAGE_REGISTER(name, Class, Declare)                                                \
    interpreter.registerOperator(new Class(interpreter.intern(name)));
    KEL_LANGUAGE_OPERATORS(KEL_LANGUAGE_REGISTER)
#undef KEL_LANGUAGE_REGISTER
}

void installLanguage(Interpreter& interpreter, GeneratedOps& generated) {
    registerGenerated(interpreter, generated);
    registerLanguageOperators(interpreter);
    interpreter.defineSystemValues();
}
