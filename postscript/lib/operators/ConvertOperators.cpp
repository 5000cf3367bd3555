#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/NumberUtils.h"
#include "core/ObjectCompare.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

namespace {

// The scanner's real form. The empty text goes to the conversion at once,
// which finds no digits and reads 0.
bool realFromText(std::string_view text, double& value) {
    if (!text.empty() && !numbers::isRealToken(text)) return false;
    return numbers::parseReal(text, value);
}

} // namespace

void TypeOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    interpreter.operandStack->push(interpreter.makeName(typeAnswerName(operand->type)));
}

void CvxOperator::execute(Interpreter& interpreter) {
    PostscriptObject* top = interpreter.operandStack->top();
    if (!top) PS_THROW("pop - expected item on stack");
    top->executable = true;
}

void XcheckOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    interpreter.operandStack->push(new BooleanObject(operand->executable));
}

void ReadonlyOperator::execute(Interpreter&) {}

void BindOperator::execute(Interpreter&) {}

void CviOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    int32_t value = 0;
    double real = 0.0;
    switch (operand->type) {
    case ps_integer:
        value = static_cast<IntegerObject*>(operand.get())->value;
        break;
    case ps_real:
        value = numbers::truncateToInt32(static_cast<RealObject*>(operand.get())->value);
        break;
    case ps_string: {
        std::string_view text = static_cast<StringObject*>(operand.get())->cText();
        if (numbers::parseIntegerToken(text, value)) break;
        if (!realFromText(text, real)) PS_THROW("Unable to convert in cvi");
        value = numbers::truncateToInt32(real);
        break;
    }
    default:
        PS_THROW("Unsupported conversion type for cvi");
    }
    interpreter.operandStack->push(new IntegerObject(value));
}

void CvrOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    double value = 0.0;
    int32_t integer = 0;
    switch (operand->type) {
    case ps_real:
    case ps_integer:
        value = objectToNumber(operand.get());
        break;
    case ps_string: {
        // The real form first: digits alone take this path.
        std::string_view text = static_cast<StringObject*>(operand.get())->cText();
        if (realFromText(text, value)) break;
        if (!numbers::parseIntegerToken(text, integer)) PS_THROW("Unable to convert in cvr");
        value = integer;
        break;
    }
    default:
        PS_THROW("Unsupported conversion type for cvr");
    }
    interpreter.operandStack->push(new RealObject(value));
}

void CvnOperator::execute(Interpreter& interpreter) {
    Popped<StringObject> string(interpreter.operandStack->pop<StringObject>("cvn"));
    interpreter.operandStack->push(interpreter.makeName(string->cText(), string->executable));
}

void CvsOperator::execute(Interpreter& interpreter) {
    Popped<StringObject> target = interpreter.operandStack->pop<StringObject>("popStringObject");
    Popped<> object(interpreter.operandStack->pop());
    const std::string text = object->equalsText();
    std::string& bytes = target->text();
    // One byte more than the target holds is allowed: it lands on the place of
    // the terminator and is not kept. The target keeps its length.
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i > bytes.size()) PS_THROW("String index out of range");
        if (i < bytes.size()) bytes[i] = text[i];
    }
    interpreter.operandStack->push(interpreter.makeString(std::string_view(text)));
}
