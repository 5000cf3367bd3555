#pragma once

#include "platform/Files.h"
#include "platform/Kernel.h"
#include "platform/Spooler.h"
#include "umpd/PrintJob.h"
#include "umpd/PrinterConfig.h"
#include "umpd/Vector.h"

#include <cstdint>
#include <memory>
#include <string>

class CitrixLauncherProxy;

// The job's output file. Open also when the system gave only an invalid handle: then every
// write fails.
class OutFile {
public:
    virtual ~OutFile() = default;
    bool isOpen() const { return open; }
    // Takes what the system gave; null stands for an invalid handle.
    void adopt(std::unique_ptr<platform::File> file);
    void close();
    bool write(const void* bytes, std::uint32_t length, std::uint32_t& written);

    std::unique_ptr<platform::File> file;
    bool open = false;
};

// The lock that serialises the jobs of every process on the machine.
class DriverMutex {
public:
    // Creates the mutex, not owned; a failure leaves it to be opened by name later.
    explicit DriverMutex(std::u16string name);
    // Waits for ever; false when no handle can be had, and the caller runs unlocked.
    bool take();
    // Releases, opening by name first when there is no handle.
    void giveUp();

    std::u16string name;
    std::unique_ptr<platform::Mutex> handle;
};

// Takes the lock for its lifetime, so that every way out gives it up.
class DriverLock {
public:
    explicit DriverLock(DriverMutex* mutex) : mutex_(mutex) {
        if (mutex_) mutex_->take();
    }
    ~DriverLock() {
        if (mutex_) mutex_->giveUp();
    }
    DriverLock(const DriverLock&) = delete;
    DriverLock& operator=(const DriverLock&) = delete;

private:
    DriverMutex* mutex_;
};

namespace jobState {
inline constexpr std::uint32_t ready = 1;
inline constexpr std::uint32_t ended = 2;
inline constexpr std::uint32_t aborted = 4;
inline constexpr std::uint32_t writeFailed = 8;
} // namespace jobState

// "DLEK" read as a little-endian 32-bit value.
inline constexpr std::uint32_t jobMagic = 0x4B454C44;

// One print job: its bytes to one file (or back to the spooler), and the launcher told of
// its start and end.
class UmDriver {
public:
    static constexpr std::size_t mutexNameChars = 52;
    static constexpr std::size_t filenameChars = 780;
    static constexpr std::size_t textChars = 260; // userName and docName

    UmDriver();
    virtual ~UmDriver();
    UmDriver(const UmDriver&) = delete;
    UmDriver& operator=(const UmDriver&) = delete;

    // One block of the job; false when it was not written whole.
    virtual bool write(const void* buffer, std::uint32_t length);
    // Closes the file and tells whoever listens. Always true.
    virtual bool endDoc();

    // A job by printer name (handle 0) or by the spooler's handle and job id.
    bool init(std::uintptr_t printerHandle, std::uint32_t jobId, const char16_t* printerName);
    void reset();
    bool good() const { return magic == jobMagic; }
    bool ready() const { return good() && (state & jobState::ready); }
    // Removes the completed jobs of the job's printer, or failing that the config's.
    void deleteCompletedJobs();

    PrinterConfig config;
    PrinterInfoCache printerInfo;
    std::uint32_t magic = 0;
    platform::Printer* jobPrinter = nullptr; // the caller's, or the config's; never closed here
    std::uint32_t jobId = 0;
    std::uint32_t state = 0;
    std::uint32_t sessionId = 1;
    Vector<std::uint32_t> jobIds;
    std::unique_ptr<DriverMutex> mutex;
    std::u16string mutexName;
    std::u16string filename;
    std::u16string userName;
    std::u16string docName;
    std::uint32_t bytesWritten = 0;
    std::uint8_t passthru = 0; // the setting's low byte, as stored
    OutFile outFile;
    std::uint32_t doPrint = 0; // nothing reads DoPrint into it, so it stays 0

protected:
    // The caller's handle as the platform sees it; borrowed, never closed.
    void borrowCallerPrinter(std::uintptr_t handle);
    void addJobId(std::uint32_t id);
    // The steps both inits end with: the override file, the session, the settings.
    void loadJobSettings();
    // Passthrough: the job goes back to the spooler, through the caller's handle if any.
    bool startPassthrough();

    std::unique_ptr<platform::Printer> callerPrinter_;

private:
    bool writeToFile(const void* buffer, std::uint32_t length);
    bool startOutput();
    bool ensureLauncher(CitrixLauncherProxy& proxy);
    bool pickFreeName();
    void createOutputFile();
    void tellLauncherOfEnd(bool finishEvent);
    void clearJob();
};

// A job set up from the spooler's handle, job id and document name.
class UmDriver2k : public UmDriver {
public:
    ~UmDriver2k() override;
    bool init(std::uintptr_t printerHandle, std::uint32_t jobId, const char16_t* docName);
};

// A new job that init set up and left ready, as the caller's opaque pointer; null otherwise.
template <typename Job, typename... Args> void* startJob(Args... args) {
    auto job = std::make_unique<Job>();
    if (!job->init(args...) || job->state != jobState::ready) return nullptr;
    return static_cast<UmDriver*>(job.release());
}

// Tells the launcher that a printer is going away; needs no job.
void printerCleanup(const char16_t* printerName);
