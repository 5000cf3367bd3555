#pragma once

#include "operators/OperatorClass.h"

// int string string   n bytes of 0
KEL_OPERATOR(StringOperator);

// string seek anchorsearch post match true | string false
// A match shortens the string's own body, seen by everything sharing it.
KEL_OPERATOR(AnchorsearchOperator);
