#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

void StringOperator::execute(Interpreter& interpreter) {
    int32_t length = interpreter.operandStack->pop<IntegerObject>("length of string")->value;
    if (length < 0 || length > largestLength) PS_THROW("Illegal length passed to string");
    Popped<StringObject> string(interpreter.makeString(std::string_view()));
    string->text().assign(static_cast<std::size_t>(length), '\0');
    interpreter.operandStack->push(string.get());
}

void AnchorsearchOperator::execute(Interpreter& interpreter) {
    Popped<StringObject> seek = interpreter.operandStack->pop<StringObject>("popStringObject");
    Popped<StringObject> string = interpreter.operandStack->pop<StringObject>("popStringObject");
    std::string& text = string->text();
    const std::size_t length = seek->text().size(); // seek may share the body
    bool match = length <= text.size() && text.compare(0, length, seek->text()) == 0;
    if (match) text.erase(0, length);
    interpreter.operandStack->push(string.get());
    if (match) interpreter.operandStack->push(seek.get());
    interpreter.operandStack->push(new BooleanObject(match));
}
