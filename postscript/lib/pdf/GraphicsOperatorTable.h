#pragma once

// The one table of the graphics operators, in their order of registration,
// each under its stack effect.
//
// X(name, Class, Declare): Declare(Class) declares the class, as in the
// language table: KEL_GRAPHICS_OPERATOR for a class that is its execute,
// KEL_OWN_DECLARATION for one declared in its family's header. Every class is
// made with the translator: Class(atom, pdf).
#define KEL_GRAPHICS_OPERATORS(X)
