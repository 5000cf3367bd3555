#pragma once

#include "NameObject.h"

// any pop -
class PopOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any1 any2 exch any2 any1
class ExchOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any dup any any'   the second is a clone: composites share the body
class DupOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any1 ... anyn n copy any1 ... anyn any1' ... anyn'
// array1 array2 copy array2   dict1 dict2 copy dict2
class CopyOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// anyn ... any0 n index anyn ... any0 anyn'
class IndexOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// anyn-1 ... any0 n j roll any(j-1) mod n ... any0 anyn-1 ... anyj mod n
class RollOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any1 ... anyn clear -
class ClearOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any1 ... anyn count any1 ... anyn n
class CountOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - mark mark
class MarkOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - [ mark   the same action as mark
class LeftSquareBracketOperator : public MarkOperator {
public:
    using MarkOperator::MarkOperator;
};

// mark any0 ... anyn-1 ] array
class RightSquareBracketOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// mark any1 ... anyn cleartomark -
class CleartomarkOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// mark any1 ... anyn counttomark mark any1 ... anyn n   the whole depth without a mark
class CounttomarkOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
