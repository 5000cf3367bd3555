#pragma once

#include "pdf/Postscript2PdfObject.h"

class Interpreter;

// Matrices are six doubles a b c d e f; a point is a row vector, so "m then
// n" is m x n.
void multiplyMatrices(const double m[6], const double n[6], double product[6]);
// A singular matrix is not refused: its inverse is infinities or NaN.
void invertMatrix(const double m[6], double inverse[6]);

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
