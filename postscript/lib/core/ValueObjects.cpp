#include "core/ValueObjects.h"

#include "core/PostscriptException.h"

#include <cmath>

double objectToNumber(const PostscriptObject* object) {
    if (const auto* real = objectAs<RealObject>(object)) return real->value;
    if (const auto* integer = objectAs<IntegerObject>(object)) return integer->value;
    PS_THROW("Unsupported number type");
}

std::string IntegerObject::text(int32_t value) {
    return formatString("%d", value);
}

std::string RealObject::text(double value) {
    // C libraries disagree on the sign of a NaN; give the same text everywhere.
    if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
    return formatString("%f", value);
}
