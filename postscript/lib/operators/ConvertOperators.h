#pragma once

#include "operators/OperatorClass.h"

// any type name             an executable name such as integertype
KEL_OPERATOR(TypeOperator);

// any cvx any               sets executable on the object itself
KEL_OPERATOR(CvxOperator);

// any xcheck bool
KEL_OPERATOR(XcheckOperator);

// any readonly any          there are no access attributes: does nothing
KEL_OPERATOR(ReadonlyOperator);

// proc bind proc            does nothing; names are looked up at each run
KEL_OPERATOR(BindOperator);

// num|string cvi int
KEL_OPERATOR(CviOperator);

// num|string cvr real
KEL_OPERATOR(CvrOperator);

// string cvn name
KEL_OPERATOR(CvnOperator);

// any string cvs string     a new string of the object's = text
KEL_OPERATOR(CvsOperator);
