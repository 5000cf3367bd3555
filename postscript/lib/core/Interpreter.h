#pragma once

#include "core/NameObject.h"
#include "core/ObjectStack.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class ArrayObject;
class BooleanObject;
class DictionaryObject;
class DictionarySet;
class FileObject;
class IntegerObject;
class MarkObject;
class NullObject;
class Parser;
class RealObject;
class StringObject;
class VirtualMemoryObject;

// The interpreter's memories. Both real memories are counted; current is one of them.
struct MemoryRecord {
    Counted<VirtualMemoryObject> localMemory;
    Counted<VirtualMemoryObject> globalMemory;
    VirtualMemoryObject* currentMemory = nullptr;
};

// The most objects each of the machine's stacks holds. No real program comes
// near; a runaway one (a loop that pushes and never pops, endless recursion)
// fails here instead of exhausting memory, and the handle goes on.
constexpr std::size_t machineStackLimit = 1000000;
// Every look-up walks the dictionary stack: its limit is kept far lower.
constexpr std::size_t dictionaryStackLimit = 10000;

// The machine: three object stacks, the dictionaries, two memories and the
// scanner, driven by one loop that takes the next object from the execution
// stack, or from the scanner when that stack is empty. It lives across
// buffers; only the buffer, stdoutText and suspended are reset by a run.
class Interpreter {
public:
    Interpreter();
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    void run(const unsigned char* buffer, std::size_t length);
    // A name's execution: looks it up and pushes what it found where it goes.
    // Returns an operator (or other executable value) for the caller to run
    // next instead of pushing it on the execution stack.
    PostscriptObject* executeName(NameObject* name);

    // Define an operator in systemdict under its name; a later layer replaces
    // an earlier one.
    void registerOperator(NameObject* op);
    // The values that stand over the operator layers in systemdict: the four
    // dictionaries, languagelevel and version.
    void defineSystemValues();
    // After a RunawayStopped: the work left on the execution stacks is
    // dropped, and a stack that the runaway filled is emptied (the dictionary
    // stack down to its three permanent dictionaries), so that the next
    // buffer starts afresh instead of running into the same wall.
    void abandonRunaway();

    void appendStdout(std::string_view text) { stdoutText += text; }

    ArrayObject* makeArray();
    DictionaryObject* makeDictionary();
    StringObject* makeString(const char* text);
    StringObject* makeString(std::string_view text);
    NameObject* makeName(std::string_view text, bool executable = true);
    const NameAtom* intern(std::string_view text) { return names.intern(text); }

    // Where this interpreter's objects live; declared first so that it
    // outlives every object. Current on the thread while the interpreter works.
    objectpool::OwnedPool pool;
    // Interned name texts; declared early so that it outlives every name.
    NameTable names;

    std::unique_ptr<Parser> parser;
    std::unique_ptr<ObjectStack> operandStack;
    std::unique_ptr<ObjectStack> executionStack;
    std::unique_ptr<ObjectStack> deferredExecutionStack;
    std::unique_ptr<MemoryRecord> memory;
    std::unique_ptr<DictionarySet> dictionaries;
    // Objects that one run may take before it fails with "Step limit of <n>
    // reached"; 0, the default, bounds nothing. Harnesses and hosts set it so
    // that an endless program ends.
    uint64_t stepLimit = 0;
    int32_t saveLevel = 1;
    bool suspended = false;
    std::string stdoutText;
    std::unique_ptr<double[]> doubles;
    uint32_t doubleCount = 0;

private:
    // The next object of the execution stack, stepping a running procedure in
    // place; null when the pass only finished a procedure.
    PostscriptObject* nextFromExecutionStack();
};
