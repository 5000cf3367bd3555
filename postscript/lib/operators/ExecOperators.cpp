#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"

void ExecOperator::execute(Interpreter& interpreter) {
    Popped<> object(interpreter.operandStack->pop());
    armProcedure(object.get());
    if (!object->executable) {
        interpreter.operandStack->push(object.get());
        return;
    }
    if (object->type == ps_string) PS_THROW("Does not currently support execing a string");
    interpreter.executionStack->push(object.get());
}
