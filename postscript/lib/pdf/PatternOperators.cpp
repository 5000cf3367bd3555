#include "pdf/GraphicsOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"
#include "pdf/NumberFormat.h"
#include "pdf/Postscript2Pdf.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

namespace {

void appendNumber(std::string& text, double value) {
    char digits[numberTextSize];
    text.append(digits, formatNumber(value, digits));
}

char* heapText(const std::string& text) {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) throw std::bad_alloc();
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

// The pattern's dictionary entries, from its PostScript dictionary and the
// operand matrix.
std::string patternDictionaryText(const DictionaryData& entries, const double m[6]) {
    auto vanishes = [](double value) { return value > -0.0001 && value < 0.0001; };
    std::string text = "/Type /Pattern\n/Matrix [";
    // A degenerate matrix leaves the entry open: the next key follows the "[".
    if (!(vanishes(m[0]) && vanishes(m[3]) && vanishes(m[1]) && vanishes(m[2]))) {
        for (int i = 0; i < 6; ++i) {
            appendNumber(text, m[i]);
            text += ' ';
        }
        text += "]\n";
    }
    for (const char* key : {"XStep", "YStep", "PaintType", "PatternType", "TilingType"}) {
        const PostscriptObject* value = entries.findText(key);
        if (!value) continue;
        text += '/';
        text += key;
        text += ' ';
        appendNumber(text, objectToNumber(value));
        text += '\n';
    }
    const ArrayObject* box = objectAs<ArrayObject>(entries.findText("BBox"));
    if (!box) PS_THROW("expected array to be here");
    text += "/BBox [";
    const auto& corners = box->items().items;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        appendNumber(text, objectToNumber(corners[i]));
        if (i < 5) text += ' ';
    }
    text += "]\n/Resources <<>> ";
    return text;
}

} // namespace

// dict matrix makepattern dict   the same dictionary, which stands for the
// pattern; its cell is drawn now and cut out of the content afterwards.
void MakepatternOperator::execute(Interpreter& interpreter) {
    // A list emptied by the print job face has taken the record along.
    if (patternObject && listGeneration != pdf->pdfObjects->generation()) {
        patternObject = nullptr;
        patternDictionary.reset();
        contentStart = 0;
    }
    if (patternObject)
        endPattern();
    else
        beginPattern(interpreter);
}

void MakepatternOperator::beginPattern(Interpreter& interpreter) {
    ObjectStack& operands = *interpreter.operandStack;
    Popped<ArrayObject> matrix = operands.pop<ArrayObject>("popArrayObject");
    Popped<DictionaryObject> dictionary = operands.pop<DictionaryObject>("popDictionaryObject");
    if (matrix->items().size() != 6) PS_THROW("expecting array of 6 doubles");
    contentStart = pdf->contentText.size();
    const DictionaryData& entries = *dictionary->dictionaryData();
    const double xStep = objectToNumber(entries.findText("XStep"));
    const double yStep = objectToNumber(entries.findText("YStep"));
    // The cell is scaled by the steps inside the pattern's own stream.
    pdf->appendContent("q ", 2);
    const double steps[6] = {xStep, 0, 0, yStep, 0, 0};
    pdf->writeMatrix(steps, "cm");
    double m[6];
    Postscript2Pdf::readMatrix(*matrix->arrayData(), m);

    PdfObjectList& objects = *pdf->pdfObjects;
    patternObject = objects.addObject(patternObjectKind, "/PA");
    listGeneration = objects.generation();
    patternDictionary.reset(dictionary.get());
    // Images in the cell stay inline: the pattern has no resources of its own.
    pdf->insidePattern = true;
    patternObject->dictionaryText = heapText(patternDictionaryText(entries, m));

    interpreter.executionStack->push(this);
    PostscriptObject* paintProc = entries.findText("PaintProc");
    if (!paintProc) PS_THROW("expecting paintProc");
    armProcedure(paintProc);
    objects.setProcedure(patternObject, dictionary.get());
    // The result, and the PaintProc's argument.
    operands.push(dictionary.get());
    operands.push(dictionary.get());
    interpreter.executionStack->push(paintProc);
}

void MakepatternOperator::endPattern() {
    if (patternObject->data) PS_THROW("dont supported nested patterns yet");
    pdf->appendContent("Q\n", 2);
    pdf->insidePattern = false;
    // A cell cut off by a failure ends in a later call, whose content began
    // afresh: the cell is what that call has written.
    const std::size_t start =
        static_cast<std::size_t>(std::min<uint64_t>(contentStart, pdf->contentText.size()));
    const std::size_t length = pdf->contentText.size() - start;
    auto* stream = static_cast<unsigned char*>(std::malloc(length + 1));
    if (!stream) throw std::bad_alloc();
    std::memcpy(stream, pdf->contentText.data() + start, length);
    stream[length] = '\0';
    pdf->pdfObjects->setData(patternObject, stream, length);
    pdf->contentText.truncate(start);
    contentStart = 0;
    patternDictionary.reset();
    patternObject = nullptr;
}

// dict setpattern -   the non-stroking colour becomes the pattern that
// makepattern made from this very dictionary; any other dictionary is ignored.
void SetpatternOperator::execute(Interpreter& interpreter) {
    Popped<DictionaryObject> dictionary =
        interpreter.operandStack->pop<DictionaryObject>("popDictionaryObject");
    const PdfObject* record = pdf->pdfObjects->findProcedure(dictionary.get());
    if (!record) return;
    pdf->appendContent("/Pattern cs\n", 12);
    pdf->appendContent(record->name, std::strlen(record->name));
    pdf->appendContent(" scn\n", 5);
}
