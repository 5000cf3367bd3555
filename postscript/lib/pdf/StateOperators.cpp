#include "pdf/GraphicsOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"
#include "pdf/NumberFormat.h"
#include "pdf/Postscript2Pdf.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// Operands that PDF needs nothing for: popped, whatever they are.
void dropOperands(Interpreter& interpreter, int count) {
    for (int i = 0; i < count; ++i)
        Popped<> dropped(interpreter.operandStack->pop());
}

// A transfer function: an array, or the failure given.
void dropArray(Interpreter& interpreter, const char* failure) {
    Popped<> operand(interpreter.operandStack->pop());
    if (operand->type != ps_array) PS_THROW(failure);
}

// The fixed answer of the transfer queries: a procedure body, left literal.
void pushEmptyProcedure(Interpreter& interpreter) {
    interpreter.operandStack->push(new ArrayObject(interpreter.memory->currentMemory, '{'));
}

// "number op ", for the parameters written as they come.
void writeNumberOperator(Postscript2Pdf& pdf, Interpreter& interpreter, const char* op) {
    pdf.writeNumber(interpreter.operandStack->popNumber());
    pdf.appendContent(op, std::strlen(op));
}

// "integer op ", for line cap and join, which take integers only.
void writeIntegerOperator(Postscript2Pdf& pdf, Interpreter& interpreter, char op,
                          const char* failure) {
    Popped<> operand(interpreter.operandStack->pop());
    if (operand->type != ps_integer) PS_THROW(failure);
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%d %c ", integerValue(operand.get()), op);
    pdf.appendContent(text, static_cast<std::size_t>(length));
}

// The longest the dash array's text may grow to, "[" and the elements with
// their blanks.
constexpr std::size_t dashLimit = 370;

// Names the save objects of the whole process, from 0.
uint32_t saveCounter = 0;

} // namespace

uint32_t savesMade() {
    return saveCounter;
}

void SetscreenOperator::execute(Interpreter& interpreter) {
    dropOperands(interpreter, 3);
}

void SetcolorscreenOperator::execute(Interpreter& interpreter) {
    dropOperands(interpreter, 12);
}

// Also setflat and setoverprint.
void SethalftoneOperator::execute(Interpreter& interpreter) {
    dropOperands(interpreter, 1);
}

void CurrenthalftoneOperator::execute(Interpreter& interpreter) {
    DictionaryObject* halftone = interpreter.makeDictionary();
    interpreter.operandStack->push(halftone);
    DictionaryData& entries = *halftone->dictionaryData();
    entries.put("HalftoneType", new IntegerObject(1));
    entries.put("Frequency", new IntegerObject(150));
    entries.put("Angle", new IntegerObject(45));
}

void GsaveOperator::execute(Interpreter&) {
    pdf->graphicsStates.push_back(std::make_unique<GraphicsState>(pdf->currentState()));
    pdf->appendContent("q ", 2);
}

// The last state is replaced by a default one: there is no underflow.
void GrestoreOperator::execute(Interpreter&) {
    pdf->popState();
    pdf->appendContent("Q ", 2);
}

void SetlinewidthOperator::execute(Interpreter& interpreter) {
    const double width = interpreter.operandStack->popNumber();
    pdf->currentState().lineWidth = width;
    pdf->writeNumber(width);
    pdf->appendContent("w ", 2);
}

void SetlinecapOperator::execute(Interpreter& interpreter) {
    writeIntegerOperator(*pdf, interpreter, 'J', "Illegal param type for setlinecap");
}

void SetlinejoinOperator::execute(Interpreter& interpreter) {
    writeIntegerOperator(*pdf, interpreter, 'j', "Illegal param type for setlinejoin");
}

void SetmiterlimitOperator::execute(Interpreter& interpreter) {
    writeNumberOperator(*pdf, interpreter, "M ");
}

// "[a b ] offset d\n", built whole before any of it is written, so that a
// pattern too long writes nothing.
void SetdashOperator::execute(Interpreter& interpreter) {
    Popped<> offset(interpreter.operandStack->pop());
    Popped<ArrayObject> array = interpreter.operandStack->pop<ArrayObject>("setdash");
    const double offsetValue = objectToNumber(offset.get());
    // Room for one element beyond the limit, and for "] ", the offset and " d\n"
    // after at most the limit.
    char text[dashLimit + numberTextSize + 8];
    std::size_t length = 0;
    text[length++] = '[';
    for (PostscriptObject* element : array->items().items) {
        length += formatNumber(objectToNumber(element), text + length);
        text[length++] = ' ';
        if (length > dashLimit) PS_THROW("Out of buffer space in setdashlimit");
    }
    text[length++] = ']';
    text[length++] = ' ';
    length += formatNumber(offsetValue, text + length);
    std::memcpy(text + length, " d\n", 3);
    pdf->appendContent(text, length + 3);
}

void CurrentlinewidthOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new RealObject(pdf->currentState().lineWidth));
}

void SetstrokeadjustOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->pop<BooleanObject>("setstrokeadjust");
}

void CurrentstrokeadjustOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new BooleanObject(true));
}

// The host ends pages by its own calls.
void ShowpageOperator::execute(Interpreter&) {}

void SettransferOperator::execute(Interpreter& interpreter) {
    dropArray(interpreter, "Illegal param type to settransfer");
}

void CurrenttransferOperator::execute(Interpreter& interpreter) {
    pushEmptyProcedure(interpreter);
}

// Stops at the first operand that is not an array; those above it are gone.
void SetcolortransferOperator::execute(Interpreter& interpreter) {
    for (int i = 0; i < 4; ++i)
        dropArray(interpreter, "Illegal param type to setcolortransfer");
}

void CurrentcolortransferOperator::execute(Interpreter& interpreter) {
    for (int i = 0; i < 4; ++i)
        pushEmptyProcedure(interpreter);
}

void CurrentflatOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new RealObject(0.2));
}

void CurrentoverprintOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new BooleanObject(false));
}

// Nothing is saved: the "q" brings the PDF state back at restore, and the
// object only names the pair.
void SaveOperator::execute(Interpreter& interpreter) {
    ++interpreter.saveLevel;
    const uint32_t number = saveCounter++;
    interpreter.operandStack->push(
        new VirtualMemoryObject(formatString("Save %d", static_cast<int>(number))));
    pdf->appendContent("q\n", 2);
}

// The operand is not looked at, and the level changes even when there is none.
void RestoreOperator::execute(Interpreter& interpreter) {
    --interpreter.saveLevel;
    Popped<> save(interpreter.operandStack->pop());
    pdf->appendContent("Q\n", 2);
}

void PrintOperator::execute(Interpreter& interpreter) {
    Popped<StringObject> text = interpreter.operandStack->pop<StringObject>("popStringObject");
    interpreter.appendStdout(text->cText());
}
