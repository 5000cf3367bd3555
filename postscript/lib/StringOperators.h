#pragma once

#include "NameObject.h"

// int string string   n bytes of 0
class StringOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// string seek anchorsearch post match true | string false
// A match shortens the string's own body, seen by everything sharing it.
class AnchorsearchOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
