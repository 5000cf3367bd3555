#pragma once

#include "operators/OperatorClass.h"

// array index count getinterval subarray | string index count getinterval substring
// The result is a copy, pushed before it is filled.
KEL_OPERATOR(GetintervalOperator);

// array1 index array2 putinterval - | string1 index string2 putinterval -
// A string target grows as needed.
KEL_OPERATOR(PutintervalOperator);
