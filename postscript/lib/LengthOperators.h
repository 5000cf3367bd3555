#pragma once

#include "NameObject.h"

// string|name|array|dict length int   bytes, bytes, elements or entries
class LengthOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
