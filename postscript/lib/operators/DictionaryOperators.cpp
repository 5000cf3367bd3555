#include "operators/LanguageOperators.h"

#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/ValueObjects.h"

namespace {
// Nothing but begin puts an object on the dictionary stack, so its top, when
// there is one, is a dictionary.
DictionaryData* topDictionary(Interpreter& interpreter, const char* message) {
    PostscriptObject* top = interpreter.dictionaries->dictionaryStack->top();
    if (!top || top->type != ps_dictionary) PS_THROW(message);
    return static_cast<DictionaryObject*>(top)->dictionaryData();
}
} // namespace

void DictOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->popHeld();
    interpreter.operandStack->push(interpreter.makeDictionary());
}

void MaxlengthOperator::execute(Interpreter& interpreter) {
    Popped<DictionaryObject> dictionary =
        interpreter.operandStack->pop<DictionaryObject>("maxlength");
    auto entries = static_cast<int32_t>(dictionary->dictionaryData()->size());
    interpreter.operandStack->push(new IntegerObject(entries + 10));
}

void BeginOperator::execute(Interpreter& interpreter) {
    Popped<> dictionary = interpreter.operandStack->popHeld();
    if (dictionary->type != ps_dictionary) PS_THROW("expecting dictionary on op stack");
    interpreter.dictionaries->push(dictionary.get());
}

void EndOperator::execute(Interpreter& interpreter) {
    releaseIfUnreferenced(interpreter.dictionaries->pop());
}

void DefOperator::execute(Interpreter& interpreter) {
    Popped<> value = interpreter.operandStack->popHeld();
    Popped<> key = interpreter.operandStack->popHeld();
    topDictionary(interpreter, "def - expected dictionary on dictionary stack")
        ->putObject(key.get(), value.get());
}

void LoadOperator::execute(Interpreter& interpreter) {
    Popped<> key = interpreter.operandStack->popHeld();
    PostscriptObject* value = interpreter.dictionaries->lookup(key.get());
    if (!value) PS_THROW("Undefined name passed to load operator");
    interpreter.operandStack->push(value);
}

void StoreOperator::execute(Interpreter& interpreter) {
    Popped<> value = interpreter.operandStack->popHeld();
    Popped<> key = interpreter.operandStack->popHeld();
    DictionaryObject* holder = interpreter.dictionaries->findDictionaryWith(key.get());
    DictionaryData* target =
        holder ? holder->dictionaryData()
               : topDictionary(interpreter, "store - expected dictionary on dictionary stack");
    target->putObject(key.get(), value.get());
}

void UndefOperator::execute(Interpreter& interpreter) {
    Popped<> key = interpreter.operandStack->popHeld();
    Popped<> dictionary = interpreter.operandStack->popHeld();
    if (dictionary->type != ps_dictionary) return;
    static_cast<DictionaryObject*>(dictionary.get())->dictionaryData()->remove(keyText(key.get()));
}

void WhereOperator::execute(Interpreter& interpreter) {
    Popped<> key = interpreter.operandStack->popHeld();
    DictionaryObject* holder = interpreter.dictionaries->findDictionaryWith(key.get());
    if (holder) interpreter.operandStack->push(holder);
    interpreter.operandStack->push(new BooleanObject(holder != nullptr));
}

void KnownOperator::execute(Interpreter& interpreter) {
    Popped<> key = interpreter.operandStack->popHeld();
    Popped<DictionaryObject> dictionary = interpreter.operandStack->pop<DictionaryObject>("known");
    bool found = dictionary->dictionaryData()->findKey(key.get()) != nullptr;
    interpreter.operandStack->push(new BooleanObject(found));
}

void CurrentdictOperator::execute(Interpreter& interpreter) {
    interpreter.operandStack->push(interpreter.dictionaries->dictionaryStack->top());
}

void CleardictstackOperator::execute(Interpreter& interpreter) {
    DictionarySet& dictionaries = *interpreter.dictionaries;
    const ObjectStack& stack = *dictionaries.dictionaryStack;
    std::size_t depth = stack.size();
    auto permanent = [&](const PostscriptObject* entry) {
        return entry == dictionaries.systemDict.get() || entry == dictionaries.globalDict.get() ||
               entry == dictionaries.userDict.get();
    };
    while (depth > 0 && !permanent(stack.at(depth - 1)))
        --depth;
    dictionaries.popTo(depth);
    // With none of the three left, the pops run off the bottom.
    if (depth == 0) PS_THROW("pop - expected item on stack");
}
