#pragma once

#include "platform/Spooler.h"
#include "support/fake/FakeCalls.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

struct FakePrinter {
    PrinterInfo2 info;
    std::vector<JobInfo2> jobs;
    std::optional<std::uint32_t> countedJobs; // cJobs, when the count lags behind the queue
    std::vector<std::uint8_t> written;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> jobControls; // SetJobW's id and command
    std::optional<PrinterDefaults> lastDefaults;
    // Each EnumJobsW as asked: the count of jobs and the buffer's size (0 for the size query).
    std::vector<std::pair<std::uint32_t, std::uint32_t>> jobEnumerations;
    std::function<void()> afterJobsSized; // the queue may change between the two calls
};

// The bytes a level-2 job record takes in the spooler's buffer: the 64-bit record and its texts.
std::uint32_t jobRecordBytes(const JobInfo2& job);

// Printers and their jobs in memory, and the spooler's identity functions.
class FakeSpooler : public Spooler {
public:
    explicit FakeSpooler(FakeCalls& calls) : calls_(calls) {}

    FakePrinter& addPrinter(const std::u16string& name, const std::u16string& driver,
                            const std::u16string& port);
    FakePrinter* printer(const std::u16string& name);
    // A handle to the printer as a caller would pass it, with a job of that document
    // started on it; the job's id is given back.
    std::uintptr_t callerHandle(const std::u16string& name, const std::u16string& document,
                                std::uint32_t& jobId);

    std::u16string driverDir = u"C:\\windows\\system32\\spool\\drivers\\x64";
    bool spoolssHasRevert = true;
    std::uintptr_t impersonatedWith = 0;

    bool enumPrinters(std::uint32_t flags, std::vector<PrinterInfo2>& out) override;
    std::unique_ptr<Printer> openPrinter(const std::u16string& name,
                                         const PrinterDefaults* defaults) override;
    std::optional<std::u16string> driverDirectory() override;
    std::unique_ptr<SpoolssModule> loadSpoolss() override;
    std::unique_ptr<Printer> borrowPrinter(std::uintptr_t handle) override;

private:
    friend class FakePrinterHandle;
    friend class FakeSpoolss;

    FakeCalls& calls_;
    std::vector<std::pair<std::u16string, FakePrinter>> printers_;
    std::map<std::uintptr_t, std::u16string> callerHandles_;
    std::uintptr_t nextToken_ = 0x100;
};

} // namespace platform
