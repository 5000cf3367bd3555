#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/ValueObjects.h"

namespace {
void runChosen(Interpreter& interpreter, PostscriptObject* procedure) {
    interpreter.executionStack->push(procedure);
    armProcedure(procedure);
}

bool popCondition(Interpreter& interpreter, const char* who) {
    Popped<BooleanObject> condition(interpreter.operandStack->pop<BooleanObject>(who));
    return condition->value;
}
} // namespace

void IfOperator::execute(Interpreter& interpreter) {
    Popped<> procedure(interpreter.operandStack->pop());
    if (popCondition(interpreter, "if")) runChosen(interpreter, procedure.get());
}

void IfElseOperator::execute(Interpreter& interpreter) {
    Popped<> second(interpreter.operandStack->pop());
    Popped<> first(interpreter.operandStack->pop());
    runChosen(interpreter, popCondition(interpreter, "ifelse") ? first.get() : second.get());
}
