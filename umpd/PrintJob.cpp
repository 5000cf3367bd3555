#include "umpd/PrintJob.h"

#include "platform/Platform.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SystemServices.h"

const platform::PrinterInfo2* PrinterInfoCache::fetch() {
    if (!printer) return nullptr;
    info.reset();
    auto record = std::make_unique<platform::PrinterInfo2>();
    if (!printer->getPrinter2(*record)) return nullptr;
    info = std::move(record);
    return info.get();
}

namespace {
constexpr std::uint32_t jobRecordRoom = 160; // a JOB_INFO_2W
} // namespace

std::optional<std::vector<platform::JobInfo2>> PrintJob::getAllJobs(platform::Printer& printer,
                                                                    std::uint32_t& count) {
    count = 0;
    platform::PrinterInfo2 info;
    if (!printer.getPrinter2(info) || info.cJobs == 0) return std::nullopt;
    std::uint32_t needed = 0;
    if (!printer.enumJobsSize(0, info.cJobs + 1, needed)) return std::nullopt;
    // Room for two records more than were counted: a job that arrives between the two
    // calls must not make the second fail.
    std::vector<platform::JobInfo2> jobs;
    if (!printer.enumJobs(0, info.cJobs + 2, needed + 2 * jobRecordRoom, jobs)) return std::nullopt;
    count = static_cast<std::uint32_t>(jobs.size());
    return jobs;
}

namespace {
constexpr std::uint32_t jobStatusComplete = 0x1000;
constexpr std::uint32_t jobControlCancel = 3;
constexpr std::uint32_t jobControlDelete = 5;
} // namespace

void PrintJob::deleteCompletedJobs(platform::Printer& printer) {
    std::uint32_t count = 0;
    auto jobs = getAllJobs(printer, count);
    if (!jobs) {
        platform::current().reporter().debugOutput("PrintJob::getAllJobs FAILED");
        return;
    }
    auto command = getPlatformId() == platformWindows ? jobControlCancel : jobControlDelete;
    for (const auto& job : *jobs)
        if (job.status & jobStatusComplete) printer.setJob(job.jobId, command);
}

void PrinterConfig::deleteCompletedJobs() {
    if (openPrinter(platform::printerAccessUse)) PrintJob::deleteCompletedJobs(*printerHandle);
}

void getCurrentPrintJobDocName(PrinterConfig& config, std::u16string& docName,
                               std::uint32_t& jobId) {
    trace(u">getCurrentPrintJobDocName %s printer %d\n", docName, config.printerHandle.get());
    if (!config.printerHandle && !config.openPrinter(platform::printerAccessUse)) return;
    std::uint32_t count = 0;
    auto jobs = PrintJob::getAllJobs(*config.printerHandle, count);
    if (!jobs) return;
    // The job last in the queue; of equal positions the first listed.
    const platform::JobInfo2* last = nullptr;
    for (const auto& job : *jobs)
        if (!last ||
            static_cast<std::int32_t>(job.position) > static_cast<std::int32_t>(last->position))
            last = &job;
    char16_t buffer[260];
    copyField(buffer, last && last->document ? *last->document : u"");
    docName = fieldText(buffer);
    if (jobId == 0 && last) jobId = last->jobId;
    trace(u"<getCurrentPrintJobDocName - job %d %s\n", jobId, docName);
}

PrinterSelfScope::PrinterSelfScope() {
    if (getPlatformId() == platformWindows) return;
    spoolss = platform::current().spooler().loadSpoolss();
    if (!spoolss) {
        failureBox(u"LoadLibrary spoolss.dll", platform::mbServiceNotification);
        return;
    }
    if (!spoolss->hasRevertToPrinterSelf()) {
        failureBox(u"GetProcAddress RevertToPrinterSelf", platform::mbServiceNotification);
        spoolss.reset();
        return;
    }
    token = spoolss->revertToPrinterSelf();
}

PrinterSelfScope::~PrinterSelfScope() {
    if (spoolss && token) spoolss->impersonatePrinterClient(token);
}
