#pragma once

#include "NameObject.h"

// array index count getinterval subarray | string index count getinterval substring
// The result is a copy, pushed before it is filled.
class GetintervalOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};

// array1 index array2 putinterval - | string1 index string2 putinterval -
// A string target grows as needed.
class PutintervalOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
