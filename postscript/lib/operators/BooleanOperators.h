#pragma once

#include "operators/OperatorClass.h"

class OperatorFactories;

// The logical operators and the constants true, false and null; called by
// addComparisonOperators.
void addBooleanOperators(OperatorFactories& factories);

// bool|int not bool|int      an integer is negated, not complemented
KEL_OPERATOR(NotOperator);

// bool1|int1 bool2|int2 and bool|int
KEL_OPERATOR(AndOperator);

// bool1|int1 bool2|int2 or bool|int
KEL_OPERATOR(OrOperator);

// bool1|int1 bool2|int2 xor bool|int
KEL_OPERATOR(XOrOperator);

// - true true      by way of the execution stack
KEL_OPERATOR(TrueOperator);

// - false false    by way of the execution stack
KEL_OPERATOR(FalseOperator);

// - null null      by way of the execution stack
KEL_OPERATOR(NullOperator);
