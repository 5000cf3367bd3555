#include "ComparisonOperators.h"

#include "BooleanOperators.h"
#include "Interpreter.h"
#include "ObjectCompare.h"
#include "OperatorRegistry.h"
#include "ValueObjects.h"

namespace {
// The comparison's result is a 32-bit value: the difference of two integers
// wraps, so that 2147483647 -1 gt is false.
int32_t compared(const PostscriptObject* a, const PostscriptObject* b) {
    return static_cast<int32_t>(compareObjects(a, b));
}
} // namespace

void Comparer::compare(Interpreter& interpreter) const {
    Popped<> second(interpreter.operandStack->pop());
    Popped<> first(interpreter.operandStack->pop());
    bool result = holds(first.get(), second.get());
    interpreter.operandStack->push(new BooleanObject(result));
}

bool EqOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return objectsEqual(a, b);
}
bool NeOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return !objectsEqual(a, b);
}
bool GeOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compared(a, b) >= 0;
}
bool GtOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compared(a, b) > 0;
}
bool LeOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compared(a, b) <= 0;
}
bool LtOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compared(a, b) < 0;
}

void addComparisonOperators(OperatorFactories& factories) {
    factories.add<EqOperator>("eq");
    factories.add<NeOperator>("ne");
    factories.add<GeOperator>("ge");
    factories.add<GtOperator>("gt");
    factories.add<LeOperator>("le");
    factories.add<LtOperator>("lt");
    addBooleanOperators(factories);
}
