#pragma once

#include "operators/LanguageOperators.h"

#include <cstdint>
#include <string>

// The two reads that may outlast their buffer keep what they have got in the
// instance in systemdict, the one that resumes when the next buffer comes.

// file string readstring substring bool
class ReadstringOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;

    std::string resumeText;
};

// file string readhexstring substring bool
class ReadhexstringOperator : public NameObject {
public:
    using NameObject::NameObject;
    void execute(Interpreter& interpreter) override;

    std::string resumeText;
    // The value of the first digit of a byte whose second is still to come;
    // -1 for none.
    int32_t pendingDigit = -1;
};
