#include "core/StringObject.h"

std::string_view StringObject::cText() const {
    const std::string& t = text();
    std::size_t nul = t.find('\0');
    return std::string_view(t).substr(0, nul);
}

std::string StringObject::describe() const {
    std::string result = typeName(type);
    result += ' ';
    result += cText();
    return result;
}

std::string StringObject::doubleEqualsText() const {
    std::string result = "(";
    result += cText();
    result += ')';
    return result;
}
