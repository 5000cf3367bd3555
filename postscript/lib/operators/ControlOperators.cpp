#include "operators/ExecOperators.h"
#include "operators/IfOperators.h"
#include "operators/LoopOperators.h"
#include "operators/OperatorRegistry.h"
#include "operators/StopOperators.h"

void addControlOperators(OperatorFactories& factories) {
    factories.add<IfElseOperator>("ifelse");
    factories.add<IfOperator>("if");
    factories.add<ForOperator>("for");
    factories.add<ForallOperator>("forall");
    factories.add<LoopOperator>("loop");
    factories.add<RepeatOperator>("repeat");
    factories.add<ExitOperator>("exit");
    factories.add<StoppedOperator>("stopped");
    factories.add<StopOperator>("stop");
    factories.add<ExecOperator>("exec");
}
