#pragma once

#include "operators/OperatorClass.h"

// any dict dict   the operand is no capacity and is forgotten
KEL_OPERATOR(DictOperator);

// dict maxlength int   the entry count plus 10
KEL_OPERATOR(MaxlengthOperator);

// dict begin -
KEL_OPERATOR(BeginOperator);

// - end -   also pops the permanent dictionaries
KEL_OPERATOR(EndOperator);

// key value def -
KEL_OPERATOR(DefOperator);

// key load value
KEL_OPERATOR(LoadOperator);

// key value store -
KEL_OPERATOR(StoreOperator);

// dict key undef -   a non-dictionary operand is no failure
KEL_OPERATOR(UndefOperator);

// key where dict true | false
KEL_OPERATOR(WhereOperator);

// dict key known bool
KEL_OPERATOR(KnownOperator);

// - currentdict dict
KEL_OPERATOR(CurrentdictOperator);

// - cleardictstack -   down to the topmost of systemdict, globaldict, userdict
KEL_OPERATOR(CleardictstackOperator);
