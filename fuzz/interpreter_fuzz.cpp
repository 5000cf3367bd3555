// The whole machine through the exports, on arbitrary programs fed in two
// buffers cut where the input's first byte says. Loops are kept out: the
// design runs an endless program for ever, and that is no finding.
#include <kelumpd64/conversion.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::size_t cut = (size - 1) * data[0] / 255;
    ++data;
    --size;
    std::string_view program(reinterpret_cast<const char*>(data), size);
    for (std::string_view word : {"loop", "repeat", "for"})
        if (program.find(word) != std::string_view::npos) return 0;

    const float identity[6] = {1, 0, 0, 1, 0, 0};
    PSHandle handle = PSOpen(identity);
    uint32_t first = static_cast<uint32_t>(cut), second = static_cast<uint32_t>(size - cut);
    PSConvertToPdf(handle, data, &first);
    PSConvertToPdf(handle, data + cut, &second);
    PSClose(handle);
    return 0;
}
