#include "InterpreterInput.h"

#include "kelumpd64/conversion.h"
#include "pdf/Postscript2Pdf.h"

std::vector<std::string> runInterpreterInput(const uint8_t* data, std::size_t size,
                                             uint64_t stepLimit) {
    std::vector<std::string> failures;
    if (size < 1) return failures;
    const std::size_t cut = (size - 1) * data[0] / 255;
    ++data;
    --size;
    const float identity[6] = {1, 0, 0, 1, 0, 0};
    PSHandle handle = PSOpen(identity);
    // The handle is the translator; the step limit has no export yet.
    reinterpret_cast<Postscript2Pdf*>(handle)->interpreter->stepLimit = stepLimit;
    uint32_t lengths[2] = {static_cast<uint32_t>(cut), static_cast<uint32_t>(size - cut)};
    const uint8_t* starts[2] = {data, data + cut};
    for (int i = 0; i < 2; ++i)
        if (!PSConvertToPdf(handle, starts[i], &lengths[i]))
            failures.emplace_back(PSGetErrorStr(handle));
    PSClose(handle);
    return failures;
}
