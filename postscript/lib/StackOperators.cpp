#include "OperatorRegistry.h"

void addStackOperators(OperatorFactories&) {}
