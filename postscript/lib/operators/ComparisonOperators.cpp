#include "operators/ComparisonOperators.h"
#include "operators/LanguageOperators.h"

#include "core/Interpreter.h"
#include "core/ObjectCompare.h"
#include "core/ValueObjects.h"

void Comparer::execute(Interpreter& interpreter) {
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
    return compareObjects(a, b) >= 0;
}
bool GtOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compareObjects(a, b) > 0;
}
bool LeOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compareObjects(a, b) <= 0;
}
bool LtOperator::holds(const PostscriptObject* a, const PostscriptObject* b) const {
    return compareObjects(a, b) < 0;
}
