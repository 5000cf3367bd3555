#pragma once

#include "pdf/Postscript2PdfObject.h"

// GlobalFontDirectory answers with the one font directory there is.
#define KEL_LIKE_FONT_DIRECTORY(Class)                                                             \
    class Class : public FontDirectoryOperator {                                                   \
    public:                                                                                        \
        using FontDirectoryOperator::FontDirectoryOperator;                                        \
    }
