#pragma once

#include "core/NameObject.h"

class Postscript2Pdf;

// The mix-in of every graphics operator: the translator that made it, whose
// graphics states, content and flags the operator works on.
class Postscript2PdfObject {
public:
    explicit Postscript2PdfObject(Postscript2Pdf& pdf) : pdf(&pdf) {}

    Postscript2Pdf* pdf;
};

// The declaration of a graphics operator whose whole behaviour is its execute.
#define KEL_GRAPHICS_OPERATOR(Class)                                                               \
    class Class : public NameObject, public Postscript2PdfObject {                                 \
    public:                                                                                        \
        Class(const NameAtom* atom, Postscript2Pdf& pdf)                                           \
            : NameObject(atom), Postscript2PdfObject(pdf) {}                                       \
        void execute(Interpreter& interpreter) override;                                           \
    }
