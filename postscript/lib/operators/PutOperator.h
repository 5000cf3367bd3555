#pragma once

#include "operators/OperatorClass.h"

// dict name get any | array int get any | string int get int
// A dictionary takes only a name here; a string byte comes out signed.
KEL_OPERATOR(GetOperator);

// dict name any put - | array int any put - | string int int put -
// An array grows by one at its length; a string stores the index, not the value.
KEL_OPERATOR(PutOperator);
