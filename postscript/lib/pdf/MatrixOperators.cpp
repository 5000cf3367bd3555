#include "pdf/GraphicsOperators.h"

#include "core/ArrayObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "pdf/Postscript2Pdf.h"

#include <algorithm>
#include <cmath>

void multiplyMatrices(const double m[6], const double n[6], double product[6]) {
    const double result[6] = {
        m[0] * n[0] + m[1] * n[2],        m[0] * n[1] + m[1] * n[3],
        m[2] * n[0] + m[3] * n[2],        m[2] * n[1] + m[3] * n[3],
        m[4] * n[0] + m[5] * n[2] + n[4], m[4] * n[1] + m[5] * n[3] + n[5],
    };
    std::copy(result, result + 6, product);
}

void invertMatrix(const double m[6], double inverse[6]) {
    const double det = m[0] * m[3] - m[1] * m[2];
    const double a = m[3] / det;
    const double b = -m[1] / det;
    const double c = -m[2] / det;
    const double d = m[0] / det;
    const double result[6] = {a, b, c, d, -m[4] * a - c * m[5], -m[4] * b - d * m[5]};
    std::copy(result, result + 6, inverse);
}

namespace {

// The digits are part of the behaviour: 90 rotate is not exactly a quarter turn.
constexpr double pi = 3.1415926535;

ArrayObject* topArray(Interpreter& interpreter) {
    return objectAs<ArrayObject>(interpreter.operandStack->top());
}

// The tracked matrix becomes t x matrix, and t goes to the content.
void applyToCurrent(Postscript2Pdf& pdf, const double t[6]) {
    double* current = pdf.currentState().matrix;
    multiplyMatrices(t, current, current);
    pdf.writeMatrix(t, "cm");
}

// The forms of translate, scale and rotate: count numbers, or count numbers
// and an array, told apart by the type of the top operand alone. With the
// array, the array gets the matrix and goes back; without it, the matrix
// applies to the tracked one and reaches the content.
template <int count, class Make>
void applyOrStore(Postscript2Pdf& pdf, Interpreter& interpreter, Make make) {
    ObjectStack& stack = *interpreter.operandStack;
    Popped<> array;
    if (topArray(interpreter)) array = stack.popHeld();
    Popped<> operands[count];
    for (int i = count - 1; i >= 0; --i)
        operands[i] = stack.popHeld();
    double values[count];
    for (int i = 0; i < count; ++i)
        values[i] = objectToNumber(operands[i].get());
    double t[6];
    make(values, t);
    if (!array) {
        applyToCurrent(pdf, t);
        return;
    }
    Postscript2Pdf::storeMatrix(*static_cast<ArrayObject*>(array.get())->arrayData(), t);
    stack.push(array.get());
}

// concat and setmatrix: an array of six numbers, or the failure given.
void popMatrix(Interpreter& interpreter, const char* failure, double m[6]) {
    Popped<> operand(interpreter.operandStack->pop());
    const ArrayObject* array = objectAs<ArrayObject>(operand.get());
    if (!array) PS_THROW(failure);
    Postscript2Pdf::readMatrix(*array->arrayData(), m);
}

// The operands of the point transformations: x y, or x y matrix.
struct PointOperands {
    double x;
    double y;
    double matrix[6];
    bool explicitMatrix;
};

PointOperands popPoint(Postscript2Pdf& pdf, Interpreter& interpreter) {
    ObjectStack& stack = *interpreter.operandStack;
    Popped<> array;
    if (topArray(interpreter)) array = stack.popHeld();
    Popped<> y(stack.pop());
    Popped<> x(stack.pop());
    PointOperands point;
    point.explicitMatrix = static_cast<bool>(array);
    if (array)
        Postscript2Pdf::readMatrix(*static_cast<ArrayObject*>(array.get())->arrayData(),
                                   point.matrix);
    else
        std::copy(pdf.currentState().matrix, pdf.currentState().matrix + 6, point.matrix);
    point.x = objectToNumber(x.get());
    point.y = objectToNumber(y.get());
    return point;
}

void pushPoint(Interpreter& interpreter, const double m[6], double x, double y, bool translated) {
    double tx = m[0] * x + m[2] * y;
    double ty = m[1] * x + m[3] * y;
    if (translated) {
        tx += m[4];
        ty += m[5];
    }
    interpreter.operandStack->push(new RealObject(tx));
    interpreter.operandStack->push(new RealObject(ty));
}

} // namespace

