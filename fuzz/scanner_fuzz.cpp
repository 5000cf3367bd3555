// The scanner on arbitrary bytes, cut into buffers at sizes taken from the
// input itself, so that every state meets a buffer end.
#include "core/Interpreter.h"
#include "core/Parser.h"
#include "core/PostscriptException.h"
#include "pdf/Postscript2Pdf.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const double identity[6] = {1, 0, 0, 1, 0, 0};
    static Postscript2Pdf machine(identity);
    Interpreter& interpreter = *machine.interpreter;
    if (size < 1) return 0;
    const std::size_t piece = 1 + data[0] % 16;
    ++data;
    --size;
    Parser parser(interpreter.memory.get(), interpreter.dictionaries.get(), &interpreter.names);
    for (std::size_t at = 0; at < size; at += piece) {
        const uint8_t* end = data + (size - at < piece ? size : at + piece);
        parser.setBuffer(data + at, end);
        try {
            while (PostscriptObject* object = parser.nextObject())
                releaseIfUnreferenced(object);
        } catch (const PostscriptException&) {
            // The scanner keeps its state; the next buffer goes on from there.
        }
    }
    return 0;
}
