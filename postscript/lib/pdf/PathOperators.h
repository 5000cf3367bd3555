#pragma once

#include "pdf/Postscript2PdfObject.h"

class Interpreter;
class Postscript2Pdf;

// Writes the "m" of a deferred moveto, if one waits: the path operators that
// draw call it first.
void flushPendingMoveto(Postscript2Pdf& pdf);

// The five values of the last arc, overwritten at each call, and the two walks
// that cut an arc at the multiples of 90 degrees into one curve per piece.
class Arcer {
public:
    double centerX = 0;
    double centerY = 0;
    double radius = 0;
    double startAngle = 0;
    double endAngle = 0;

    void counterclockwise(Postscript2Pdf& pdf);
    void clockwise(Postscript2Pdf& pdf);
    // Pops the five operands of arc and arcn, top first.
    void popOperands(Interpreter& interpreter);

private:
    void segment(Postscript2Pdf& pdf, double from, double to, bool first) const;
};

// The values of the last tangent arc. The four tangent values survive between
// calls: a collinear arcto answers with the former ones.
class Arcter {
public:
    double radius = 0;
    double startX = 0;
    double startY = 0;
    double cornerX = 0;
    double cornerY = 0;
    double endX = 0;
    double endY = 0;
    double tangent1X = 0;
    double tangent1Y = 0;
    double tangent2X = 0;
    double tangent2Y = 0;

    // Flushes a deferred moveto, pops the five operands and writes the line to
    // the first tangent and the arc, walked by an Arcer.
    void tangentArc(Interpreter& interpreter, Postscript2Pdf& pdf);
};

#define KEL_ARC_FAMILY_OPERATOR(Class, Base)                                                       \
    class Class : public NameObject, public Postscript2PdfObject, public Base {                    \
    public:                                                                                        \
        Class(const NameAtom* atom, Postscript2Pdf& pdf)                                           \
            : NameObject(atom), Postscript2PdfObject(pdf) {}                                       \
        void execute(Interpreter& interpreter) override;                                           \
    }
#define KEL_ARCER_OPERATOR(Class) KEL_ARC_FAMILY_OPERATOR(Class, Arcer)
#define KEL_ARCTER_OPERATOR(Class) KEL_ARC_FAMILY_OPERATOR(Class, Arcter)

// clippath clips as clip does: the execute of ClipOperator.
#define KEL_LIKE_CLIP(Class)                                                                       \
    class Class : public ClipOperator {                                                            \
    public:                                                                                        \
        using ClipOperator::ClipOperator;                                                          \
    }
