#include "operators/LanguageOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

namespace {} // namespace

void GetOperator::execute(Interpreter& interpreter) {
    Popped<> index = interpreter.operandStack->popHeld();
    Popped<> composite = interpreter.operandStack->popHeld();
    PostscriptObject* found = nullptr;
    switch (composite->type) {
    case ps_dictionary:
        if (index->type != ps_name) break;
        found =
            static_cast<DictionaryObject*>(composite.get())->dictionaryData()->findKey(index.get());
        if (!found) PS_THROW("get could not find element");
        interpreter.operandStack->push(found);
        return;
    case ps_array: {
        if (index->type != ps_integer) break;
        const ObjectStack& items = static_cast<ArrayObject*>(composite.get())->items();
        int32_t i = integerValue(index.get());
        if (i < 0 || static_cast<std::size_t>(i) >= items.size())
            PS_THROW("Array index out of bounds");
        found = items.at(static_cast<std::size_t>(i));
        if (!found) PS_THROW("get could not find element");
        interpreter.operandStack->push(found);
        return;
    }
    case ps_string: {
        if (index->type != ps_integer) break;
        const std::string& text = static_cast<StringObject*>(composite.get())->text();
        int32_t i = integerValue(index.get());
        if (i < 0 || static_cast<std::size_t>(i) >= text.size())
            PS_THROW("String index out of bounds");
        auto byte = static_cast<signed char>(text[static_cast<std::size_t>(i)]);
        interpreter.operandStack->push(new IntegerObject(byte));
        return;
    }
    default:
        break;
    }
    PS_THROW("Unsupported parameter types to get");
}

void PutOperator::execute(Interpreter& interpreter) {
    Popped<> value = interpreter.operandStack->popHeld();
    Popped<> index = interpreter.operandStack->popHeld();
    Popped<> composite = interpreter.operandStack->popHeld();
    switch (composite->type) {
    case ps_dictionary:
        if (index->type != ps_name) break;
        static_cast<DictionaryObject*>(composite.get())
            ->dictionaryData()
            ->putObject(index.get(), value.get());
        return;
    case ps_array: {
        if (index->type != ps_integer) break;
        int32_t i = integerValue(index.get());
        // At the length the array grows; beyond it, or below 0, nothing is written.
        if (i < 0) PS_THROW("Illegal array index");
        static_cast<ArrayObject*>(composite.get())
            ->items()
            .setAt(static_cast<std::size_t>(i), value.get());
        return;
    }
    case ps_string: {
        if (index->type != ps_integer || value->type != ps_integer) break;
        std::string& text = static_cast<StringObject*>(composite.get())->text();
        int32_t i = integerValue(index.get());
        if (i < 0 || static_cast<std::size_t>(i) >= text.size())
            PS_THROW("Illegal string index passed to put");
        // The value has been checked, and the index is what gets stored.
        text[static_cast<std::size_t>(i)] = static_cast<char>(i & 0xFF);
        return;
    }
    default:
        break;
    }
    PS_THROW("Unsupported parameter types to put");
}
