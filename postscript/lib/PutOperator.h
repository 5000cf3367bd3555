#pragma once

#include "NameObject.h"

// dict name get any | array int get any | string int get int
// A dictionary takes only a name here; a string byte comes out signed.
class GetOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// dict name any put - | array int any put - | string int int put -
// An array grows by one at its length; a string stores the index, not the value.
class PutOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
