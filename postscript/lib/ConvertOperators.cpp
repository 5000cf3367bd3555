#include "OperatorRegistry.h"

void addConvertOperators(OperatorFactories&) {}
