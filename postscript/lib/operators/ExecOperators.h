#pragma once

#include "operators/OperatorClass.h"

// any exec -   a literal object goes back to the operand stack
KEL_OPERATOR(ExecOperator);
