#pragma once

#include "core/NameObject.h"

// The relational operators, all with this one execute: it pops b and then
// a, and pushes a new boolean, holds(a, b).
class Comparer : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) final;

protected:
    virtual bool holds(const PostscriptObject* a, const PostscriptObject* b) const = 0;
};

#define KEL_COMPARISON_OPERATOR(Class)                                                             \
    class Class : public Comparer {                                                                \
    public:                                                                                        \
        using Comparer::Comparer;                                                                  \
                                                                                                   \
    protected:                                                                                     \
        bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;           \
    }

// any1 any2 eq bool    deep for arrays and dictionaries
KEL_COMPARISON_OPERATOR(EqOperator);

// any1 any2 ne bool
KEL_COMPARISON_OPERATOR(NeOperator);

// any1 any2 ge bool
KEL_COMPARISON_OPERATOR(GeOperator);

// any1 any2 gt bool
KEL_COMPARISON_OPERATOR(GtOperator);

// any1 any2 le bool
KEL_COMPARISON_OPERATOR(LeOperator);

// any1 any2 lt bool
KEL_COMPARISON_OPERATOR(LtOperator);
