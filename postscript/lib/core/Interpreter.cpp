#include "core/Interpreter.h"

#include "core/ArrayObject.h"
#include "core/DictionarySet.h"
#include "core/FileObject.h"
#include "core/Parser.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <cstring>

Interpreter::Interpreter()
    : operandStack(std::make_unique<ObjectStack>("Operand Stack")),
      executionStack(std::make_unique<ObjectStack>("Execution Stack")),
      deferredExecutionStack(std::make_unique<ObjectStack>("Deferred execution stack")),
      memory(std::make_unique<MemoryRecord>()) {
    memory->localMemory.reset(new VirtualMemoryObject("Local Memory"));
    memory->globalMemory.reset(new VirtualMemoryObject("Global Memory"));
    memory->currentMemory = memory->localMemory.get();
    dictionaries = std::make_unique<DictionarySet>(memory.get(), &names);
    parser = std::make_unique<Parser>(memory.get(), dictionaries.get(), &names);
}

void Interpreter::defineSystemValues() {
    DictionaryData* system = dictionaries->systemData;
    system->putText("systemdict", dictionaries->systemDict.get());
    system->putText("globaldict", dictionaries->globalDict.get());
    system->putText("userdict", dictionaries->userDict.get());
    system->putText("errordict", dictionaries->errorDict.get());
    system->putText("languagelevel", new IntegerObject(2));
    system->putText("version", makeString("49"));
}

Interpreter::~Interpreter() {
    operandStack.reset();
    executionStack.reset();
    deferredExecutionStack.reset();
    parser.reset();
    dictionaries.reset();
    // Whatever is left in the memories is held by cycles only: they break them.
    memory->localMemory.reset();
    memory->globalMemory.reset();
}

void Interpreter::run(const unsigned char* buffer, std::size_t length) {
    stdoutText.clear();
    parser->setBuffer(buffer, buffer + length);
    suspended = false;
    uint64_t steps = 0;
    for (;;) {
        if (stepLimit && ++steps > stepLimit)
            PS_THROWF("Step limit of %llu reached", static_cast<unsigned long long>(stepLimit));
        PostscriptObject* object;
        if (!executionStack->empty()) {
            object = executionStack->pop();
        } else {
            object = parser->nextObject();
            if (!object) return;
            if (!deferredExecutionStack->empty()) {
                // A procedure is being built: only its brackets run.
                if (object->type == ps_name) {
                    const std::string& text = static_cast<NameObject*>(object)->text();
                    if (text.size() == 1 && (text[0] == '{' || text[0] == '}')) {
                        Popped<> guard(object);
                        object->execute(*this);
                        continue;
                    }
                }
                Popped<> guard(object);
                static_cast<ArrayObject*>(deferredExecutionStack->top())->items().push(object);
                continue;
            }
        }
        if (object->executable) {
            // A failing object is freed on the way out; no one can see it again.
            Popped<> guard(object);
            object->execute(*this);
            if (suspended) return;
        } else {
            Popped<> guard(object);
            operandStack->push(object);
        }
    }
}

void Interpreter::registerOperator(NameObject* op) {
    DictionaryData* system = dictionaries->systemData;
    if (system->find(op->text())) dictionaries->replacedNames.push_back(op->text());
    system->put(op->text(), op);
}

ArrayObject* Interpreter::makeArray() {
    return new ArrayObject(memory->currentMemory, '[');
}

DictionaryObject* Interpreter::makeDictionary() {
    return new DictionaryObject(memory->currentMemory, new DictionaryData);
}

StringObject* Interpreter::makeString(const char* text) {
    return makeString(text ? std::string_view(text, std::strlen(text)) : std::string_view());
}

StringObject* Interpreter::makeString(std::string_view text) {
    return new StringObject(memory->currentMemory, text);
}

NameObject* Interpreter::makeName(std::string_view text, bool executable) {
    return new NameObject(names.intern(text), executable);
}
