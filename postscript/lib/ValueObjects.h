#pragma once

#include "PostscriptObject.h"

class IntegerObject : public PostscriptObject {
public:
    explicit IntegerObject(int32_t value) : PostscriptObject(ps_integer, false), value(value) {}
    std::string describe() const override;
    std::string doubleEqualsText() const override;
    std::string equalsText() const override;
    PostscriptObject* clone(VirtualMemoryObject*) const override;

    int32_t value;
};

class RealObject : public PostscriptObject {
public:
    explicit RealObject(double value) : PostscriptObject(ps_real, false), value(value) {}
    std::string describe() const override;
    std::string doubleEqualsText() const override;
    PostscriptObject* clone(VirtualMemoryObject*) const override;

    double value;
};

class BooleanObject : public PostscriptObject {
public:
    explicit BooleanObject(bool value) : PostscriptObject(ps_boolean, true), value(value) {}
    std::string describe() const override;
    std::string doubleEqualsText() const override;
    std::string equalsText() const override;
    PostscriptObject* clone(VirtualMemoryObject*) const override;

    bool value;
};

class NullObject : public PostscriptObject {
public:
    NullObject() : PostscriptObject(ps_null, true) {}
    std::string doubleEqualsText() const override { return "null"; }
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new NullObject; }
};

// A mark that reaches the main loop as an object vanishes: its execute does nothing.
class MarkObject : public PostscriptObject {
public:
    MarkObject() : PostscriptObject(ps_mark, true) {}
    void execute(Interpreter&) override {}
    std::string doubleEqualsText() const override { return "-mark-"; }
    PostscriptObject* clone(VirtualMemoryObject*) const override { return new MarkObject; }
};
