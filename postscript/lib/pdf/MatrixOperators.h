#pragma once

#include "pdf/Postscript2PdfObject.h"

class Interpreter;

// transform, itransform and idtransform: pop an optional matrix, then y and
// x, and push the transformed x and y. Without a matrix the current state's
// tracked matrix is used.
class Transformer : public Postscript2PdfObject {
public:
    using Postscript2PdfObject::Postscript2PdfObject;

    void transformPoint(Interpreter& interpreter, bool invert, bool deltaOnly);
};

#define KEL_TRANSFORMER_OPERATOR(Class)                                                            \
    class Class : public NameObject, public Transformer {                                          \
    public:                                                                                        \
        Class(const NameAtom* atom, Postscript2Pdf& pdf) : NameObject(atom), Transformer(pdf) {}   \
        void execute(Interpreter& interpreter) override;                                           \
    }
