#include "operators/LanguageOperators.h"

#include "core/ArrayObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <algorithm>

namespace {
int32_t popIndex(Interpreter& interpreter) {
    return interpreter.operandStack->pop<IntegerObject>("popIntegerObject")->value;
}

void copyInterval(Interpreter& interpreter, const ArrayObject& source, int32_t index,
                  int32_t count) {
    ArrayObject* result = interpreter.makeArray();
    interpreter.operandStack->push(result);
    const ObjectStack& items = source.items();
    const int64_t end = static_cast<int64_t>(index) + count;
    for (int64_t i = index; i < end; ++i) {
        // What was copied so far stays on the stack with the failure.
        if (i < 0 || static_cast<uint64_t>(i) >= items.size()) PS_THROW("invlaid array");
        result->items().push(items.at(static_cast<std::size_t>(i)));
    }
}

void copyInterval(Interpreter& interpreter, const StringObject& source, int32_t index,
                  int32_t count) {
    StringObject* result = interpreter.makeString(std::string_view());
    interpreter.operandStack->push(result);
    const std::string& text = source.text();
    if (index < 0 || static_cast<std::size_t>(index) > text.size())
        PS_THROW("invalid string position");
    std::size_t rest = text.size() - static_cast<std::size_t>(index);
    // A negative count reads as a very large one: the whole rest.
    std::size_t length = count < 0 ? rest : std::min(rest, static_cast<std::size_t>(count));
    result->text() = text.substr(static_cast<std::size_t>(index), length);
}

void storeInterval(ArrayObject& target, int32_t index, const ArrayObject& source) {
    ObjectStack& to = target.items();
    const ObjectStack& from = source.items();
    if (static_cast<int64_t>(from.size()) + index > static_cast<int64_t>(to.size()))
        PS_THROW("invalid args to putinterval");
    if (index < 0) PS_THROW("Illegal array index");
    for (std::size_t k = 0; k < from.size(); ++k)
        to.setAt(static_cast<std::size_t>(index) + k, from.at(k));
}

// The target keeps what lies before index and behind the stored bytes, and
// grows as needed; an index beyond its end appends.
void storeInterval(StringObject& target, int32_t index, const StringObject& source) {
    const std::string inserted = source.text(); // the two may share a body
    const std::string& old = target.text();
    const int64_t oldSize = static_cast<int64_t>(old.size());
    std::string text;
    if (index > 0)
        text = old.substr(0, static_cast<std::size_t>(std::min<int64_t>(index, oldSize)));
    text += inserted;
    int64_t behind =
        std::max<int64_t>(0, static_cast<int64_t>(index) + static_cast<int64_t>(inserted.size()));
    if (behind < oldSize) text += old.substr(static_cast<std::size_t>(behind));
    target.text() = std::move(text);
}
} // namespace

void GetintervalOperator::execute(Interpreter& interpreter) {
    int32_t count = popIndex(interpreter);
    int32_t index = popIndex(interpreter);
    Popped<> source = interpreter.operandStack->popHeld();
    if (source->type == ps_array)
        copyInterval(interpreter, *static_cast<ArrayObject*>(source.get()), index, count);
    else if (source->type == ps_string)
        copyInterval(interpreter, *static_cast<StringObject*>(source.get()), index, count);
    else
        PS_THROW("currently unsupported ");
}

void PutintervalOperator::execute(Interpreter& interpreter) {
    Popped<> source = interpreter.operandStack->popHeld();
    int32_t index = popIndex(interpreter);
    Popped<> target = interpreter.operandStack->popHeld();
    if (source->type == ps_array) {
        if (target->type != ps_array) PS_THROW("putinterval- only expecting array ");
        storeInterval(*static_cast<ArrayObject*>(target.get()), index,
                      *static_cast<ArrayObject*>(source.get()));
    } else if (source->type == ps_string) {
        if (target->type != ps_string) PS_THROW("putinterval- only expecting ps_string");
        storeInterval(*static_cast<StringObject*>(target.get()), index,
                      *static_cast<StringObject*>(source.get()));
    } else {
        PS_THROW("putinterval expected array or string");
    }
}
