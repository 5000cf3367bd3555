#pragma once

#include "NameObject.h"

#include <cstdint>

// Integer negation as the machine does it: the lowest integer stays as it is.
int32_t negateWrapping(int32_t value);

// Mix-in of the binary arithmetic operators. calculate() is their one execute:
// it pops b and then a, keeps both here, and hands them to calcReal when either
// is a real and to calcInteger when both are integers; each returns its result.
class MathOperator {
protected:
    ~MathOperator() = default;
    void calculate(Interpreter& interpreter);
    virtual PostscriptObject* calcReal() = 0;
    virtual PostscriptObject* calcInteger() = 0;

    double firstReal = 0.0;
    double secondReal = 0.0;
    int32_t firstInteger = 0;
    int32_t secondInteger = 0;
};

// Mix-in of sin and cos: pop a number, push applyDegrees of it as a real.
class TrigOperator {
protected:
    ~TrigOperator() = default;
    void evaluate(Interpreter& interpreter);
    virtual double applyDegrees(double degrees) const = 0;
};

// num1 num2 add sum          integers wrap at 32 bits
class AddOperator : public NameObject, public MathOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { calculate(interpreter); }

protected:
    PostscriptObject* calcReal() override;
    PostscriptObject* calcInteger() override;
};

// num1 num2 sub difference   integers wrap at 32 bits
class SubOperator : public NameObject, public MathOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { calculate(interpreter); }

protected:
    PostscriptObject* calcReal() override;
    PostscriptObject* calcInteger() override;
};

// num1 num2 mul product      integers wrap at 32 bits
class MulOperator : public NameObject, public MathOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { calculate(interpreter); }

protected:
    PostscriptObject* calcReal() override;
    PostscriptObject* calcInteger() override;
};

// num1 num2 div quotient     always a real
class DivOperator : public NameObject, public MathOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { calculate(interpreter); }

protected:
    PostscriptObject* calcReal() override;
    PostscriptObject* calcInteger() override;
};

// num1 num2 idiv quotient    always an integer, reals accepted
class IdivOperator : public NameObject, public MathOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { calculate(interpreter); }

protected:
    PostscriptObject* calcReal() override;
    PostscriptObject* calcInteger() override;
};

// angle cos real
class CosOperator : public NameObject, public TrigOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { evaluate(interpreter); }

protected:
    double applyDegrees(double degrees) const override;
};

// angle sin real
class SinOperator : public NameObject, public TrigOperator {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { evaluate(interpreter); }

protected:
    double applyDegrees(double degrees) const override;
};

// int1 int2 mod remainder    the absolute value of the truncating remainder
class ModOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num abs num                the lowest integer stays
class AbsOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num neg num                the lowest integer stays
class NegOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num ceiling num
class CeilingOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num floor num
class FloorOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num round num              halves away from zero
class RoundOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num sqrt real
class SqrtOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num den atan angle         between -180 and 180
class AtanOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
