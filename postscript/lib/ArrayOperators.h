#pragma once

#include "NameObject.h"

// - { -   opens a procedure under construction
class LeftCurlyBraceOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - } proc   closes the innermost procedure under construction
class RightCurlyBraceOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// int array array   n nulls; none for n at or below 0
class ArrayOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any0 ... anyn-1 int packedarray array   a plain array: there is no packed type
class PackedarrayOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// bool setpacking -   drops its operand
class SetpackingOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - currentpacking true
class CurrentpackingOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// array aload any0 ... anyn-1 array
class AloadOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any0 ... anyn-1 array astore array
class AstoreOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
