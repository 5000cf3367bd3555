#pragma once

#include "operators/OperatorClass.h"

// - { -   opens a procedure under construction
KEL_OPERATOR(LeftCurlyBraceOperator);

// - } proc   closes the innermost procedure under construction
KEL_OPERATOR(RightCurlyBraceOperator);

// int array array   n nulls; none for n at or below 0
KEL_OPERATOR(ArrayOperator);

// any0 ... anyn-1 int packedarray array   a plain array: there is no packed type
KEL_OPERATOR(PackedarrayOperator);

// bool setpacking -   drops its operand
KEL_OPERATOR(SetpackingOperator);

// - currentpacking true
KEL_OPERATOR(CurrentpackingOperator);

// array aload any0 ... anyn-1 array
KEL_OPERATOR(AloadOperator);

// any0 ... anyn-1 array astore array
KEL_OPERATOR(AstoreOperator);
