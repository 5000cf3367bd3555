#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

using OptionalText = std::optional<std::u16string>; // a text that may be a null pointer

// The level-2 printer record.
struct PrinterInfo2 {
    OptionalText serverName, printerName, shareName, portName, driverName, comment, location,
        sepFile, printProcessor, datatype, parameters;
    std::uint32_t attributes = 0, priority = 0, defaultPriority = 0, startTime = 0, untilTime = 0,
                  status = 0, cJobs = 0, averagePpm = 0;
};

// The level-2 job record.
struct JobInfo2 {
    std::uint32_t jobId = 0;
    OptionalText printerName, machineName, userName, document, notifyName, datatype, printProcessor,
        parameters, driverName, statusText;
    std::uint32_t status = 0, priority = 0, position = 0, startTime = 0, untilTime = 0,
                  totalPages = 0, size = 0, time = 0, pagesPrinted = 0;
};

inline constexpr std::uint32_t printerEnumLocal = 2;
inline constexpr std::uint32_t printerEnumConnections = 4;
inline constexpr std::uint32_t printerAccessUse = 8;

struct PrinterDefaults {
    OptionalText datatype;
    std::vector<std::uint8_t> devMode; // a DEVMODEW as bytes; empty for none
    std::uint32_t desiredAccess = 0;
};

class Printer {
public:
    virtual ~Printer() = default;
    // Each returns false on failure; lastError() tells why.
    virtual bool getPrinter2(PrinterInfo2& out) = 0;
    virtual bool getJob(std::uint32_t jobId, JobInfo2& out) = 0;
    // EnumJobsW without a buffer: the bytes that up to count jobs from firstJob need. False
    // when the call fails for any other reason than the missing buffer.
    virtual bool enumJobsSize(std::uint32_t firstJob, std::uint32_t count,
                              std::uint32_t& needed) = 0;
    // Up to count jobs from firstJob, in queue order, through a buffer of bufferSize bytes;
    // false when they do not fit (lastError() 122) or the call fails.
    virtual bool enumJobs(std::uint32_t firstJob, std::uint32_t count, std::uint32_t bufferSize,
                          std::vector<JobInfo2>& out) = 0;
    virtual bool setJob(std::uint32_t jobId, std::uint32_t command) = 0;
    virtual bool writePrinter(const void* data, std::uint32_t size, std::uint32_t& written) = 0;
};

// The spooler's "spoolss.dll" with its two identity functions.
class SpoolssModule {
public:
    virtual ~SpoolssModule() = default;
    virtual bool hasRevertToPrinterSelf() = 0;
    virtual std::uintptr_t revertToPrinterSelf() = 0;
    // False when the function is missing or fails.
    virtual bool impersonatePrinterClient(std::uintptr_t token) = 0;
};

class Spooler {
public:
    virtual ~Spooler() = default;
    virtual bool enumPrinters(std::uint32_t flags, std::vector<PrinterInfo2>& out) = 0;
    virtual std::unique_ptr<Printer> openPrinter(const std::u16string& name,
                                                 const PrinterDefaults* defaults) = 0;
    // GetPrinterDriverDirectoryW of the local machine and environment, without a trailing "\".
    virtual std::optional<std::u16string> driverDirectory() = 0;
    virtual std::unique_ptr<SpoolssModule> loadSpoolss() = 0;
    // A printer handle the caller owns (the job's own): used, never closed.
    virtual std::unique_ptr<Printer> borrowPrinter(std::uintptr_t handle) = 0;
};

} // namespace platform
