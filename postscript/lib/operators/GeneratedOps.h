#pragma once

#include "core/NameObject.h"
#include "operators/GeneratedOperatorTable.h"

#include <span>

class Interpreter;

// What a generated operator does beyond its stack effect: one virtual per
// operator, in table order, each doing nothing. Operands come deepest first,
// then the results that were already pushed.
class GeneratedOps {
public:
    using Objects = std::span<PostscriptObject* const>;

    virtual ~GeneratedOps() = default;

#define KEL_GENERATED_VIRTUAL(name, Stem, method, pops, pushes)                                    \
    virtual void method(Objects operands, Objects results) {                                       \
        (void)operands;                                                                            \
        (void)results;                                                                             \
    }
    KEL_GENERATED_OPERATORS(KEL_GENERATED_VIRTUAL)
#undef KEL_GENERATED_VIRTUAL
};

// The actions that the generated layer does have.
class ImplementedGenOps : public GeneratedOps {
public:
    explicit ImplementedGenOps(Interpreter* interpreter) : interpreter(interpreter) {}

    // - countdictstack int
    void countdictstack(Objects operands, Objects results) override;
    // any string cvs substring; never reached, the language layer replaces cvs
    void cvs(Objects operands, Objects results) override;
    // - product string
    void product(Objects operands, Objects results) override;

    Interpreter* interpreter;
};

// The shared shape of every generated operator: typed pops, default results,
// then its virtual of GeneratedOps.
class GeneratedOperator : public NameObject {
public:
    GeneratedOperator(const NameAtom* atom, GeneratedOps& ops, const char* pops, const char* pushes)
        : NameObject(atom), ops_(ops), pops_(pops), pushes_(pushes) {}
    void execute(Interpreter& interpreter) override;

    static constexpr std::size_t mostObjects = 16;

protected:
    virtual void call(GeneratedOps& ops, GeneratedOps::Objects operands,
                      GeneratedOps::Objects results) = 0;

private:
    GeneratedOps& ops_;
    const char* pops_;
    const char* pushes_;
};

// Installs the generated operators in systemdict, in table order, noting each
// name and the names already there. The operators call the given actions,
// which must outlive every run of them.
void registerGenerated(Interpreter& interpreter, GeneratedOps& ops);