void Transformer::transformPoint(Interpreter& interpreter, bool invert, bool deltaOnly) {
    PointOperands point = popPoint(*pdf, interpreter);
    if (invert) invertMatrix(point.matrix, point.matrix);
    pushPoint(interpreter, point.matrix, point.x, point.y, !deltaOnly);
}

void TransformOperator::execute(Interpreter& interpreter) {
    transformPoint(interpreter, false, false);
}

void ItransformOperator::execute(Interpreter& interpreter) {
    transformPoint(interpreter, true, false);
}

void IdtransformOperator::execute(Interpreter& interpreter) {
    transformPoint(interpreter, true, true);
}

// Unlike the others, the translation of an explicit matrix is added; only the
// tracked matrix is applied as a delta.
void DtransformOperator::execute(Interpreter& interpreter) {
    PointOperands point = popPoint(*pdf, interpreter);
    pushPoint(interpreter, point.matrix, point.x, point.y, point.explicitMatrix);
}

void TranslateOperator::execute(Interpreter& interpreter) {
    applyOrStore<2>(*pdf, interpreter, [](const double v[2], double t[6]) {
        const double m[6] = {1, 0, 0, 1, v[0], v[1]};
        std::copy(m, m + 6, t);
    });
}

void ScaleOperator::execute(Interpreter& interpreter) {
    applyOrStore<2>(*pdf, interpreter, [](const double v[2], double t[6]) {
        const double m[6] = {v[0], 0, 0, v[1], 0, 0};
        std::copy(m, m + 6, t);
    });
}

void RotateOperator::execute(Interpreter& interpreter) {
    applyOrStore<1>(*pdf, interpreter, [](const double v[1], double t[6]) {
        const double radians = v[0] * pi / 180;
        const double cosine = std::cos(radians);
        const double sine = std::sin(radians);
        const double m[6] = {cosine, sine, -sine, cosine, 0, 0};
        std::copy(m, m + 6, t);
    });
}

void ConcatOperator::execute(Interpreter& interpreter) {
    double t[6];
    popMatrix(interpreter, "Illegal param to concat operator", t);
    applyToCurrent(*pdf, t);
}

// PDF can only multiply, so the content gets the change from the tracked
// matrix to the new one, and the tracked matrix becomes the new one exactly.
void SetmatrixOperator::execute(Interpreter& interpreter) {
    double m[6];
    popMatrix(interpreter, "Matrix param expected for setmatrix operator", m);
    double* current = pdf->currentState().matrix;
    double change[6];
    invertMatrix(current, change);
    multiplyMatrices(m, change, change);
    pdf->writeMatrix(change, "cm");
    std::copy(m, m + 6, current);
}

void CurrentmatrixOperator::execute(Interpreter& interpreter) {
    Popped<ArrayObject> array = interpreter.operandStack->pop<ArrayObject>("currentmatrix");
    Postscript2Pdf::storeMatrix(*array->arrayData(), pdf->currentState().matrix);
    interpreter.operandStack->push(array.get());
}

// The array stays where it is while it is filled.
void DefaultmatrixOperator::execute(Interpreter& interpreter) {
    ArrayObject* array = topArray(interpreter);
    if (!array) PS_THROW("Illegal param type to defaultmatrix");
    Postscript2Pdf::storeMatrix(*array->arrayData(), pdf->defaultMatrix);
}
