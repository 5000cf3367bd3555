#include "pdf/GraphicsOperators.h"

#include "core/PostscriptException.h"

// Not built yet.
void TranslateOperator::execute(Interpreter&) {
    PS_THROW("translate is not built yet");
}
void TransformOperator::execute(Interpreter&) {
    PS_THROW("transform is not built yet");
}
void ItransformOperator::execute(Interpreter&) {
    PS_THROW("itransform is not built yet");
}
void IdtransformOperator::execute(Interpreter&) {
    PS_THROW("idtransform is not built yet");
}
void DtransformOperator::execute(Interpreter&) {
    PS_THROW("dtransform is not built yet");
}
void RotateOperator::execute(Interpreter&) {
    PS_THROW("rotate is not built yet");
}
void ConcatOperator::execute(Interpreter&) {
    PS_THROW("concat is not built yet");
}
void CurrentmatrixOperator::execute(Interpreter&) {
    PS_THROW("currentmatrix is not built yet");
}
void ScaleOperator::execute(Interpreter&) {
    PS_THROW("scale is not built yet");
}
void SetmatrixOperator::execute(Interpreter&) {
    PS_THROW("setmatrix is not built yet");
}
void DefaultmatrixOperator::execute(Interpreter&) {
    PS_THROW("defaultmatrix is not built yet");
}
void Transformer::transformPoint(Interpreter&, bool, bool) {
    PS_THROW("not built yet");
}
