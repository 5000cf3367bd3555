#pragma once

#include "pdf/Postscript2PdfObject.h"

#include <cstdint>

// How many save objects the process has made: the number the next one gets.
uint32_t savesMade();

// setflat and setoverprint drop their operand as sethalftone does: one plain pop.
#define KEL_LIKE_SETHALFTONE(Class)                                                                \
    class Class : public SethalftoneOperator {                                                     \
    public:                                                                                        \
        using SethalftoneOperator::SethalftoneOperator;                                            \
    }
