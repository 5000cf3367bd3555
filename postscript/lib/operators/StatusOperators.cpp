// Matrices without a graphics state, the fixed status answers, the resource
// operators and getdoubles, which carries numbers out to the host.
#include "operators/LanguageOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

namespace {

const double identity[6] = {1, 0, 0, 1, 0, 0};

Popped<ArrayObject> popArray(Interpreter& interpreter, const char* failure) {
    Popped<> operand(interpreter.operandStack->pop());
    if (operand->type != ps_array) PS_THROW(failure);
    return Popped<ArrayObject>(static_cast<ArrayObject*>(operand.get()));
}

void readFloatMatrix(const ArrayObject& array, float m[6]) {
    double read[6];
    readMatrix(*array.arrayData(), read);
    for (int i = 0; i < 6; ++i)
        m[i] = static_cast<float>(read[i]);
}

} // namespace

void MatrixOperator::execute(Interpreter& interpreter) {
    ArrayObject* array = interpreter.makeArray();
    interpreter.operandStack->push(array);
    storeMatrix(*array->arrayData(), identity);
}

// Replaces or appends positions 0 to 5; elements beyond them stay.
void IdentmatrixOperator::execute(Interpreter& interpreter) {
    Popped<ArrayObject> array = popArray(interpreter, "Illegal param type to identmatrix");
    for (int i = 0; i < 6; ++i)
        array->items().setAt(static_cast<std::size_t>(i), new RealObject(identity[i]));
    interpreter.operandStack->push(array.get());
}

// matrix1 matrix2 matrix3: matrix1 followed by matrix2, into matrix3. The
// matrices are read as 32-bit floats, and multiplied as such.
void ConcatmatrixOperator::execute(Interpreter& interpreter) {
    const char* failure = "Illegal param type to concatmatrix";
    Popped<ArrayObject> target = popArray(interpreter, failure);
    Popped<ArrayObject> second = popArray(interpreter, failure);
    Popped<ArrayObject> first = popArray(interpreter, failure);
    float m[6];
    readFloatMatrix(*first, m);
    float n[6];
    readFloatMatrix(*second, n);
    const double product[6] = {
        n[0] * m[0] + n[2] * m[1],        n[1] * m[0] + n[3] * m[1],
        n[0] * m[2] + n[2] * m[3],        n[1] * m[2] + n[3] * m[3],
        n[0] * m[4] + n[2] * m[5] + n[4], n[1] * m[4] + n[3] * m[5] + n[5],
    };
    storeMatrix(*target->arrayData(), product);
    interpreter.operandStack->push(target.get());
}

// Constants that bear no relation to real use, but the save level.
void VmstatusOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(new IntegerObject(interpreter.saveLevel));
    interpreter.operandStack->push(new IntegerObject(100000));
    interpreter.operandStack->push(new IntegerObject(100000000));
}

// A new dictionary at every call: what a program defines in it is lost.
void StatusdictOperator::execute(Interpreter& interpreter) {
    DictionaryObject* status = interpreter.makeDictionary();
    interpreter.operandStack->push(status);
    status->dictionaryData()->put(
        "product",
        interpreter.makeString("marlowfen postscript interpreter - all rights reservered"));
    status->dictionaryData()->put("processcolors", new IntegerObject(3));
}

// Every resource of every category exists.
void ResourcestatusOperator::execute(Interpreter& interpreter) {
    if (interpreter.operandStack->size() < 2) PS_THROW("resourcestatus invalid args");
    interpreter.operandStack->popHeld();
    interpreter.operandStack->popHeld();
    interpreter.operandStack->push(new IntegerObject(0));
    interpreter.operandStack->push(new IntegerObject(0));
    interpreter.operandStack->push(new BooleanObject(true));
}

// key font definefont font: the font goes into FontDirectory as it is, with
// no FID.
void DefinefontOperator::execute(Interpreter& interpreter) {
    if (interpreter.operandStack->size() < 2) PS_THROW("definefont invalid args");
    Popped<DictionaryObject> font =
        interpreter.operandStack->pop<DictionaryObject>("popDictionaryObject");
    Popped<> key(interpreter.operandStack->pop());
    interpreter.dictionaries->fontDirectory->dictionaryData()->put(keyText(key.get()), font.get());
    interpreter.operandStack->push(font.get());
}

// The operand stack's numbers, top first, for PSExecuteReturnDoubles; the
// stack stays as it is.
void GetDoublesOperator::execute(Interpreter& interpreter) {
    const auto& items = interpreter.operandStack->items;
    interpreter.doubles.reset();
    interpreter.doubles = std::make_unique<double[]>(items.size());
    std::size_t at = 0;
    for (auto it = items.rbegin(); it != items.rend(); ++it)
        interpreter.doubles[at++] = isNumber(*it) ? objectToNumber(*it) : 0.0;
    interpreter.doubleCount = static_cast<uint32_t>(items.size());
}
