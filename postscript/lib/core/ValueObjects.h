#pragma once

#include "core/PostscriptObject.h"

// The objects that are their value. A clone is a new object with the value and
// the attribute of a new object; describe() is the type name and the "==" text.
template <class Self, class T, uint32_t Tag, bool Executable>
class ValueObject : public PostscriptObject {
public:
    static constexpr uint32_t tag = Tag;
    explicit ValueObject(T value) : PostscriptObject(Tag, Executable), value(value) {}
    std::string describe() const override {
        return std::string(typeName(type)) + ' ' + Self::text(value);
    }
    std::string doubleEqualsText() const override { return Self::text(value); }
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new Self(value); }

    T value;
};

class IntegerObject : public ValueObject<IntegerObject, int32_t, ps_integer, false> {
public:
    using ValueObject::ValueObject;
    static std::string text(int32_t value);
    std::string equalsText() const override { return text(value); }
};

// A real has no "=" text.
class RealObject : public ValueObject<RealObject, double, ps_real, false> {
public:
    using ValueObject::ValueObject;
    static std::string text(double value);
};

class BooleanObject : public ValueObject<BooleanObject, bool, ps_boolean, true> {
public:
    using ValueObject::ValueObject;
    static std::string text(bool value) { return value ? "true" : "false"; }
    std::string equalsText() const override { return text(value); }
};

class NullObject : public PostscriptObject {
public:
    static constexpr uint32_t tag = ps_null;
    NullObject() : PostscriptObject(tag, true) {}
    std::string doubleEqualsText() const override { return "null"; }
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new NullObject; }
};

inline bool isNumber(const PostscriptObject* object) {
    return object->type == ps_integer || object->type == ps_real;
}
// The value of an object whose integer tag was checked.
inline int32_t integerValue(const PostscriptObject* object) {
    return static_cast<const IntegerObject*>(object)->value;
}
// The value of an integer or real; anything else throws "Unsupported number type".
double objectToNumber(const PostscriptObject* object);

// A mark that reaches the main loop as an object vanishes: its execute does nothing.
class MarkObject : public PostscriptObject {
public:
    static constexpr uint32_t tag = ps_mark;
    MarkObject() : PostscriptObject(tag, true) {}
    void execute(Interpreter&) override {}
    std::string doubleEqualsText() const override { return "-mark-"; }
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new MarkObject; }
};
