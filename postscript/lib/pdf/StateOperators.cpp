#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void SetscreenOperator::execute(Interpreter&) {
    PS_THROW("setscreen is not built yet");
}
void SetcolorscreenOperator::execute(Interpreter&) {
    PS_THROW("setcolorscreen is not built yet");
}
void SethalftoneOperator::execute(Interpreter&) {
    PS_THROW("sethalftone is not built yet");
}
void CurrenthalftoneOperator::execute(Interpreter&) {
    PS_THROW("currenthalftone is not built yet");
}
void GsaveOperator::execute(Interpreter&) {
    PS_THROW("gsave is not built yet");
}
void GrestoreOperator::execute(Interpreter&) {
    PS_THROW("grestore is not built yet");
}
void SetlinewidthOperator::execute(Interpreter&) {
    PS_THROW("setlinewidth is not built yet");
}
void SetlinecapOperator::execute(Interpreter&) {
    PS_THROW("setlinecap is not built yet");
}
void SetlinejoinOperator::execute(Interpreter&) {
    PS_THROW("setlinejoin is not built yet");
}
void SetmiterlimitOperator::execute(Interpreter&) {
    PS_THROW("setmiterlimit is not built yet");
}
void SetdashOperator::execute(Interpreter&) {
    PS_THROW("setdash is not built yet");
}
void CurrentlinewidthOperator::execute(Interpreter&) {
    PS_THROW("currentlinewidth is not built yet");
}
void SetstrokeadjustOperator::execute(Interpreter&) {
    PS_THROW("setstrokeadjust is not built yet");
}
void CurrentstrokeadjustOperator::execute(Interpreter&) {
    PS_THROW("currentstrokeadjust is not built yet");
}
void ShowpageOperator::execute(Interpreter&) {
    PS_THROW("showpage is not built yet");
}
void SettransferOperator::execute(Interpreter&) {
    PS_THROW("settransfer is not built yet");
}
void CurrenttransferOperator::execute(Interpreter&) {
    PS_THROW("currenttransfer is not built yet");
}
void SetcolortransferOperator::execute(Interpreter&) {
    PS_THROW("setcolortransfer is not built yet");
}
void CurrentcolortransferOperator::execute(Interpreter&) {
    PS_THROW("currentcolortransfer is not built yet");
}
void CurrentflatOperator::execute(Interpreter&) {
    PS_THROW("currentflat is not built yet");
}
void CurrentoverprintOperator::execute(Interpreter&) {
    PS_THROW("currentoverprint is not built yet");
}
void SaveOperator::execute(Interpreter&) {
    PS_THROW("save is not built yet");
}
void RestoreOperator::execute(Interpreter&) {
    PS_THROW("restore is not built yet");
}
void PrintOperator::execute(Interpreter&) {
    PS_THROW("print is not built yet");
}
