#include "OperatorRegistry.h"

void addComparisonOperators(OperatorFactories&) {}
