#include "pdf/Postscript2Pdf.h"

#include "core/PostscriptException.h"
#include "operators/OperatorRegistry.h"
#include "platform/DebugOutput.h"

#include <cstring>

Postscript2Pdf::Postscript2Pdf(const double matrix[6]) {
    for (int i = 0; i < 6; ++i)
        defaultMatrix[i] = matrix[i];
    interpreter = std::make_unique<Interpreter>();
    // The operators are the interpreter's objects: from its pool.
    objectpool::Scope scope(interpreter->pool.get());
    generatedOps = std::make_unique<ImplementedGenOps>(interpreter.get());
    installLanguage(*interpreter, *generatedOps);
}

Postscript2Pdf::~Postscript2Pdf() = default;

bool Postscript2Pdf::executeBuffer(const unsigned char* data, uint32_t length) {
    std::size_t size = length;
    if (static_cast<int32_t>(length) < 0)
        size = data ? std::strlen(reinterpret_cast<const char*>(data)) : 0;
    try {
        if (!data && size != 0) PS_THROW("No data to run");
        static const unsigned char none = 0;
        interpreter->run(data ? data : &none, size);
        return true;
    } catch (PostscriptException& failure) {
        errorText = "Exception:";
        errorText += failure.formattedText();
        platform::outputDebugString(errorText);
        return false;
    }
}
