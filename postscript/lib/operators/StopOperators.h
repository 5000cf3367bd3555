#pragma once

#include "operators/LoopOperators.h"

// any stopped bool   true when a stop ended it, false when it ran to its end;
// failures pass through
class StoppedOperator : public ProcedureContext<StoppedOperator> {
public:
    using ProcedureContext::ProcedureContext;

private:
    friend ProcedureContext;
    void start(Interpreter& interpreter);
    void turn(Interpreter& interpreter);
};
