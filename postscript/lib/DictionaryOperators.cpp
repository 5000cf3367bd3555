#include "OperatorRegistry.h"

void addDictionaryOperators(OperatorFactories&) {}
