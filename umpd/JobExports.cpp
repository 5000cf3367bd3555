// The exports of the print job face. No exception leaves them, and a job pointer is trusted
// only when it is a live job of this process with its magic.
#include "kelumpd64/printjob.h"

#include "metadata/DocInfo.h"
#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/JobRegistry.h"
#include "umpd/NameMacros.h"
#include "umpd/SystemServices.h"
#include "umpd/UmDriver.h"

#include <cstring>
#include <memory>

namespace {
const std::u16string pdfaXmlName = u"pdfaXML";

// A caller's buffer length in characters, terminator included; none when not positive.
std::size_t roomOf(int length) {
    return length > 0 ? static_cast<std::size_t>(length) : 0;
}

// text into a caller's buffer of length characters, cut to fit with its terminator; nothing
// when there is no room at all.
void copyOut(std::u16string_view text, wchar_t* buffer, int length) {
    auto room = roomOf(length);
    if (!buffer || room == 0) return;
    auto wide = platform::toWchar(text.substr(0, cutLength(text, room - 1)));
    std::memcpy(buffer, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t));
}
} // namespace

extern "C" {

void* DocStart2K(void* printer, std::uint32_t jobId, const wchar_t* printerName,
                 const wchar_t* documentName) {
    try {
        trace(u"Printer handle=%d, jobId=%d, printerName=[%s], docName=[%s]\n", printer, jobId,
              printerName, documentName);
        auto document = platform::fromWchar(documentName);
        return startJob<UmDriver2k>(reinterpret_cast<std::uintptr_t>(printer), jobId,
                                    documentName ? document.c_str() : nullptr);
    } catch (...) {
        return nullptr;
    }
}

int DocWrite(void* pointer, const void* buffer, std::uint32_t length) {
    try {
        auto* job = checkedJob(pointer, JobNeed::Ready, "DocWrite invalid parms");
        if (!job) return 0;
        if (job->state & jobState::writeFailed) return 0;
        if (job->write(buffer, length)) return 1;
        job->state |= jobState::writeFailed;
    } catch (...) {
    }
    return 0;
}

int DocEnd(void* pointer) {
    try {
        auto* job = checkedJob(pointer, JobNeed::Ready, "DocEnd invalid parms");
        if (!job) return 0;
        std::unique_ptr<UmDriver> ending(job);
        return static_cast<std::uint8_t>(ending->endDoc());
    } catch (...) {
        return 0;
    }
}

void PrinterCleanup(const wchar_t* printerName) {
    try {
        auto name = platform::fromWchar(printerName);
        printerCleanup(printerName ? name.c_str() : nullptr);
    } catch (...) {
    }
}

int getIntVal(void* pointer, const wchar_t* name, int fallback) {
    try {
        auto* job = checkedJob(pointer, JobNeed::Ready, "getPrinterName invalid parms");
        if (!job) return fallback;
        return job->config.settings.getInt(platform::fromWchar(name), fallback);
    } catch (...) {
        return fallback;
    }
}

int getStringVal(void* pointer, const wchar_t* name, wchar_t* buffer, int length,
                 const wchar_t* fallback) {
    try {
        auto* job = checkedJob(pointer, JobNeed::Ready, "getStringVal invalid parms");
        if (!job) return 0;
        auto key = platform::fromWchar(name);
        if (name && key == pdfaXmlName) {
            auto packet = buildPdfaXml(job->config, job->docName);
            if (packet.size() >= roomOf(length)) packet.clear(); // whole or not at all
            copyOut(packet, buffer, length);
            return 1;
        }
        const auto* value = job->config.settings.get(key);
        if (value && !value->empty() && value->size() < roomOf(length))
            copyOut(*value, buffer, length);
        else if (fallback) // cut to the buffer: its length was never checked
            copyOut(platform::fromWchar(fallback), buffer, length);
        return 1;
    } catch (...) {
        return 0;
    }
}

int getStringMultibyte(void* pointer, const char* name, char* buffer, int length) {
    try {
        auto* job = checkedJob(pointer, JobNeed::Ready, "getStringMultibyte invalid parms");
        if (!job) return 0;
        if (!name || std::strcmp(name, "pdfaXML") != 0) return 1;
        auto packet = buildPdfaXml(job->config, job->docName);
        platform::current().system().wideToUtf8(packet, buffer, length); // unchecked, as designed
        return 1;
    } catch (...) {
        return 0;
    }
}

} // extern "C"

void* DocStart(wchar_t* printerName) {
    try {
        auto name = platform::fromWchar(printerName);
        return startJob<UmDriver>(std::uintptr_t{0}, std::uint32_t{0},
                                  printerName ? name.c_str() : nullptr);
    } catch (...) {
        return nullptr;
    }
}

CUmpd& CUmpd::operator=(const CUmpd&) {
    return *this;
}

CUmpd& CUmpd::operator=(CUmpd&&) {
    return *this;
}
