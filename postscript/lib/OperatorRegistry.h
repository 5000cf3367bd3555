#pragma once

#include "Interpreter.h"

// Installs the hand-written language operators in systemdict, in their order.
void registerLanguageOperators(Interpreter& interpreter);

// Registers one operator of class T under its name.
template <class T> void registerOperatorClass(Interpreter& interpreter, const char* name) {
    interpreter.registerOperator(new T(interpreter.intern(name)));
}
