#pragma once

#include "core/NameObject.h"

// The declaration of an operator whose whole behaviour is its execute: most
// operators of the language are one such class, written on one line under the
// comment with their stack effect.
#define KEL_OPERATOR(Class)                                                                        \
    class Class : public NameObject {                                                              \
    public:                                                                                        \
        using NameObject::NameObject;                                                              \
        void execute(Interpreter& interpreter) override;                                           \
    }
