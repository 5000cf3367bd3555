#pragma once

#include "core/Interpreter.h"
#include "operators/GeneratedOps.h"
#include "pdf/ContentWriter.h"

#include <cstdint>
#include <memory>
#include <string>

// The handle of the conversion face: the translator, which owns the
// interpreter and collects the page content of each call.
class Postscript2Pdf {
public:
    explicit Postscript2Pdf(const double matrix[6]);
    ~Postscript2Pdf();
    Postscript2Pdf(const Postscript2Pdf&) = delete;
    Postscript2Pdf& operator=(const Postscript2Pdf&) = delete;

    // Runs one buffer. False after a PostscriptException, whose text is then
    // in errorText; other exceptions pass to the caller. A negative length
    // (as a signed 32-bit value) means NUL-terminated.
    bool executeBuffer(const unsigned char* data, uint32_t length);

    double defaultMatrix[6] = {1, 0, 0, 1, 0, 0};
    // The generated layer's actions outlive the interpreter whose operators call them.
    std::unique_ptr<ImplementedGenOps> generatedOps;
    std::unique_ptr<Interpreter> interpreter;
    std::string errorText;
    ContentWriter contentText;
};
