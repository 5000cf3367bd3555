#include "core/ArrayObject.h"

#include "core/Interpreter.h"
#include "core/PostscriptException.h"

PostscriptObject* ArrayData::requiredAt(std::size_t index) const {
    PostscriptObject* element = items.at(index);
    if (!element) PS_THROW("No object at given array index");
    return element;
}

void ArrayObject::execute(Interpreter& interpreter) {
    ObjectStack& elements = items();
    if (elements.empty()) return;
    if (execIndex < elements.size()) {
        // The array goes back under its element: the position lives in the
        // object, the machine stack stays flat.
        PostscriptObject* element = elements.at(execIndex);
        ++execIndex;
        interpreter.executionStack->push(this);
        interpreter.executionStack->push(element);
        return;
    }
    executable = false;
    execIndex = 0;
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
