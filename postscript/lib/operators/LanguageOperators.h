#pragma once

#include "operators/ComparisonOperators.h"
#include "operators/LanguageOperatorTable.h"
#include "operators/MathOperators.h"
#include "operators/OperatorClass.h"

#include <cstdint>

class GeneratedOps;
class Interpreter;

// A class with state of its own is declared in its family's header.
#define KEL_OWN_DECLARATION(Class) static_assert(true)

#define KEL_LANGUAGE_DECLARE(name, Class, Declare) Declare(Class);
KEL_LANGUAGE_OPERATORS(KEL_LANGUAGE_DECLARE)
#undef KEL_LANGUAGE_DECLARE

// The most elements or bytes that array and string make at once. Far beyond
// any real program; a larger count is refused instead of exhausting memory.
constexpr int32_t largestLength = 1 << 24;

// Installs the hand-written language operators in systemdict, in table order.
void registerLanguageOperators(Interpreter& interpreter);

// Makes a new interpreter a machine of the language: the generated layer over
// the given actions, the hand-written layer, then the system values.
void installLanguage(Interpreter& interpreter, GeneratedOps& generated);
