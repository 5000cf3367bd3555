#pragma once

#include "NameObject.h"

// any = -     writes the object's "=" text and a line feed to standard output
class EqualsOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any == -    writes the object's "==" text and a line feed
class DoubleEqualsOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any1 ... anyn stack any1 ... anyn    writes every operand, top first, in "==" form
class StackOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
