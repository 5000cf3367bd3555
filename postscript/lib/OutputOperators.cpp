#include "OperatorRegistry.h"

void addOutputOperators(OperatorFactories&) {}
