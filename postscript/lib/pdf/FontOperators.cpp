#include "pdf/GraphicsOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/DictionarySet.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"
#include "pdf/Postscript2Pdf.h"

namespace {

DictionaryData& fontDirectory(Interpreter& interpreter) {
    return *interpreter.dictionaries->fontDirectory->dictionaryData();
}

// A font's matrix, read as six numbers; its array for the caller to change.
ArrayData& fontMatrix(const DictionaryObject& font, double m[6]) {
    ArrayObject* array = objectAs<ArrayObject>(font.dictionaryData()->findText("FontMatrix"));
    if (!array) PS_THROW("expected fontmatrix array");
    Postscript2Pdf::readMatrix(*array->arrayData(), m);
    return *array->arrayData();
}

} // namespace

// key findfont font   the stored font itself; any unknown key gives Helvetica
void FindfontOperator::execute(Interpreter& interpreter) {
    Popped<> key = interpreter.operandStack->popHeld();
    DictionaryData& directory = fontDirectory(interpreter);
    PostscriptObject* font = directory.findKey(key.get());
    if (!font) font = directory.findText("Helvetica");
    if (!font) PS_THROW("could not find helvetica");
    interpreter.operandStack->push(font);
}

// font scale scalefont font   the font stays on the stack, its FontMatrix
// scaled in place: every later user of the font sees both factors of two
// scalings.
void ScalefontOperator::execute(Interpreter& interpreter) {
    const double scale = interpreter.operandStack->popNumber();
    const DictionaryObject* font = objectAs<DictionaryObject>(interpreter.operandStack->top());
    if (!font) PS_THROW("expected font dictionary");
    double m[6];
    ArrayData& array = fontMatrix(*font, m);
    // The product with [scale 0 0 scale 0 0]: the translation scales too.
    for (double& value : m)
        value *= scale;
    Postscript2Pdf::storeMatrix(array, m);
}

// font setfont -   the size is d + b of the matrix, in thousandths
void SetfontOperator::execute(Interpreter& interpreter) {
    Popped<DictionaryObject> font =
        interpreter.operandStack->pop<DictionaryObject>("popDictionaryObject");
    double m[6];
    fontMatrix(*font, m);
    const NameObject* name = objectAs<NameObject>(font->dictionaryData()->findText("FontName"));
    GraphicsState& state = pdf->currentState();
    state.fontSize = m[3] * 1000 + m[1] * 1000;
    if (name)
        state.fontName = name->text();
    else
        state.fontName.clear();
}

// - FontDirectory dict   also GlobalFontDirectory: there is one directory
void FontDirectoryOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(interpreter.dictionaries->fontDirectory.get());
}

// string show -   text is not translated: nothing is painted, the point stays
void ShowOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->pop<StringObject>("popStringObject");
}

// any stringwidth 10 100   every string alike
void StringwidthOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->popHeld();
    interpreter.operandStack->push(new RealObject(10));
    interpreter.operandStack->push(new RealObject(100));
}

// - currentfont font   a font of the current name, made empty and stored
// when the directory lacks it
void CurrentfontOperator::execute(Interpreter& interpreter) {
    DictionaryData& directory = fontDirectory(interpreter);
    const std::string& name = pdf->currentState().fontName;
    PostscriptObject* font = directory.find(name);
    if (!font) {
        font = interpreter.makeDictionary();
        directory.put(name, font);
    }
    interpreter.operandStack->push(font);
}
