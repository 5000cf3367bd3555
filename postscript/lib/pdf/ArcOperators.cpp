#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void ArcOperator::execute(Interpreter&) {
    PS_THROW("arc is not built yet");
}
void ArcnOperator::execute(Interpreter&) {
    PS_THROW("arcn is not built yet");
}
void ArctOperator::execute(Interpreter&) {
    PS_THROW("arct is not built yet");
}
void ArctoOperator::execute(Interpreter&) {
    PS_THROW("arcto is not built yet");
}
void Arcer::counterclockwise(Postscript2Pdf&) {}
void Arcer::clockwise(Postscript2Pdf&) {}
void Arcter::tangentArc(Interpreter&, Postscript2Pdf&) {}
