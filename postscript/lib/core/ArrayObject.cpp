#include "core/ArrayObject.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

PostscriptObject* ArrayData::requiredAt(std::size_t index) const {
    PostscriptObject* element = items.at(index);
    if (!element) PS_THROW("No object at given array index");
    return element;
}

void ArrayObject::execute(Interpreter& interpreter) {
    // The run loop steps a procedure where it stands on the execution stack.
    interpreter.executionStack->push(this);
}

std::string ArrayObject::describe() const {
    std::string text =
        formatString("%s, size=%d", typeName(type), static_cast<int>(items().size()));
    if (executable) text += formatString(", exec index=%d", static_cast<int>(execIndex));
    return text;
}

std::string ArrayObject::doubleEqualsText() const {
    NestingGuard guard("Array nested too deeply to print");
    std::string text = "[";
    for (PostscriptObject* element : items().items) {
        text += element ? element->doubleEqualsText() : std::string("-invalid null ob-");
        text += ' ';
    }
    text += ']';
    return text;
}

void readMatrix(const ArrayData& array, double m[6]) {
    for (int i = 5; i >= 0; --i)
        m[i] = objectToNumber(array.requiredAt(static_cast<std::size_t>(i)));
}

void storeMatrix(ArrayData& array, const double m[6]) {
    array.items.clear();
    for (int i = 0; i < 6; ++i)
        array.items.push(new RealObject(m[i]));
}
