#include "pdf/GraphicsOperators.h"

#include "core/ArrayObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "pdf/NumberFormat.h"
#include "pdf/Postscript2Pdf.h"

#include <cstddef>
#include <string_view>

void flushPendingMoveto(Postscript2Pdf& pdf) {
    if (!pdf.pendingMoveto) return;
    pdf.writePoint("m");
    pdf.pendingMoveto = false;
}

namespace {

bool separates(char c) {
    return c == ' ' || c == '\n' || c == '\r';
}

// PDF allows no "q" between a path and its clip, but the driver often saves
// the state after building the path. So the clip goes to the start of the line
// after the last path segment when a "q" stands between them, and at the end
// otherwise. The scan stops at the first segment token: only the tail of the
// content is read.
void placeClip(Postscript2Pdf& pdf, std::string_view clip) {
    const std::string_view text = pdf.contentText.view();
    const char* begin = text.data();
    const char* p = begin + text.size();
    bool passedSave = false;
    while (p != begin) {
        if (separates(p[-1])) {
            --p;
            continue;
        }
        const char* end = p;
        while (p != begin && !separates(p[-1]))
            --p;
        if (end - p != 1) continue;
        const char token = *p;
        if (token == 'q') {
            passedSave = true;
        } else if (token == 'c' || token == 'l' || token == 'v' || token == 'y') {
            // A "q" behind the token means a separator follows it.
            if (passedSave) {
                pdf.contentText.insert(static_cast<std::size_t>(p - begin) + 2, clip);
                return;
            }
            break;
        }
    }
    pdf.contentText.append(clip);
}

// One rectangle, its template in one append: prefix, the four numbers each
// with a blank behind, suffix.
void writeRectangle(Postscript2Pdf& pdf, std::string_view prefix, const double (&numbers)[4],
                    std::string_view suffix) {
    constexpr std::size_t affixRoom = 16;
    char text[4 * numberTextSize + 2 * affixRoom];
    char* at = text;
    for (char c : prefix)
        *at++ = c;
    for (double number : numbers) {
        at += formatNumber(number, at);
        *at++ = ' ';
    }
    for (char c : suffix)
        *at++ = c;
    pdf.contentText.append(text, static_cast<std::size_t>(at - text));
}

// The operands of rectclip, rectfill and rectstroke: x y w h, or an array
// whose every fourth element stands for all four numbers of a rectangle.
// Calls onRectangle with each rectangle as it is read.
template <class OnRectangle>
void readRectangles(Interpreter& interpreter, const char* failure, OnRectangle onRectangle) {
    Popped<> top(interpreter.operandStack->pop());
    if (const ArrayObject* array = objectAs<ArrayObject>(top.get())) {
        const ObjectStack& items = array->items();
        if (items.size() % 4 != 0) PS_THROW("Array must have a multiple of 4 elements");
        for (std::size_t i = 0; i < items.size(); i += 4) {
            const double value = objectToNumber(items.at(i));
            onRectangle({value, value, value, value});
        }
        return;
    }
    if (!isNumber(top.get())) PS_THROW(failure);
    double rectangle[4];
    rectangle[3] = objectToNumber(top.get());
    for (int i = 2; i >= 0; --i)
        rectangle[i] = interpreter.operandStack->popNumber();
    onRectangle(rectangle);
}

// A painted rectangle keeps its own path state inside "q" and "Q", away from
// the path that may be open.
void paintRectangles(Interpreter& interpreter, Postscript2Pdf& pdf, const char* failure,
                     std::string_view suffix) {
    readRectangles(interpreter, failure, [&](const double(&rectangle)[4]) {
        writeRectangle(pdf, "q ", rectangle, suffix);
    });
}

// Painting and closepath leave the current point where it is; they end the
// subpath, so that the next arc starts one with a move.
void endPath(Postscript2Pdf& pdf, std::string_view op) {
    pdf.contentText.append(op);
    pdf.currentState().pathStarted = false;
}

} // namespace

void InitclipOperator::execute(Interpreter&) {}

void EoclipOperator::execute(Interpreter&) {
    placeClip(*pdf, "W* n ");
    pdf->currentState().pathStarted = false;
}

void ClipOperator::execute(Interpreter&) {
    placeClip(*pdf, "W n ");
    pdf->currentState().pathStarted = false;
}

