#pragma once

#include "NameObject.h"

// Mix-in of the relational operators: compare() pops b and then a, and pushes
// a new boolean, holds(a, b).
class Comparer {
protected:
    ~Comparer() = default;
    void compare(Interpreter& interpreter) const;
    virtual bool holds(const PostscriptObject* a, const PostscriptObject* b) const = 0;
};

// any1 any2 eq bool    deep for arrays and dictionaries
class EqOperator : public NameObject, public Comparer {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { compare(interpreter); }

protected:
    bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;
};

// any1 any2 ne bool
class NeOperator : public NameObject, public Comparer {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { compare(interpreter); }

protected:
    bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;
};

// any1 any2 ge bool
class GeOperator : public NameObject, public Comparer {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { compare(interpreter); }

protected:
    bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;
};

// any1 any2 gt bool
class GtOperator : public NameObject, public Comparer {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { compare(interpreter); }

protected:
    bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;
};

// any1 any2 le bool
class LeOperator : public NameObject, public Comparer {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { compare(interpreter); }

protected:
    bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;
};

// any1 any2 lt bool
class LtOperator : public NameObject, public Comparer {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override { compare(interpreter); }

protected:
    bool holds(const PostscriptObject* a, const PostscriptObject* b) const override;
};
