#pragma once

#include "NameObject.h"

class OperatorFactories;

// The logical operators and the constants true, false and null; called by
// addComparisonOperators.
void addBooleanOperators(OperatorFactories& factories);

// bool|int not bool|int      an integer is negated, not complemented
class NotOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// bool1|int1 bool2|int2 and bool|int
class AndOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// bool1|int1 bool2|int2 or bool|int
class OrOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// bool1|int1 bool2|int2 xor bool|int
class XOrOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - true true      by way of the execution stack
class TrueOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - false false    by way of the execution stack
class FalseOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - null null      by way of the execution stack
class NullOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
