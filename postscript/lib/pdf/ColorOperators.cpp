#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void SetrgbcolorOperator::execute(Interpreter&) {
    PS_THROW("setrgbcolor is not built yet");
}
void SethsbcolorOperator::execute(Interpreter&) {
    PS_THROW("sethsbcolor is not built yet");
}
void SetcmykcolorOperator::execute(Interpreter&) {
    PS_THROW("setcmykcolor is not built yet");
}
void SetgrayOperator::execute(Interpreter&) {
    PS_THROW("setgray is not built yet");
}
void CurrentrgbcolorOperator::execute(Interpreter&) {
    PS_THROW("currentrgbcolor is not built yet");
}
void CurrenthsbcolorOperator::execute(Interpreter&) {
    PS_THROW("currenthsbcolor is not built yet");
}
void CurrentcmykcolorOperator::execute(Interpreter&) {
    PS_THROW("currentcmykcolor is not built yet");
}
void CurrentgrayOperator::execute(Interpreter&) {
    PS_THROW("currentgray is not built yet");
}
void SetcolorspaceOperator::execute(Interpreter&) {
    PS_THROW("setcolorspace is not built yet");
}
