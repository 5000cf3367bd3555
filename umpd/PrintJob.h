#pragma once

#include "platform/Spooler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class PrinterConfig;

// A printer's level-2 record, fetched on demand.
class PrinterInfoCache {
public:
    explicit PrinterInfoCache(platform::Printer* printer = nullptr) : printer(printer) {}
    // The record, or null without a handle or when the spooler fails.
    const platform::PrinterInfo2* fetch();

    platform::Printer* printer; // borrowed
    std::unique_ptr<platform::PrinterInfo2> info;
};

namespace PrintJob {
// The printer's jobs in queue order, or nullopt when there are none or the spooler fails.
std::optional<std::vector<platform::JobInfo2>> getAllJobs(platform::Printer& printer,
                                                          std::uint32_t& count);
// Removes the printer's completed jobs: cancelled on platform id 1, deleted elsewhere.
// Nothing in the library calls it.
void deleteCompletedJobs(platform::Printer& printer);
} // namespace PrintJob

// The document name of the job last in the printer's queue, and its id when jobId is 0.
// docName is left alone when the printer or its jobs cannot be had.
void getCurrentPrintJobDocName(PrinterConfig& config, std::u16string& docName,
                               std::uint32_t& jobId);

// Steps out of the client's identity into the spooler's for its lifetime.
class PrinterSelfScope {
public:
    PrinterSelfScope();
    ~PrinterSelfScope();
    PrinterSelfScope(const PrinterSelfScope&) = delete;
    PrinterSelfScope& operator=(const PrinterSelfScope&) = delete;

    std::unique_ptr<platform::SpoolssModule> spoolss;
    std::uintptr_t token = 0;
};
