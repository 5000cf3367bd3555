#include "core/ValueObjects.h"

#include "core/PostscriptException.h"

#include <cmath>

std::string IntegerObject::text(int32_t value) {
    return formatString("%d", value);
}

std::string RealObject::text(double value) {
    // C libraries disagree on the sign of a NaN; give the same text everywhere.
    if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
    return formatString("%f", value);
}