void RectclipOperator::execute(Interpreter& interpreter) {
    GraphicsState& state = pdf->currentState();
    readRectangles(interpreter, "Unsupported parameter type for rectclip",
                   [&](const double(&rectangle)[4]) {
                       writeRectangle(*pdf, {}, rectangle, "re W n\n");
                       state.currentX = rectangle[0];
                       state.currentY = rectangle[1];
                   });
    state.pathStarted = false;
}

void RectfillOperator::execute(Interpreter& interpreter) {
    paintRectangles(interpreter, *pdf, "Unsupported parameter type for rectfill", "re f Q\n");
}

void RectstrokeOperator::execute(Interpreter& interpreter) {
    paintRectangles(interpreter, *pdf, "Unsupported parameter type for rectstroke", "re S Q\n");
}

void StrokeOperator::execute(Interpreter&) {
    endPath(*pdf, "S ");
}

// The path stays open in the PDF text: there is nothing to discard.
void NewpathOperator::execute(Interpreter&) {}

void FillOperator::execute(Interpreter&) {
    endPath(*pdf, "f\n");
}

void EofillOperator::execute(Interpreter&) {
    endPath(*pdf, "f*\n");
}

// Only the last of a run of movetos reaches the content, when something draws.
void MovetoOperator::execute(Interpreter& interpreter) {
    const double y = interpreter.operandStack->popNumber();
    const double x = interpreter.operandStack->popNumber();
    GraphicsState& state = pdf->currentState();
    state.currentX = x;
    state.currentY = y;
    pdf->pendingMoveto = true;
}

void RmovetoOperator::execute(Interpreter& interpreter) {
    const double dy = interpreter.operandStack->popNumber();
    const double dx = interpreter.operandStack->popNumber();
    GraphicsState& state = pdf->currentState();
    state.currentX += dx;
    state.currentY += dy;
    pdf->pendingMoveto = true;
}

void LinetoOperator::execute(Interpreter& interpreter) {
    flushPendingMoveto(*pdf);
    const double y = interpreter.operandStack->popNumber();
    const double x = interpreter.operandStack->popNumber();
    GraphicsState& state = pdf->currentState();
    state.currentX = x;
    state.currentY = y;
    pdf->writePoint("l");
}

// Unlike lineto, the deferred moveto waits until both operands are read.
void RlinetoOperator::execute(Interpreter& interpreter) {
    const double dy = interpreter.operandStack->popNumber();
    const double dx = interpreter.operandStack->popNumber();
    flushPendingMoveto(*pdf);
    GraphicsState& state = pdf->currentState();
    state.currentX += dx;
    state.currentY += dy;
    pdf->writePoint("l");
}

namespace {

// The six numbers of curveto and rcurveto, x1 first.
void popCurve(Interpreter& interpreter, double (&points)[6]) {
    for (int i = 5; i >= 0; --i)
        points[i] = interpreter.operandStack->popNumber();
}

} // namespace

void CurvetoOperator::execute(Interpreter& interpreter) {
    flushPendingMoveto(*pdf);
    double p[6];
    popCurve(interpreter, p);
    GraphicsState& state = pdf->currentState();
    state.currentX = p[4];
    state.currentY = p[5];
    pdf->writeCurve(p[0], p[1], p[2], p[3], p[4], p[5]);
}

void RcurvetoOperator::execute(Interpreter& interpreter) {
    flushPendingMoveto(*pdf);
    double d[6];
    popCurve(interpreter, d);
    GraphicsState& state = pdf->currentState();
    const double x = state.currentX;
    const double y = state.currentY;
    state.currentX = x + d[4];
    state.currentY = y + d[5];
    pdf->writeCurve(x + d[0], y + d[1], x + d[2], y + d[3], state.currentX, state.currentY);
}

// No current point is no error: the stored numbers answer.
void CurrentpointOperator::execute(Interpreter& interpreter) {
    const GraphicsState& state = pdf->currentState();
    interpreter.operandStack->push(new RealObject(state.currentX));
    interpreter.operandStack->push(new RealObject(state.currentY));
}

// The current point stays where the last segment ended.
void ClosepathOperator::execute(Interpreter&) {
    endPath(*pdf, "h ");
}
