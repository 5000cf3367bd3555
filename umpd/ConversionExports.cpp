// The exports of the conversion face. No exception leaves them: a
// PostscriptException becomes the error text, anything else a null result.
#include "kelumpd64/conversion.h"
#include "kelumpd64/limits.h"

#include "pdf/Postscript2Pdf.h"

#include <new>

namespace {
Postscript2Pdf* translator(PSHandle handle) {
    return reinterpret_cast<Postscript2Pdf*>(handle);
}
} // namespace

extern "C" {

PSHandle PSOpen(const float* matrix) {
    if (!matrix) return nullptr;
    double widened[6];
    for (int i = 0; i < 6; ++i)
        widened[i] = matrix[i];
    try {
        return reinterpret_cast<PSHandle>(new Postscript2Pdf(widened, PdfObjectList::process()));
    } catch (...) {
        return nullptr;
    }
}

void PSClose(PSHandle handle) {
    delete translator(handle);
}

void PSStartPage(PSHandle handle, const float* matrix) {
    if (!handle || !matrix) return;
    double widened[6];
    for (int i = 0; i < 6; ++i)
        widened[i] = matrix[i];
    try {
        translator(handle)->startPage(widened);
    } catch (...) {
    }
}

const char* PSConvertToPdf(PSHandle handle, const unsigned char* data, uint32_t* length) {
    if (!handle || !length) return nullptr;
    Postscript2Pdf* pdf = translator(handle);
    try {
        pdf->contentText.clear();
        if (!pdf->executeBuffer(data, *length)) return nullptr;
        *length = static_cast<uint32_t>(pdf->contentText.size());
        return pdf->contentText.data();
    } catch (...) {
        return nullptr;
    }
}

const double* PSExecuteReturnDoubles(PSHandle handle, const char* text, uint32_t* count) {
    if (!handle || !count) return nullptr;
    Postscript2Pdf* pdf = translator(handle);
    try {
        pdf->contentText.clear();
        if (!pdf->executeBuffer(reinterpret_cast<const unsigned char*>(text), 0xFFFFFFFFu))
            return nullptr;
        *count = pdf->interpreter->doubleCount;
        return pdf->interpreter->doubles.get();
    } catch (...) {
        return nullptr;
    }
}

const char* PSExecuteReturnStdOut(PSHandle handle, const char* text, uint32_t length) {
    if (!handle) return nullptr;
    Postscript2Pdf* pdf = translator(handle);
    try {
        pdf->contentText.clear();
        if (!pdf->executeBuffer(reinterpret_cast<const unsigned char*>(text), length))
            return nullptr;
        return pdf->interpreter->stdoutText.c_str();
    } catch (...) {
        return nullptr;
    }
}

const char* PSGetErrorStr(PSHandle handle) {
    if (!handle) return nullptr;
    return translator(handle)->errorText.c_str();
}

PdfObject** PSGetPdfObjects(PSHandle handle, uint64_t* count) {
    if (!handle || !count) return nullptr;
    try {
        return translator(handle)->pdfObjects->handOut(count);
    } catch (...) {
        return nullptr;
    }
}

void PSSetStepLimit(PSHandle handle, uint64_t steps) {
    if (handle) translator(handle)->interpreter->stepLimit = steps;
}

} // extern "C"
