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
    : pool(objectpool::makePool()), operandStack(std::make_unique<ObjectStack>("Operand Stack")),
      executionStack(std::make_unique<ObjectStack>("Execution Stack")),
      deferredExecutionStack(std::make_unique<ObjectStack>("Deferred execution stack")),
      memory(std::make_unique<MemoryRecord>()) {
    objectpool::Scope scope(pool.get());
    operandStack->limit = executionStack->limit = deferredExecutionStack->limit = machineStackLimit;
    memory->localMemory.reset(new VirtualMemoryObject("Local Memory"));
    memory->globalMemory.reset(new VirtualMemoryObject("Global Memory"));
    memory->currentMemory = memory->localMemory.get();
    dictionaries = std::make_unique<DictionarySet>(memory.get(), &names);
    dictionaries->dictionaryStack->limit = dictionaryStackLimit;
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
    objectpool::Scope scope(pool.get());
    operandStack.reset();
    executionStack.reset();
    deferredExecutionStack.reset();
    parser.reset();
    dictionaries.reset();
    // Whatever is left in the memories is held by cycles only: they break them.
    memory->localMemory.reset();
    memory->globalMemory.reset();
}

inline PostscriptObject* Interpreter::nextFromExecutionStack() {
    PostscriptObject* top = executionStack->items.back();
    if (top->type != ps_array || !top->executable) return executionStack->pop();
    // A running procedure steps where it stands: the same as popping it, and
    // pushing it back under its next element, which is popped at once.
    auto* procedure = static_cast<ArrayObject*>(top);
    const ObjectStack& elements = procedure->items();
    if (procedure->execIndex < elements.size()) {
        PostscriptObject* element = elements.items[procedure->execIndex++];
        if (!element) ObjectStack::failNullPush();
        return element;
    }
    executionStack->pop();
    // An empty procedure just goes; a finished one is literal again.
    if (!elements.empty()) {
        procedure->executable = false;
        procedure->execIndex = 0;
    }
    releaseIfUnreferenced(procedure);
    return nullptr;
}

void Interpreter::run(const unsigned char* buffer, std::size_t length) {
    objectpool::Scope scope(pool.get());
    stdoutText.clear();
    parser->setBuffer(buffer, buffer + length);
    suspended = false;
    // No operator changes the limit during a run: keep it out of memory.
    const uint64_t limit = stepLimit;
    uint64_t steps = 0;
    for (;;) {
        if (limit && ++steps > limit)
            PS_THROW_RUNAWAY("Step limit of %llu reached", static_cast<unsigned long long>(limit));
        PostscriptObject* object;
        if (!executionStack->empty()) {
            object = nextFromExecutionStack();
            if (!object) continue;
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
        // A plain name hands on the operator it found, which runs here at
        // once rather than by a trip over the execution stack.
        while (object) {
            if (!object->executable) {
                Popped<> guard(object);
                operandStack->push(object);
                break;
            }
            PostscriptObject* found = nullptr;
            {
                // A failing object is freed on the way out; no one can see it again.
                Popped<> guard(object);
                if (object->type == ps_name && static_cast<NameObject*>(object)->plain)
                    found = executeName(static_cast<NameObject*>(object));
                else
                    object->execute(*this);
            }
            if (suspended) return;
            object = found;
        }
    }
}

PostscriptObject* Interpreter::executeName(NameObject* name) {
    PostscriptObject* value = dictionaries->lookupName(name->atom);
    if (!value) {
        // There is no "undefined": an unknown name becomes a string of its text.
        operandStack->push(makeString(name->text()));
        return nullptr;
    }
    if (value->type == ps_array) armProcedure(value);
    if (!value->executable) {
        operandStack->push(value);
        return nullptr;
    }
    // Procedures and names take the execution stack, which keeps the machine
    // stack flat however they nest.
    if (value->type == ps_array ||
        (value->type == ps_name && static_cast<NameObject*>(value)->plain)) {
        executionStack->push(value);
        return nullptr;
    }
    return value;
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
    return NameObject::makePlain(names.intern(text), executable);
}

void Interpreter::abandonRunaway() {
    executionStack->clear();
    deferredExecutionStack->clear();
    if (operandStack->size() >= operandStack->limit) operandStack->clear();
    if (dictionaries->dictionaryStack->size() >= dictionaries->dictionaryStack->limit)
        dictionaries->popTo(permanentDictionaries);
}
