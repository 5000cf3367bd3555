#include "pdf/Postscript2Pdf.h"

#include "core/ArrayObject.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "operators/LanguageOperators.h"
#include "pdf/GraphicsOperators.h"
#include "pdf/NumberFormat.h"
#include "pdf/StartupTexts.h"
#include "platform/DebugOutput.h"

#include <cstring>
#include <initializer_list>

Postscript2Pdf::Postscript2Pdf(const double matrix[6], PdfObjectList& objects)
    : pdfObjects(&objects) {
    for (int i = 0; i < 6; ++i)
        defaultMatrix[i] = matrix[i];
    pushDefaultState();
    interpreter = std::make_unique<Interpreter>();
    // The operators are the interpreter's objects: from its pool.
    objectpool::Scope scope(interpreter->pool.get());
    generatedOps = std::make_unique<ImplementedGenOps>(interpreter.get());
    installLanguage(*interpreter, *generatedOps);
    registerGraphicsOperators(*this);
    runStartupTexts(*interpreter);
}

Postscript2Pdf::~Postscript2Pdf() = default;

bool Postscript2Pdf::executeBuffer(const unsigned char* data, uint32_t length) {
    std::size_t size = length;
    if (static_cast<int32_t>(length) < 0)
        size = data ? std::strlen(reinterpret_cast<const char*>(data)) : 0;
    try {
        if (!data && size != 0) PS_THROW("No data to run");
        static const unsigned char none = 0;
        interpreter->run(data ? data : &none, size);
        return true;
    } catch (RunawayStopped& failure) {
        interpreter->abandonRunaway();
        return failed(failure);
    } catch (PostscriptException& failure) {
        return failed(failure);
    }
}

bool Postscript2Pdf::failed(PostscriptException& failure) {
    errorText = "Exception:";
    errorText += failure.formattedText();
    platform::outputDebugString(errorText);
    return false;
}

void Postscript2Pdf::startPage(const double matrix[6]) {
    for (int i = 0; i < 6; ++i)
        defaultMatrix[i] = matrix[i];
    pendingMoveto = false;
    insidePattern = false;
    // Popping the last state leaves a default one under the new matrix.
    for (std::size_t n = graphicsStates.size(); n > 0; --n)
        popState();
    if (graphicsStates.empty()) pushDefaultState();
}

void Postscript2Pdf::pushDefaultState() {
    graphicsStates.push_back(std::make_unique<GraphicsState>(defaultMatrix));
}

void Postscript2Pdf::popState() {
    if (graphicsStates.empty()) PS_THROW("No graphics states to pop");
    graphicsStates.pop_back();
    if (graphicsStates.empty()) pushDefaultState();
}

void Postscript2Pdf::writeNumber(double value) {
    char text[numberTextSize];
    std::size_t length = formatNumber(value, text);
    text[length++] = ' ';
    contentText.append(text, length);
}

void Postscript2Pdf::writePoint(const char* op) {
    GraphicsState& state = currentState();
    writeNumber(state.currentX);
    writeNumber(state.currentY);
    contentText.append(op, std::strlen(op));
    contentText.append("\n", 1);
    if (op[0] == 'm') state.pathStarted = true;
}

void Postscript2Pdf::writeCurve(double x1, double y1, double x2, double y2, double x3, double y3) {
    for (double value : {x1, y1, x2, y2, x3, y3})
        writeNumber(value);
    contentText.append("c\n", 2);
}

void Postscript2Pdf::writeMatrix(const double m[6], const char* op) {
    auto vanishes = [](double value) { return value > -0.0001 && value < 0.0001; };
    if (vanishes(m[0]) && vanishes(m[3]) && vanishes(m[1]) && vanishes(m[2])) return;
    for (int i = 0; i < 6; ++i)
        writeNumber(m[i]);
    contentText.append(op, std::strlen(op));
    contentText.append("\n", 1);
}

void Postscript2Pdf::readMatrix(const ArrayData& array, double m[6]) {
    ::readMatrix(array, m);
}

void Postscript2Pdf::storeMatrix(ArrayData& array, const double m[6]) {
    ::storeMatrix(array, m);
}
