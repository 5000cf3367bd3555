#pragma once

#include "operators/OperatorClass.h"

// any = -     writes the object's "=" text and a line feed to standard output
KEL_OPERATOR(EqualsOperator);

// any == -    writes the object's "==" text and a line feed
KEL_OPERATOR(DoubleEqualsOperator);

// any1 ... anyn stack any1 ... anyn    writes every operand, top first, in "==" form
KEL_OPERATOR(StackOperator);
