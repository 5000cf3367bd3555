#pragma once

#include "operators/LanguageOperators.h"

// - [ mark   the same action as mark
class LeftSquareBracketOperator : public MarkOperator {
public:
    using MarkOperator::MarkOperator;
};
