#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"

void EqualsOperator::execute(Interpreter& interpreter) {
    Popped<> object(interpreter.operandStack->pop());
    interpreter.appendStdout(object->equalsText());
    interpreter.appendStdout("\n");
}

void DoubleEqualsOperator::execute(Interpreter& interpreter) {
    Popped<> object(interpreter.operandStack->pop());
    interpreter.appendStdout(object->doubleEqualsText());
    interpreter.appendStdout("\n");
}

void StackOperator::execute(Interpreter& interpreter) {
    const auto& items = interpreter.operandStack->items;
    for (auto it = items.rbegin(); it != items.rend(); ++it) {
        interpreter.appendStdout((*it)->doubleEqualsText());
        interpreter.appendStdout("\n");
    }
}
