#pragma once

#include "operators/OperatorClass.h"

// any pop -
KEL_OPERATOR(PopOperator);

// any1 any2 exch any2 any1
KEL_OPERATOR(ExchOperator);

// any dup any any'   the second is a clone: composites share the body
KEL_OPERATOR(DupOperator);

// any1 ... anyn n copy any1 ... anyn any1' ... anyn'
// array1 array2 copy array2   dict1 dict2 copy dict2
KEL_OPERATOR(CopyOperator);

// anyn ... any0 n index anyn ... any0 anyn'
KEL_OPERATOR(IndexOperator);

// anyn-1 ... any0 n j roll any(j-1) mod n ... any0 anyn-1 ... anyj mod n
KEL_OPERATOR(RollOperator);

// any1 ... anyn clear -
KEL_OPERATOR(ClearOperator);

// any1 ... anyn count any1 ... anyn n
KEL_OPERATOR(CountOperator);

// - mark mark
KEL_OPERATOR(MarkOperator);

// - [ mark   the same action as mark
class LeftSquareBracketOperator : public MarkOperator {
public:
    using MarkOperator::MarkOperator;
};

// mark any0 ... anyn-1 ] array
KEL_OPERATOR(RightSquareBracketOperator);

// mark any1 ... anyn cleartomark -
KEL_OPERATOR(CleartomarkOperator);

// mark any1 ... anyn counttomark mark any1 ... anyn n   the whole depth without a mark
KEL_OPERATOR(CounttomarkOperator);
