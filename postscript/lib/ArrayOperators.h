#pragma once

#include "NameObject.h"

// - { -   opens a procedure under construction
class LeftCurlyBraceOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// - } proc   closes the innermost procedure under construction
class RightCurlyBraceOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
