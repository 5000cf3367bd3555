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
