#include "pdf/GraphicsOperators.h"

#include "core/Interpreter.h"
#include "core/ValueObjects.h"
#include "pdf/Postscript2Pdf.h"

#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace {

// The digits are part of the output: every angle goes through them.
constexpr double pi = 3.1415926535;
constexpr double twoPi = 6.283185307;

double radians(double degrees) {
    return degrees * pi / 180;
}

// The walks start from the angle's integer part, which must fit in 32 bits,
// and step by 90 degrees: beyond that, or for NaN, they would never end, so
// such an arc writes nothing.
bool walkable(double startAngle, double endAngle) {
    constexpr double limit = 2147483648.0;
    return std::fabs(startAngle) < limit && std::fabs(endAngle) < limit;
}

// The multiple of 90 at or next to the angle, truncating toward zero, moved by
// a quarter turn in the walk's direction.
double firstBoundary(double angle, int64_t step) {
    return static_cast<double>((static_cast<int64_t>(angle) / 90 + step) * 90);
}

} // namespace

void Arcer::popOperands(Interpreter& interpreter) {
    endAngle = interpreter.operandStack->popNumber();
    startAngle = interpreter.operandStack->popNumber();
    radius = interpreter.operandStack->popNumber();
    centerY = interpreter.operandStack->popNumber();
    centerX = interpreter.operandStack->popNumber();
}

// One Bezier curve for the piece from one angle to the other. The first piece
// of an arc joins an open path with a line and starts a subpath otherwise.
void Arcer::segment(Postscript2Pdf& pdf, double from, double to, bool first) const {
    const double s = radians(from);
    const double e = radians(to);
    const double h = (e - s) * 0.5;
    const double c = std::cos(h);
    const double px = (4 - c) / 3;
    const double py = -((1 - c) * (c - 3)) / (std::sin(h) * 3);
    const double q = h - std::atan(py / px);
    const double m = std::sqrt(py * py + px * px) * radius;
    GraphicsState& state = pdf.currentState();
    state.currentX = std::cos(s) * radius + centerX;
    state.currentY = std::sin(s) * radius + centerY;
    if (!state.pathStarted || first) pdf.writePoint(state.pathStarted ? "l" : "m");
    const double endX = std::cos(e) * radius + centerX;
    const double endY = std::sin(e) * radius + centerY;
    pdf.writeCurve(std::cos(s + q) * m + centerX, std::sin(s + q) * m + centerY,
                   std::cos(e - q) * m + centerX, std::sin(e - q) * m + centerY, endX, endY);
    state.currentX = endX;
    state.currentY = endY;
}

void Arcer::counterclockwise(Postscript2Pdf& pdf) {
    if (!walkable(startAngle, endAngle)) return;
    while (startAngle > endAngle)
        endAngle += 360;
    double boundary = firstBoundary(startAngle, -1);
    // Equal angles draw nothing, not even the arc's start.
    if (!(endAngle > startAngle)) return;
    double angle = startAngle;
    bool first = true;
    for (;; boundary += 90) {
        const double next = boundary + 90;
        if (!(angle >= boundary && angle < next)) continue;
        if (next > endAngle) {
            segment(pdf, angle, endAngle, first);
            return;
        }
        segment(pdf, angle, next, first);
        first = false;
        angle = next;
        if (!(endAngle > next)) return;
    }
}

void Arcer::clockwise(Postscript2Pdf& pdf) {
    if (!walkable(startAngle, endAngle)) return;
    while (endAngle > startAngle)
        endAngle -= 360;
    double boundary = firstBoundary(startAngle, 1);
    if (!(startAngle > endAngle)) return;
    double angle = startAngle;
    bool first = true;
    for (;; boundary -= 90) {
        if (!(angle > boundary) || boundary + 90 < angle) continue;
        if (endAngle >= boundary) {
            segment(pdf, angle, endAngle, first);
            return;
        }
        segment(pdf, angle, boundary, first);
        first = false;
        angle = boundary;
        if (!(boundary > endAngle)) return;
    }
}

void Arcter::tangentArc(Interpreter& interpreter, Postscript2Pdf& pdf) {
    flushPendingMoveto(pdf);
    radius = interpreter.operandStack->popNumber();
    endY = interpreter.operandStack->popNumber();
    endX = interpreter.operandStack->popNumber();
    cornerY = interpreter.operandStack->popNumber();
    cornerX = interpreter.operandStack->popNumber();
    GraphicsState& state = pdf.currentState();
    startX = state.currentX;
    startY = state.currentY;

    const double d2x = endX - cornerX;
    const double d2y = endY - cornerY;
    const double d1x = startX - cornerX;
    const double d1y = startY - cornerY;
    const double l1 = d1x * d1x + d1y * d1y;
    const double l2 = d2x * d2x + d2y * d2y;
    const double den = std::sqrt(l2 * l1) - (d1y * d2y + d1x * d2x);
    // Collinear, or a leg of length 0: a line to the corner, and the tangents
    // stay those of the last tangent arc.
    if (den == 0) {
        state.currentX = cornerX;
        state.currentY = cornerY;
        pdf.writePoint("l");
        return;
    }
    const double k = std::fabs((d1y * d2x - d1x * d2y) * radius / den);
    double u2 = k / std::sqrt(l2);
    double u1 = k / std::sqrt(l1);
    if (radius < 0) {
        u1 = -u1;
        u2 = -u2;
    }
    tangent1X = cornerX + u1 * d1x;
    tangent1Y = cornerY + u1 * d1y;
    tangent2X = cornerX + u2 * d2x;
    tangent2Y = cornerY + u2 * d2y;

    const double a1 = std::atan2(d1y, d1x);
    double w = std::atan2(d2y, d2x) - a1;
    if (w > pi)
        w += -twoPi;
    else if (w < -pi)
        w += twoPi;
    const double t1x = tangent1X - cornerX;
    const double t1y = tangent1Y - cornerY;
    const double dist = std::sqrt(radius * radius + (t1x * t1x + t1y * t1y));
    const double b = w * 0.5 + a1;

    Arcer arc;
    arc.centerX = cornerX + dist * std::cos(b);
    arc.centerY = cornerY + dist * std::sin(b);
    arc.radius = radius;
    arc.startAngle = std::atan2(tangent1Y - arc.centerY, tangent1X - arc.centerX) * 180 / pi;
    arc.endAngle = std::atan2(tangent2Y - arc.centerY, tangent2X - arc.centerX) * 180 / pi;
    if (w >= 0)
        arc.clockwise(pdf);
    else
        arc.counterclockwise(pdf);
}

void ArcOperator::execute(Interpreter& interpreter) {
    flushPendingMoveto(*pdf);
    popOperands(interpreter);
    counterclockwise(*pdf);
}

void ArcnOperator::execute(Interpreter& interpreter) {
    flushPendingMoveto(*pdf);
    popOperands(interpreter);
    clockwise(*pdf);
}

void ArctOperator::execute(Interpreter& interpreter) {
    tangentArc(interpreter, *pdf);
}

void ArctoOperator::execute(Interpreter& interpreter) {
    tangentArc(interpreter, *pdf);
    for (double value : {tangent1X, tangent1Y, tangent2X, tangent2Y})
        interpreter.operandStack->push(new RealObject(value));
}
