#pragma once

#include "NameObject.h"

// bool proc if -   the procedure's type is not checked: whatever it is runs
class IfOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// bool proc1 proc2 ifelse -
class IfElseOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
