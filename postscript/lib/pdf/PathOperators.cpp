#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void InitclipOperator::execute(Interpreter&) {
    PS_THROW("initclip is not built yet");
}
void EoclipOperator::execute(Interpreter&) {
    PS_THROW("eoclip is not built yet");
}
void ClipOperator::execute(Interpreter&) {
    PS_THROW("clip is not built yet");
}
void RectclipOperator::execute(Interpreter&) {
    PS_THROW("rectclip is not built yet");
}
void RectfillOperator::execute(Interpreter&) {
    PS_THROW("rectfill is not built yet");
}
void RectstrokeOperator::execute(Interpreter&) {
    PS_THROW("rectstroke is not built yet");
}
void StrokeOperator::execute(Interpreter&) {
    PS_THROW("stroke is not built yet");
}
void NewpathOperator::execute(Interpreter&) {
    PS_THROW("newpath is not built yet");
}
void FillOperator::execute(Interpreter&) {
    PS_THROW("fill is not built yet");
}
void EofillOperator::execute(Interpreter&) {
    PS_THROW("eofill is not built yet");
}
void MovetoOperator::execute(Interpreter&) {
    PS_THROW("moveto is not built yet");
}
void RmovetoOperator::execute(Interpreter&) {
    PS_THROW("rmoveto is not built yet");
}
void LinetoOperator::execute(Interpreter&) {
    PS_THROW("lineto is not built yet");
}
void RlinetoOperator::execute(Interpreter&) {
    PS_THROW("rlineto is not built yet");
}
void CurvetoOperator::execute(Interpreter&) {
    PS_THROW("curveto is not built yet");
}
void RcurvetoOperator::execute(Interpreter&) {
    PS_THROW("rcurveto is not built yet");
}
void CurrentpointOperator::execute(Interpreter&) {
    PS_THROW("currentpoint is not built yet");
}
void ClosepathOperator::execute(Interpreter&) {
    PS_THROW("closepath is not built yet");
}
