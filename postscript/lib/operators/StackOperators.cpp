#include "operators/StackOperators.h"
#include "operators/LanguageOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

#include <algorithm>
#include <optional>

namespace {

// Position of the topmost mark, counted from the bottom.
std::optional<std::size_t> topmostMark(const ObjectStack& stack) {
    for (std::size_t i = stack.size(); i-- > 0;)
        if (stack.items[i]->type == ps_mark) return i;
    return std::nullopt;
}

// n copy: clones of the top n objects, deepest first.
void copyTopObjects(Interpreter& interpreter, int32_t n) {
    if (n <= 0) return;
    ObjectStack& operands = *interpreter.operandStack;
    const auto count = static_cast<std::size_t>(n);
    if (count > operands.size()) PS_THROW("object not on stack");
    const std::size_t first = operands.size() - count;
    operands.items.reserve(operands.size() + count);
    for (std::size_t i = 0; i < count; ++i)
        operands.push(operands.at(first + i)->clone(interpreter.memory->currentMemory));
}

// The destination is emptied first and then filled from the source, so a
// source that shares the destination's body ends up empty too.
void copyDictionary(DictionaryData& destination, const DictionaryData& source,
                    VirtualMemoryObject* memory) {
    destination.clear();
    for (const auto& [key, value] : source.entries)
        destination.put(key, value->clone(memory));
}

void copyArray(ObjectStack& destination, const ObjectStack& source, VirtualMemoryObject* memory) {
    destination.clear();
    destination.items.reserve(source.size());
    for (std::size_t i = 0; i < source.size(); ++i)
        destination.push(source.items[i]->clone(memory));
}

} // namespace

void PopOperator::execute(Interpreter& interpreter) {
    Popped<> object(interpreter.operandStack->pop());
}

void ExchOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    Popped<> top(operands.pop());
    Popped<> below(operands.pop());
    operands.push(top.get());
    operands.push(below.get());
}

void DupOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    if (operands.empty()) PS_THROW("pop - expected item on stack");
    operands.push(operands.top()->clone(interpreter.memory->currentMemory));
}

void CopyOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    Popped<> destination(operands.pop());
    if (destination->type == ps_integer) {
        copyTopObjects(interpreter, integerValue(destination.get()));
        return;
    }
    Popped<> source(operands.pop());
    if (source->type != destination->type)
        PS_THROW("expected parms to be the same for copy operator");
    VirtualMemoryObject* memory = interpreter.memory->currentMemory;
    if (destination->type == ps_dictionary)
        copyDictionary(*static_cast<DictionaryObject*>(destination.get())->dictionaryData(),
                       *static_cast<DictionaryObject*>(source.get())->dictionaryData(), memory);
    else if (destination->type == ps_array)
        copyArray(static_cast<ArrayObject*>(destination.get())->items(),
                  static_cast<ArrayObject*>(source.get())->items(), memory);
    else
        PS_THROW("unsupported copy type");
    operands.push(destination.get());
}

void IndexOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    Popped<> position(operands.pop());
    if (position->type != ps_integer) PS_THROW("Illegal param type passed to index operator");
    const int32_t n = integerValue(position.get());
    if (n < 0 || static_cast<std::size_t>(n) >= operands.size())
        PS_THROW("Indexed object not on stack");
    operands.push(operands.at(operands.size() - 1 - static_cast<std::size_t>(n))
                      ->clone(interpreter.memory->currentMemory));
}

void RollOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    Popped<> shift(operands.pop());
    Popped<> count(operands.pop());
    if (shift->type != ps_integer || count->type != ps_integer)
        PS_THROW("Illegal param type passed to roll operator");
    const int32_t n = integerValue(count.get());
    const int32_t j = integerValue(shift.get());
    if (n == 0) return;
    if (n < 0) PS_THROW("Illegal count passed to roll operator");
    if (static_cast<std::size_t>(n) > operands.size()) {
        // The objects are taken one by one until the stack runs out.
        operands.clear();
        PS_THROW("pop - expected item on stack");
    }
    // The remainder keeps the sign of j; a positive j with remainder 0 gives
    // n, which leaves the objects where they were.
    const int32_t split = j < 0 ? -(j % n) : j > 0 ? n - j % n : 0;
    const auto first = operands.items.end() - n;
    std::rotate(first, first + split, operands.items.end());
}

void ClearOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->clear();
}

void CountOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    operands.push(new IntegerObject(static_cast<int32_t>(operands.size())));
}

void MarkOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new MarkObject);
}

void RightSquareBracketOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    const std::optional<std::size_t> mark = topmostMark(operands);
    if (!mark) {
        // Every object is popped in the search for the mark.
        operands.clear();
        PS_THROW("pop - expected item on stack");
    }
    Popped<ArrayObject> array(interpreter.makeArray());
    ObjectStack& items = array->items();
    items.items.reserve(operands.size() - *mark - 1);
    for (std::size_t i = *mark + 1; i < operands.size(); ++i)
        items.push(operands.items[i]);
    while (operands.size() > *mark + 1)
        operands.pop();
    Popped<> markObject(operands.pop());
    operands.push(array.get());
}

void CleartomarkOperator::execute(Interpreter& interpreter) {
    for (;;) {
        Popped<> object(interpreter.operandStack->pop());
        if (object->type == ps_mark) return;
    }
}

void CounttomarkOperator::execute(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    const std::optional<std::size_t> mark = topmostMark(operands);
    const std::size_t count = mark ? operands.size() - *mark - 1 : operands.size();
    operands.push(new IntegerObject(static_cast<int32_t>(count)));
}
