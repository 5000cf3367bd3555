#include "ValueObjects.h"

#include "PostscriptException.h"

std::string IntegerObject::text(int32_t value) {
    return formatString("%d", value);
}

std::string RealObject::text(double value) {
    return formatString("%f", value);
}
