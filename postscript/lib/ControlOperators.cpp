#include "OperatorRegistry.h"

void addControlOperators(OperatorFactories&) {}
