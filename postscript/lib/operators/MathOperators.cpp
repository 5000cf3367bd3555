#include "operators/MathOperators.h"
#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/NumberUtils.h"
#include "core/ObjectCompare.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

// The digits are part of the behaviour: 90 cos is not exactly 0.
constexpr double pi = 3.1415926535;
constexpr int32_t lowestInteger = std::numeric_limits<int32_t>::min();

double realValue(const PostscriptObject* object) {
    return static_cast<const RealObject*>(object)->value;
}

// Integer results wrap at 32 bits; unsigned arithmetic does that without overflow.
int32_t wrap(uint32_t value) {
    return static_cast<int32_t>(value);
}
uint32_t bits(int32_t value) {
    return static_cast<uint32_t>(value);
}

// The processor's division trap, which idiv and mod would run into.
void checkDivision(int32_t dividend, int32_t divisor, const char* zero, const char* overflow) {
    if (divisor == 0) PS_THROW(zero);
    if (dividend == lowestInteger && divisor == -1) PS_THROW(overflow);
}

// The single-operand operators that keep their operand's type.
template <class OnInteger, class OnReal>
void keepType(Interpreter& interpreter, const char* failure, OnInteger onInteger, OnReal onReal) {
    Popped<> operand(interpreter.operandStack->pop());
    PostscriptObject* result;
    if (operand->type == ps_integer)
        result = new IntegerObject(onInteger(integerValue(operand.get())));
    else if (operand->type == ps_real)
        result = new RealObject(onReal(realValue(operand.get())));
    else
        PS_THROW(failure);
    interpreter.operandStack->push(result);
}

int32_t unchanged(int32_t value) {
    return value;
}

} // namespace

int32_t negateWrapping(int32_t value) {
    return wrap(0u - bits(value));
}

void MathOperator::execute(Interpreter& interpreter) {
    ObjectStack& stack = *interpreter.operandStack;
    Popped<> second(stack.pop());
    Popped<> first(stack.pop());
    PostscriptObject* result;
    if (first->type == ps_integer && second->type == ps_integer) {
        firstInteger = integerValue(first.get());
        secondInteger = integerValue(second.get());
        result = calcInteger();
    } else if (isNumber(first.get()) || isNumber(second.get())) {
        // A number beside anything else fails on reading the other one.
        firstReal = objectToNumber(first.get());
        secondReal = objectToNumber(second.get());
        result = calcReal();
    } else {
        PS_THROW("Unsupported number type in calc");
    }
    stack.push(result);
}

PostscriptObject* AddOperator::calcReal() {
    return new RealObject(firstReal + secondReal);
}
PostscriptObject* AddOperator::calcInteger() {
    return new IntegerObject(wrap(bits(firstInteger) + bits(secondInteger)));
}

PostscriptObject* SubOperator::calcReal() {
    return new RealObject(firstReal - secondReal);
}
PostscriptObject* SubOperator::calcInteger() {
    return new IntegerObject(wrap(bits(firstInteger) - bits(secondInteger)));
}

PostscriptObject* MulOperator::calcReal() {
    return new RealObject(firstReal * secondReal);
}
PostscriptObject* MulOperator::calcInteger() {
    return new IntegerObject(wrap(bits(firstInteger) * bits(secondInteger)));
}

PostscriptObject* DivOperator::calcReal() {
    return new RealObject(firstReal / secondReal);
}
PostscriptObject* DivOperator::calcInteger() {
    return new RealObject(static_cast<double>(firstInteger) / secondInteger);
}

PostscriptObject* IdivOperator::calcReal() {
    return new IntegerObject(numbers::truncateToInt32(firstReal / secondReal));
}
PostscriptObject* IdivOperator::calcInteger() {
    checkDivision(firstInteger, secondInteger, "Division by zero in idiv",
                  "Integer overflow in idiv");
    return new IntegerObject(firstInteger / secondInteger);
}

void TrigOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    interpreter.operandStack->push(new RealObject(applyDegrees(objectToNumber(operand.get()))));
}

double CosOperator::applyDegrees(double degrees) const {
    return std::cos(degrees * pi / 180.0);
}
double SinOperator::applyDegrees(double degrees) const {
    return std::sin(degrees * pi / 180.0);
}

void ModOperator::execute(Interpreter& interpreter) {
    Popped<> second(interpreter.operandStack->pop());
    Popped<> first(interpreter.operandStack->pop());
    if (first->type != ps_integer || second->type != ps_integer)
        PS_THROW("Illegal param types for mod operator");
    int32_t a = integerValue(first.get()), b = integerValue(second.get());
    checkDivision(a, b, "Division by zero in mod", "Integer overflow in mod");
    interpreter.operandStack->push(new IntegerObject(std::abs(a % b)));
}

void AbsOperator::execute(Interpreter& interpreter) {
    keepType(
        interpreter, "Unsupported number type in abs",
        [](int32_t v) { return v < 0 ? negateWrapping(v) : v; },
        // Written so that a NaN is multiplied too.
        [](double v) { return v >= 0.0 ? v : v * -1.0; });
}

void NegOperator::execute(Interpreter& interpreter) {
    keepType(interpreter, "Unsupported number type in neg", negateWrapping,
             [](double v) { return v * -1.0; });
}

void CeilingOperator::execute(Interpreter& interpreter) {
    keepType(interpreter, "Unsupported number type in ceiling", unchanged,
             [](double v) { return std::ceil(v); });
}

void FloorOperator::execute(Interpreter& interpreter) {
    keepType(interpreter, "Unsupported number type in floor", unchanged,
             [](double v) { return std::floor(v); });
}

void RoundOperator::execute(Interpreter& interpreter) {
    keepType(interpreter, "Unsupported number type in round", unchanged, [](double v) {
        return static_cast<double>(numbers::truncateToInt32(v > 0.0 ? v + 0.5 : v - 0.5));
    });
}

void SqrtOperator::execute(Interpreter& interpreter) {
    Popped<> operand(interpreter.operandStack->pop());
    interpreter.operandStack->push(new RealObject(std::sqrt(objectToNumber(operand.get()))));
}

void AtanOperator::execute(Interpreter& interpreter) {
    Popped<> den(interpreter.operandStack->pop());
    Popped<> num(interpreter.operandStack->pop());
    double angle = std::atan2(objectToNumber(num.get()), objectToNumber(den.get()));
    interpreter.operandStack->push(new RealObject(angle * 180.0 / pi));
}
