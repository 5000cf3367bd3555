#include "pdf/GraphicsOperators.h"

#include "core/Interpreter.h"
#include "pdf/Postscript2Pdf.h"

void registerGraphicsOperators([[maybe_unused]] Postscript2Pdf& pdf) {
#define KEL_GRAPHICS_REGISTER(name, Class, Declare)                                                \
    pdf.interpreter->registerOperator(new Class(pdf.interpreter->intern(name), pdf));
    KEL_GRAPHICS_OPERATORS(KEL_GRAPHICS_REGISTER)
#undef KEL_GRAPHICS_REGISTER
}
