#pragma once

#include "NameObject.h"

// any type name             an executable name such as integertype
class TypeOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any cvx any               sets executable on the object itself
class CvxOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any xcheck bool
class XcheckOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any readonly any          there are no access attributes: does nothing
class ReadonlyOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// proc bind proc            does nothing; names are looked up at each run
class BindOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num|string cvi int
class CviOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// num|string cvr real
class CvrOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// string cvn name
class CvnOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// any string cvs string     a new string of the object's = text
class CvsOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
