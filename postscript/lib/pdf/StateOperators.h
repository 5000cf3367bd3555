#pragma once

#include "pdf/Postscript2PdfObject.h"

// setflat and setoverprint drop their operand as sethalftone does: one plain pop.
#define KEL_LIKE_SETHALFTONE(Class)                                                                \
    class Class : public SethalftoneOperator {                                                     \
    public:                                                                                        \
        using SethalftoneOperator::SethalftoneOperator;                                            \
    }
