#include "operators/GeneratedOps.h"

#include "core/ArrayObject.h"
#include "core/DictionaryObject.h"
#include "core/DictionarySet.h"
#include "core/Interpreter.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"
#include "core/ValueObjects.h"

#include <array>
#include <string_view>

void ImplementedGenOps::countdictstack(Objects, Objects results) {
    static_cast<IntegerObject*>(results[0])->value =
        static_cast<int32_t>(interpreter->dictionaries->dictionaryStack->size());
}

void ImplementedGenOps::cvs(Objects operands, Objects results) {
    static_cast<StringObject*>(results[0])->text() = operands[0]->equalsText();
}

void ImplementedGenOps::product(Objects, Objects results) {
    static_cast<StringObject*>(results[0])->text() += "foliograph ps interpreter";
}

namespace {

Popped<> popOperand(Interpreter& in, char code) {
    ObjectStack& stack = *in.operandStack;
    switch (code) {
    case 'i':
        return stack.pop<IntegerObject>("popIntegerObject");
    case 'b':
        return stack.pop<BooleanObject>("popBooleanObject");
    case 'a':
        return stack.pop<ArrayObject>("popArrayObject");
    case 'd':
        return stack.pop<DictionaryObject>("popDictionaryObject");
    case 's':
        return stack.pop<StringObject>("popStringObject");
    case 'm':
        return stack.pop<MarkObject>("popMarkObject");
    default: // 'x'
        return stack.popHeld();
    }
}

PostscriptObject* makeDefault(Interpreter& in, char code) {
    switch (code) {
    case 'i':
        return new IntegerObject(0);
    case 'b':
        return new BooleanObject(true);
    case 'A':
        return in.makeArray();
    case 'D':
        return in.makeDictionary();
    case 'S':
        return in.makeString("");
    case 'm':
        return new MarkObject;
    case 'n':
        return in.makeName("", true);
    default: // 'r'
        return new RealObject(0.0);
    }
}

// Every code of a row is one the table knows: a slip fails the build instead
// of becoming a plain pop or a real 0.0.
constexpr bool onlyCodes(std::string_view codes, std::string_view known) {
    for (char code : codes)
        if (known.find(code) == std::string_view::npos) return false;
    return true;
}
constexpr std::string_view popCodes = "ibadsmx";
constexpr std::string_view pushCodes = "irbADSmn";

} // namespace

void GeneratedOperator::execute(Interpreter& interpreter) {
    constexpr std::size_t most = GeneratedOperator::mostObjects;
    std::array<Popped<>, most> operands;
    std::array<PostscriptObject*, most> deepestFirst{};
    std::size_t popCount = 0;
    for (const char* code = pops_; *code; ++code, ++popCount)
        operands[popCount] = popOperand(interpreter, *code);
    for (std::size_t i = 0; i < popCount; ++i)
        deepestFirst[i] = operands[popCount - 1 - i].get();

    std::array<PostscriptObject*, most> results{};
    std::size_t pushCount = 0;
    for (const char* code = pushes_; *code; ++code) {
        PostscriptObject* result = makeDefault(interpreter, *code);
        interpreter.operandStack->push(result);
        results[pushCount++] = result;
    }
    call(ops_, GeneratedOps::Objects(deepestFirst.data(), popCount),
         GeneratedOps::Objects(results.data(), pushCount));
}

namespace {

#define KEL_GENERATED_CLASS(name, Stem, method, pops, pushes)                                      \
    static_assert(sizeof(pops) <= GeneratedOperator::mostObjects + 1);                             \
    static_assert(sizeof(pushes) <= GeneratedOperator::mostObjects + 1);                           \
    static_assert(onlyCodes(pops, popCodes), "unknown pop code for " name);                        \
    static_assert(onlyCodes(pushes, pushCodes), "unknown push code for " name);                    \
    class Stem##GeneratedOp : public GeneratedOperator {                                           \
    public:                                                                                        \
        Stem##GeneratedOp(const NameAtom* atom, GeneratedOps& ops)                                 \
            : GeneratedOperator(atom, ops, pops, pushes) {}                                        \
                                                                                                   \
    protected:                                                                                     \
        void call(GeneratedOps& ops, GeneratedOps::Objects operands,                               \
                  GeneratedOps::Objects results) override {                                        \
            ops.method(operands, results);                                                         \
        }                                                                                          \
    };
KEL_GENERATED_OPERATORS(KEL_GENERATED_CLASS)
#undef KEL_GENERATED_CLASS

} // namespace

void registerGenerated(Interpreter& interpreter, GeneratedOps& ops) {
    DictionarySet& dictionaries = *interpreter.dictionaries;
    DictionaryData& system = *dictionaries.systemData;
    auto install = [&](NameObject* op) {
        dictionaries.generatedNames.push_back(op->text());
        if (system.find(op->text())) dictionaries.replacedNames.push_back(op->text());
        system.put(op->text(), op);
    };
#define KEL_GENERATED_REGISTER(name, Stem, method, pops, pushes)                                   \
    install(new Stem##GeneratedOp(interpreter.intern(name), ops));
    KEL_GENERATED_OPERATORS(KEL_GENERATED_REGISTER)
#undef KEL_GENERATED_REGISTER
}
