#include "ValueObjects.h"

#include "PostscriptException.h"

std::string IntegerObject::describe() const {
    return formatString("%s %d", typeName(type), value);
}
std::string IntegerObject::doubleEqualsText() const {
    return formatString("%d", value);
}
std::string IntegerObject::equalsText() const {
    return formatString("%d", value);
}
PostscriptObject* IntegerObject::clone(VirtualMemoryObject*) const {
    return new IntegerObject(value);
}

std::string RealObject::describe() const {
    return formatString("%s %f", typeName(type), value);
}
std::string RealObject::doubleEqualsText() const {
    return formatString("%f", value);
}
PostscriptObject* RealObject::clone(VirtualMemoryObject*) const {
    return new RealObject(value);
}

std::string BooleanObject::describe() const {
    return std::string(typeName(type)) + (value ? " true" : " false");
}
std::string BooleanObject::doubleEqualsText() const {
    return value ? "true" : "false";
}
std::string BooleanObject::equalsText() const {
    return value ? "true" : "false";
}
PostscriptObject* BooleanObject::clone(VirtualMemoryObject*) const {
    return new BooleanObject(value);
}
