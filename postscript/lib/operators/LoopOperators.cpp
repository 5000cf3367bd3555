#include "operators/LoopOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/Interpreter.h"
#include "core/NumberUtils.h"
#include "core/ObjectCompare.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <iterator>
#include <stdexcept>

namespace {

// One more turn: the context goes under its procedure.
void pushTurn(Interpreter& interpreter, NameObject* context, PostscriptObject* proc) {
    interpreter.executionStack->push(context);
    interpreter.executionStack->push(proc);
    armProcedure(proc);
}

bool isLoopContext(std::string_view text) {
    // Names of the language's looping operators, also those that have no
    // context here: the text is all that is compared.
    static constexpr std::string_view loops[] = {
        "cshow",  "forall", "pathforall", "filenameforall", "kshow",
        "repeat", "for",    "loop",       "resourceforall",
    };
    for (std::string_view loop : loops)
        if (text == loop) return true;
    return false;
}

} // namespace

void unwindExecutionStack(Interpreter& interpreter, bool (*isTarget)(std::string_view text)) {
    for (;;) {
        Popped<> entry(interpreter.executionStack->pop());
        if (entry->type == ps_name && isTarget(static_cast<NameObject*>(entry.get())->text()))
            return;
        disarmProcedure(entry.get());
    }
}

void ForOperator::execute(Interpreter& interpreter) {
    if (control) {
        advance();
        step(interpreter);
        return;
    }
    Popped<ForOperator> context(new ForOperator(atom));
    ObjectStack& operands = *interpreter.operandStack;
    context->proc = operands.popHeld();
    context->limit = operands.popHeld();
    context->increment = operands.popHeld();
    context->initial = operands.popHeld();
    const PostscriptObject* first = context->initial.get();
    // One real among the three makes the whole loop count in reals.
    const bool anyReal = context->limit->type == ps_real || context->increment->type == ps_real ||
                         first->type == ps_real;
    if (!anyReal || first->type == ps_real)
        context->control.reset(first->clone(interpreter.memory->currentMemory));
    else if (first->type == ps_integer)
        context->control.reset(new RealObject(integerValue(first)));
    else
        PS_THROW("Unsupported number type in initial for loop value");
    if (!isNumber(context->increment.get())) PS_THROW("Unsupported increment type in for loop");
    context->ascending = objectToNumber(context->increment.get()) >= 0;
    context->step(interpreter);
}

void ForOperator::advance() {
    if (control->type == ps_integer) {
        auto* value = static_cast<IntegerObject*>(control.get());
        const int32_t by = increment->type == ps_integer
                               ? integerValue(increment.get())
                               : numbers::truncateToInt32(objectToNumber(increment.get()));
        // 32-bit arithmetic: past the largest integer the count wraps.
        value->value =
            static_cast<int32_t>(static_cast<uint32_t>(value->value) + static_cast<uint32_t>(by));
    } else if (control->type == ps_real) {
        static_cast<RealObject*>(control.get())->value += objectToNumber(increment.get());
    } else {
        // Not a PostscriptException: the export answers it with no error text.
        throw std::runtime_error("Unsupported type in addXtoY");
    }
}

void ForOperator::step(Interpreter& interpreter) {
    const int32_t order = compareObjects(control.get(), limit.get());
    if (ascending ? order >= 0 : order <= 0) return;
    pushTurn(interpreter, this, proc.get());
    interpreter.operandStack->push(control->clone(interpreter.memory->currentMemory));
}

void ForallOperator::start(Interpreter& interpreter) {
    composite = interpreter.operandStack->popHeld();
    turn(interpreter);
}

void ForallOperator::turn(Interpreter& interpreter) {
    const auto position = static_cast<std::size_t>(cursor);
    Popped<> key;
    Popped<> element;
    switch (composite->type) {
    case ps_array: {
        const ObjectStack& items = static_cast<ArrayObject*>(composite.get())->items();
        if (position >= items.size()) return;
        element.reset(items.items[position]);
        break;
    }
    case ps_string: {
        const std::string& text = static_cast<StringObject*>(composite.get())->text();
        if (position >= text.size()) return;
        element.reset(new IntegerObject(static_cast<signed char>(text[position])));
        break;
    }
    case ps_dictionary: {
        const DictionaryData::Map& entries =
            static_cast<DictionaryObject*>(composite.get())->dictionaryData()->entries;
        if (position >= entries.size()) return;
        // By position from the first entry: a dictionary changed meanwhile
        // shifts what the remaining turns see.
        const auto entry = std::next(entries.begin(), cursor);
        key.reset(interpreter.makeName(entry->first));
        element.reset(entry->second);
        break;
    }
    default:
        PS_THROW("Unsupported forall elements param");
    }
    pushTurn(interpreter, this, proc.get());
    if (key) interpreter.operandStack->push(key.get());
    interpreter.operandStack->push(element.get());
    ++cursor;
}

void LoopOperator::turn(Interpreter& interpreter) {
    pushTurn(interpreter, this, proc.get());
}

void RepeatOperator::start(Interpreter& interpreter) {
    Popped<IntegerObject> count(interpreter.operandStack->pop<IntegerObject>("repeat"));
    remaining = count->value;
    turn(interpreter);
}

void RepeatOperator::turn(Interpreter& interpreter) {
    if (remaining <= 0) return;
    pushTurn(interpreter, this, proc.get());
    --remaining;
}

void ExitOperator::execute(Interpreter& interpreter) {
    unwindExecutionStack(interpreter, isLoopContext);
}
