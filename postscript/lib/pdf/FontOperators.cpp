#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void FindfontOperator::execute(Interpreter&) {
    PS_THROW("findfont is not built yet");
}
void ScalefontOperator::execute(Interpreter&) {
    PS_THROW("scalefont is not built yet");
}
void SetfontOperator::execute(Interpreter&) {
    PS_THROW("setfont is not built yet");
}
void FontDirectoryOperator::execute(Interpreter&) {
    PS_THROW("FontDirectory is not built yet");
}
void ShowOperator::execute(Interpreter&) {
    PS_THROW("show is not built yet");
}
void StringwidthOperator::execute(Interpreter&) {
    PS_THROW("stringwidth is not built yet");
}
void CurrentfontOperator::execute(Interpreter&) {
    PS_THROW("currentfont is not built yet");
}
