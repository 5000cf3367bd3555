#pragma once

#include "operators/LanguageOperators.h"
#include "pdf/FontOperators.h"
#include "pdf/GraphicsOperatorTable.h"
#include "pdf/ImageOperators.h"
#include "pdf/MatrixOperators.h"
#include "pdf/PathOperators.h"
#include "pdf/Postscript2PdfObject.h"
#include "pdf/StateOperators.h"

#define KEL_GRAPHICS_DECLARE(name, Class, Declare) Declare(Class);
KEL_GRAPHICS_OPERATORS(KEL_GRAPHICS_DECLARE)
#undef KEL_GRAPHICS_DECLARE

// Installs the graphics operators over the language, in table order, each
// holding the translator.
void registerGraphicsOperators(Postscript2Pdf& pdf);
