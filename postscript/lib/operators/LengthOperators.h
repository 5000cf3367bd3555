#pragma once

#include "operators/OperatorClass.h"

#include <cstdint>

// The most elements or bytes that array and string make at once. Far beyond
// any real program; a larger count is refused instead of exhausting memory.
constexpr int32_t largestLength = 1 << 24;

// string|name|array|dict length int   bytes, bytes, elements or entries
KEL_OPERATOR(LengthOperator);
