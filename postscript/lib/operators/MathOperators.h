#pragma once

#include "operators/OperatorClass.h"

#include <cstdint>

// Integer negation as the machine does it: the lowest integer stays as it is.
int32_t negateWrapping(int32_t value);

// The binary arithmetic operators, all with this one execute: it pops b and
// then a, keeps both here, and hands them to calcReal when either is a real
// and to calcInteger when both are integers; each returns its result.
class MathOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) final;

protected:
    virtual PostscriptObject* calcReal() = 0;
    virtual PostscriptObject* calcInteger() = 0;

    double firstReal = 0.0;
    double secondReal = 0.0;
    int32_t firstInteger = 0;
    int32_t secondInteger = 0;
};

// sin and cos: pop a number, push applyDegrees of it as a real.
class TrigOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) final;

protected:
    virtual double applyDegrees(double degrees) const = 0;
};

#define KEL_MATH_OPERATOR(Class)                                                                   \
    class Class : public MathOperator {                                                            \
    public:                                                                                        \
        using MathOperator::MathOperator;                                                          \
                                                                                                   \
    protected:                                                                                     \
        PostscriptObject* calcReal() override;                                                     \
        PostscriptObject* calcInteger() override;                                                  \
    }

#define KEL_TRIG_OPERATOR(Class)                                                                   \
    class Class : public TrigOperator {                                                            \
    public:                                                                                        \
        using TrigOperator::TrigOperator;                                                          \
                                                                                                   \
    protected:                                                                                     \
        double applyDegrees(double degrees) const override;                                        \
    }
