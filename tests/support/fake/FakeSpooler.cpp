#include "support/fake/FakeSpooler.h"

#include "platform/WideText.h"

namespace platform {

namespace {
// The record as the spooler reports it, with the job count it keeps.
PrinterInfo2 reported(const FakePrinter& p) {
    auto info = p.info;
    info.cJobs = p.countedJobs.value_or(static_cast<std::uint32_t>(p.jobs.size()));
    return info;
}
} // namespace

std::uint32_t jobRecordBytes(const JobInfo2& job) {
    std::uint32_t bytes = 160; // sizeof(JOB_INFO_2W) on x64
    for (const auto* text :
         {&job.printerName, &job.machineName, &job.userName, &job.document, &job.notifyName,
          &job.datatype, &job.printProcessor, &job.parameters, &job.driverName, &job.statusText})
        if (*text) bytes += static_cast<std::uint32_t>((*text)->size() + 1) * 2;
    return bytes;
}

class FakePrinterHandle : public Printer {
public:
    FakePrinterHandle(FakeSpooler& spooler, std::u16string name)
        : spooler_(spooler), calls_(spooler.calls_), name_(std::move(name)) {}

    bool getPrinter2(PrinterInfo2& out) override {
        if (calls_.failing(Call::GetPrinter)) return false;
        auto* p = printer();
        if (!p) return false;
        out = reported(*p);
        return true;
    }

    bool getJob(std::uint32_t jobId, JobInfo2& out) override {
        if (calls_.failing(Call::GetJob)) return false;
        if (auto* p = printer()) {
            for (const auto& job : p->jobs) {
                if (job.jobId == jobId) {
                    out = job;
                    return true;
                }
            }
        }
        calls_.lastError = error::invalidParameter;
        return false;
    }

    bool enumJobsSize(std::uint32_t firstJob, std::uint32_t count, std::uint32_t& needed) override {
        needed = 0;
        if (calls_.failing(Call::EnumJobs)) return false;
        auto* p = printer();
        if (!p) return false;
        p->jobEnumerations.emplace_back(count, 0);
        needed = bytesOf(*p, firstJob, count);
        if (p->afterJobsSized) p->afterJobsSized();
        return true;
    }

    bool enumJobs(std::uint32_t firstJob, std::uint32_t count, std::uint32_t bufferSize,
                  std::vector<JobInfo2>& out) override {
        if (calls_.failing(Call::EnumJobs)) return false;
        auto* p = printer();
        if (!p) return false;
        p->jobEnumerations.emplace_back(count, bufferSize);
        if (bytesOf(*p, firstJob, count) > bufferSize) {
            calls_.lastError = error::insufficientBuffer;
            return false;
        }
        out.clear();
        for (std::size_t i = firstJob; i < p->jobs.size() && out.size() < count; ++i)
            out.push_back(p->jobs[i]);
        return true;
    }

    bool setJob(std::uint32_t jobId, std::uint32_t command) override {
        if (calls_.failing(Call::SetJob)) return false;
        auto* p = printer();
        if (!p) return false;
        p->jobControls.emplace_back(jobId, command);
        for (auto it = p->jobs.begin(); it != p->jobs.end(); ++it) {
            if (it->jobId != jobId) continue;
            if (command == 3 || command == 5) p->jobs.erase(it); // cancel, delete
            return true;
        }
        calls_.lastError = error::invalidParameter;
        return false;
    }

