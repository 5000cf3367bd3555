#include "OperatorRegistry.h"

void addStringOperators(OperatorFactories&) {}
