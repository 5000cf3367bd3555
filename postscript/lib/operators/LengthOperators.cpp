#include "operators/LanguageOperators.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

void LengthOperator::execute(Interpreter& interpreter) {
    Popped<> object = interpreter.operandStack->popHeld();
    std::size_t length = 0;
    switch (object->type) {
    case ps_string:
        length = static_cast<StringObject*>(object.get())->text().size();
        break;
    case ps_name:
        length = static_cast<NameObject*>(object.get())->text().size();
        break;
    case ps_array:
        length = static_cast<ArrayObject*>(object.get())->items().size();
        break;
    case ps_dictionary:
        length = static_cast<DictionaryObject*>(object.get())->dictionaryData()->size();
        break;
    default:
        PS_THROW("Unsupported param to length");
    }
    interpreter.operandStack->push(new IntegerObject(static_cast<int32_t>(length)));
}