    bool writePrinter(const void* data, std::uint32_t size, std::uint32_t& written) override {
        written = 0;
        if (calls_.failing(Call::WritePrinter)) return false;
        auto* p = printer();
        if (!p) return false;
        auto* bytes = static_cast<const std::uint8_t*>(data);
        p->written.insert(p->written.end(), bytes, bytes + size);
        written = size;
        return true;
    }

private:
    static std::uint32_t bytesOf(const FakePrinter& p, std::uint32_t firstJob,
                                 std::uint32_t count) {
        std::uint32_t bytes = 0;
        for (std::size_t i = firstJob; i < p.jobs.size() && i - firstJob < count; ++i)
            bytes += jobRecordBytes(p.jobs[i]);
        return bytes;
    }
    FakePrinter* printer() {
        auto* p = spooler_.printer(name_);
        if (!p) calls_.lastError = error::invalidHandle;
        return p;
    }
    FakeSpooler& spooler_;
    FakeCalls& calls_;
    std::u16string name_;
};

FakePrinter& FakeSpooler::addPrinter(const std::u16string& name, const std::u16string& driver,
                                     const std::u16string& port) {
    FakePrinter p;
    p.info.printerName = name;
    p.info.driverName = driver;
    p.info.portName = port;
    p.info.datatype = u"RAW";
    p.info.printProcessor = u"winprint";
    printers_.emplace_back(name, std::move(p));
    return printers_.back().second;
}

FakePrinter* FakeSpooler::printer(const std::u16string& name) {
    for (auto& [key, p] : printers_)
        if (equalsIgnoreCase(key, name)) return &p;
    return nullptr;
}

bool FakeSpooler::enumPrinters(std::uint32_t, std::vector<PrinterInfo2>& out) {
    if (calls_.failing(Call::EnumPrinters)) return false;
    out.clear();
    for (const auto& [name, p] : printers_)
        out.push_back(reported(p));
    return true;
}

std::unique_ptr<Printer> FakeSpooler::openPrinter(const std::u16string& name,
                                                  const PrinterDefaults* defaults) {
    if (calls_.failing(Call::OpenPrinter)) return nullptr;
    auto* p = printer(name);
    if (!p) {
        calls_.lastError = error::invalidPrinterName;
        return nullptr;
    }
    if (defaults) p->lastDefaults = *defaults;
    return std::make_unique<FakePrinterHandle>(*this, name);
}

std::uintptr_t FakeSpooler::callerHandle(const std::u16string& name, const std::u16string& document,
                                         std::uint32_t& jobId) {
    auto* p = printer(name);
    if (!p) return 0;
    JobInfo2 job;
    job.jobId = jobId = static_cast<std::uint32_t>(100 + p->jobs.size());
    job.document = document;
    job.printerName = name;
    job.position = static_cast<std::uint32_t>(p->jobs.size() + 1);
    p->jobs.push_back(job);
    auto handle = static_cast<std::uintptr_t>(0x5000 + callerHandles_.size() * 8);
    callerHandles_[handle] = name;
    return handle;
}

std::unique_ptr<Printer> FakeSpooler::borrowPrinter(std::uintptr_t handle) {
    auto it = callerHandles_.find(handle);
    // An unknown handle gives a printer whose every call fails, as the spooler's would.
    return std::make_unique<FakePrinterHandle>(*this,
                                               it == callerHandles_.end() ? u"" : it->second);
}

std::optional<std::u16string> FakeSpooler::driverDirectory() {
    if (calls_.failing(Call::GetPrinterDriverDirectory)) return std::nullopt;
    return driverDir;
}

class FakeSpoolss : public SpoolssModule {
public:
    explicit FakeSpoolss(FakeSpooler& spooler) : spooler_(spooler), calls_(spooler.calls_) {}
    bool hasRevertToPrinterSelf() override {
        if (!spooler_.spoolssHasRevert) calls_.lastError = error::procNotFound;
        return spooler_.spoolssHasRevert;
    }
    std::uintptr_t revertToPrinterSelf() override {
        return calls_.failing(Call::RevertToPrinterSelf) ? 0 : spooler_.nextToken_++;
    }
    bool impersonatePrinterClient(std::uintptr_t token) override {
        if (calls_.failing(Call::ImpersonatePrinterClient)) return false;
        spooler_.impersonatedWith = token;
        return true;
    }

private:
    FakeSpooler& spooler_;
    FakeCalls& calls_;
};

std::unique_ptr<SpoolssModule> FakeSpooler::loadSpoolss() {
    if (calls_.failing(Call::LoadSpoolss)) return nullptr;
    return std::make_unique<FakeSpoolss>(*this);
}

} // namespace platform
