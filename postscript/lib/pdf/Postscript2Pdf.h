#pragma once

#include "core/Interpreter.h"
#include "operators/GeneratedOps.h"
#include "pdf/ContentWriter.h"
#include "pdf/GraphicsState.h"
#include "pdf/PdfObjectList.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class ArrayData;
class PostscriptException;

// The handle of the conversion face: the translator. It owns the interpreter,
// lays the graphics operators over its language, and keeps what PDF needs and
// the language does not: the default matrix, a stack of graphics states, the
// page content of the current call and the deferred moveto.
class Postscript2Pdf {
public:
    explicit Postscript2Pdf(const double matrix[6],
                            PdfObjectList& objects = PdfObjectList::process());
    ~Postscript2Pdf();
    Postscript2Pdf(const Postscript2Pdf&) = delete;
    Postscript2Pdf& operator=(const Postscript2Pdf&) = delete;

    // Runs one buffer. False after a PostscriptException, whose text is then
    // in errorText; other exceptions pass to the caller. A negative length
    // (as a signed 32-bit value) means NUL-terminated.
    bool executeBuffer(const unsigned char* data, uint32_t length);

    // A new page under its default matrix: one default state, no pending
    // moveto or pattern. Content, interpreter and objects stay; the states of
    // an unbalanced gsave go without a "Q".
    void startPage(const double matrix[6]);

    GraphicsState& currentState() { return *graphicsStates.back(); }
    void pushDefaultState();
    // Drops the current state; the last one is replaced by a default state,
    // so the stack is never empty between operators.
    void popState();

    void appendContent(const char* bytes, std::size_t length) { contentText.append(bytes, length); }
    // A number and one blank: every number of every content template has a
    // blank behind it.
    void writeNumber(double value);
    // The current point and the operator: "x y op\n". An "m" marks the
    // subpath as started; nothing else does.
    void writePoint(const char* op);
    void writeCurve(double x1, double y1, double x2, double y2, double x3, double y3);
    // "a b c d e f op\n", or nothing when the linear part vanishes (each of a
    // b c d within 0.0001 of zero): such a matrix never reaches the content.
    void writeMatrix(const double m[6], const char* op);

    // Records a failure's text for the host and the debug output.
    bool failed(PostscriptException& failure);

    // Six numbers of an array, read from the last to the first; elements
    // beyond the sixth are ignored.
    static void readMatrix(const ArrayData& array, double m[6]);
    // The array becomes six reals, whatever its length was.
    static void storeMatrix(ArrayData& array, const double m[6]);

    double defaultMatrix[6] = {1, 0, 0, 1, 0, 0};
    std::vector<std::unique_ptr<GraphicsState>> graphicsStates;
    // The generated layer's actions outlive the interpreter whose operators call them.
    std::unique_ptr<ImplementedGenOps> generatedOps;
    std::unique_ptr<Interpreter> interpreter;
    std::string errorText;
    ContentWriter contentText;
    PdfObjectList* pdfObjects;
    // Image data of more bytes becomes an XObject.
    uint64_t inlineImageLimit = 4000;
    // A moveto whose "m" is not written yet.
    bool pendingMoveto = false;
    // Between the two phases of makepattern: images stay inline.
    bool insidePattern = false;
};
