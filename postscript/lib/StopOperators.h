#pragma once

#include "NameObject.h"

// any stopped bool   true when a stop ended it, false when it ran to its end;
// failures pass through
class StoppedOperator : public NameObject {
public:
    using NameObject::NameObject;
    ~StoppedOperator() override;
    void execute(Interpreter& interpreter) override;

private:
    PostscriptObject* proc = nullptr;
};

// - stop -   leaves the innermost stopped context, which answers true
class StopOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;
};
