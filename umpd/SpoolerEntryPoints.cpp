#include "umpd/SpoolerEntryPoints.h"

#include "umpd/JobRegistry.h"
#include "umpd/SystemServices.h"
#include "umpd/UmDriver.h"

#include <memory>

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
    auto* job = checkedJob(pointer, JobNeed::Magic, "DrvSplWritePrinter - invalid parms");
    if (!job || (job->state & jobState::writeFailed)) return 0;
    try {
        if (job->write(buffer, length)) return 1;
    } catch (...) {
    }
    job->state |= jobState::writeFailed;
    return 0;
}

int DrvSplStartPage(void* pointer) {
    return checkedJob(pointer, JobNeed::Ready, "DrvSplStartPage invalid parms") ? 1 : 0;
}

int DrvSplEndPage(void* pointer) {
    return checkedJob(pointer, JobNeed::Ready, "DrvSplEndPage invalid parms") ? 1 : 0;
}

void DrvSplEndDoc(void* pointer) {
    if (auto* job = checkedJob(pointer, JobNeed::Ready, "DrvSplEndDoc - invalid parms")) try {
            job->endDoc();
        } catch (...) {
        }
}

void DrvSplAbort(void* pointer) {
    if (auto* job = checkedJob(pointer, JobNeed::Ready, "DrvSplAbort invalid parms"))
        job->state |= jobState::aborted;
}

void DrvSplClose(void* pointer) {
    delete checkedJob(pointer, JobNeed::Magic, "DrvSplClose - invalid parms");
}
