#include "umpd/SpoolerEntryPoints.h"

#include "umpd/JobRegistry.h"
#include "umpd/SystemServices.h"
#include "umpd/UmDriver.h"

#include <memory>

namespace {
// The job when the magic is good and, unless only the magic counts, the job is ready.
UmDriver* checked(void* pointer, bool magicOnly, const char* failure) {
    auto* job = findJob(pointer);
    if (job && (magicOnly || job->ready())) return job;
    errorBox("%s", failure);
    return nullptr;
}
} // namespace

void* DrvSplStartDoc(std::uintptr_t printerHandle, std::uint32_t jobId) {
    trace(u"DrvSplStartDoc hPrinter=%d\n", printerHandle);
    try {
        return startJob<UmDriver>(printerHandle, jobId, static_cast<const char16_t*>(nullptr));
    } catch (...) {
        return nullptr;
    }
}

int DrvSplWritePrinter(void* pointer, const void* buffer, std::uint32_t length,
                       std::uint32_t* written) {
    if (written) *written = length;
    auto* job = checked(pointer, true, "DrvSplWritePrinter - invalid parms");
    if (!job || (job->state & jobState::writeFailed)) return 0;
    try {
        if (job->write(buffer, length)) return 1;
    } catch (...) {
    }
    job->state |= jobState::writeFailed;
    return 0;
}

int DrvSplStartPage(void* pointer) {
    return checked(pointer, false, "DrvSplStartPage invalid parms") ? 1 : 0;
}

int DrvSplEndPage(void* pointer) {
    return checked(pointer, false, "DrvSplEndPage invalid parms") ? 1 : 0;
}

void DrvSplEndDoc(void* pointer) {
    if (auto* job = checked(pointer, false, "DrvSplEndDoc - invalid parms")) try {
            job->endDoc();
        } catch (...) {
        }
}

void DrvSplAbort(void* pointer) {
    if (auto* job = checked(pointer, false, "DrvSplAbort invalid parms"))
        job->state |= jobState::aborted;
}

void DrvSplClose(void* pointer) {
    delete checked(pointer, true, "DrvSplClose - invalid parms");
}
