#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/ValueObjects.h"

void CurrentglobalOperator::execute(Interpreter& interpreter) {
    MemoryRecord& memory = *interpreter.memory;
    interpreter.operandStack->push(
        new BooleanObject(memory.currentMemory == memory.globalMemory.get()));
}

// The boolean operand is neither popped nor read: false makes the global
// memory current too, and nothing leads back to the local one.
void SetglobalOperator::execute(Interpreter& interpreter) {
    interpreter.memory->currentMemory = interpreter.memory->globalMemory.get();
}
