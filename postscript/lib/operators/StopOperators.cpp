#include "operators/StopOperators.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

// The object ran to its end without a stop.
void StoppedOperator::turn(Interpreter& interpreter) {
    interpreter.operandStack->push(new BooleanObject(false));
}

// The context is in place before the check, and stays there when it fails.
void StoppedOperator::start(Interpreter& interpreter) {
    interpreter.executionStack->push(this);
    armProcedure(proc.get());
    if (!isProcedure(proc.get()) && proc->type != ps_name)
        PS_THROW("Unsupported param type to stopped");
    interpreter.executionStack->push(proc.get());
}

void StopOperator::execute(Interpreter& interpreter) {
    unwindExecutionStack(interpreter, [](std::string_view text) { return text == "stopped"; });
    interpreter.operandStack->push(new BooleanObject(true));
}
