#pragma once

#include "NameObject.h"

// any exec -   a literal object goes back to the operand stack
class ExecOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
