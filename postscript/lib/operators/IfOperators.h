#pragma once

#include "operators/OperatorClass.h"

// bool proc if -   the procedure's type is not checked: whatever it is runs
KEL_OPERATOR(IfOperator);

// bool proc1 proc2 ifelse -
KEL_OPERATOR(IfElseOperator);
