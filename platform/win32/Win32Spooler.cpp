#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

#include <winspool.h>

namespace platform::win32 {

namespace {
OptionalText text(const wchar_t* p) {
    if (!p) return std::nullopt;
    return fromWide(p);
}

PrinterInfo2 convert(const PRINTER_INFO_2W& in) {
    PrinterInfo2 out;
    out.serverName = text(in.pServerName);
    out.printerName = text(in.pPrinterName);
    out.shareName = text(in.pShareName);
    out.portName = text(in.pPortName);
    out.driverName = text(in.pDriverName);
    out.comment = text(in.pComment);
    out.location = text(in.pLocation);
    out.sepFile = text(in.pSepFile);
    out.printProcessor = text(in.pPrintProcessor);
    out.datatype = text(in.pDatatype);
    out.parameters = text(in.pParameters);
    out.attributes = in.Attributes;
    out.priority = in.Priority;
    out.defaultPriority = in.DefaultPriority;
    out.startTime = in.StartTime;
    out.untilTime = in.UntilTime;
    out.status = in.Status;
    out.cJobs = in.cJobs;
    out.averagePpm = in.AveragePPM;
    return out;
}

JobInfo2 convert(const JOB_INFO_2W& in) {
    JobInfo2 out;
    out.jobId = in.JobId;
    out.printerName = text(in.pPrinterName);
    out.machineName = text(in.pMachineName);
    out.userName = text(in.pUserName);
    out.document = text(in.pDocument);
    out.notifyName = text(in.pNotifyName);
    out.datatype = text(in.pDatatype);
    out.printProcessor = text(in.pPrintProcessor);
    out.parameters = text(in.pParameters);
    out.driverName = text(in.pDriverName);
    out.statusText = text(in.pStatus);
    out.status = in.Status;
    out.priority = in.Priority;
    out.position = in.Position;
    out.startTime = in.StartTime;
    out.untilTime = in.UntilTime;
    out.totalPages = in.TotalPages;
    out.size = in.Size;
    out.time = in.Time;
    out.pagesPrinted = in.PagesPrinted;
    return out;
}

// The two-call pattern of the spooler: ask for the size, then fetch.
template <typename Fetch> bool fetch(std::vector<BYTE>& buffer, Fetch call) {
    DWORD needed = 0;
    if (call(nullptr, 0, &needed)) {
        buffer.clear();
        return true;
    }
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed == 0) return false;
    buffer.assign(needed, 0);
    return call(buffer.data(), needed, &needed) != FALSE;
}

// One record of the Native level-2 type; call(buffer, size, needed).
template <typename Native, typename Out, typename Call> bool fetchOne(Out& out, Call call) {
    std::vector<BYTE> buffer;
    if (!fetch(buffer, call) || buffer.empty()) return false;
    out = convert(*reinterpret_cast<const Native*>(buffer.data()));
    return true;
}

// An array of records; call(buffer, size, needed, returned).
template <typename Native, typename Out, typename Call>
bool fetchAll(std::vector<Out>& out, Call call) {
    std::vector<BYTE> buffer;
    DWORD returned = 0;
    if (!fetch(buffer, [&](BYTE* p, DWORD size, DWORD* needed) {
            return call(p, size, needed, &returned);
        }))
        return false;
    out.clear();
    const auto* records = reinterpret_cast<const Native*>(buffer.data());
    for (DWORD i = 0; i < returned && !buffer.empty(); ++i)
        out.push_back(convert(records[i]));
    return true;
}

class Win32Printer : public Printer {
public:
    Win32Printer(HANDLE printer, bool owned) : printer_(printer), owned_(owned) {}
    ~Win32Printer() override {
        if (owned_) ::ClosePrinter(printer_);
    }

    bool getPrinter2(PrinterInfo2& out) override {
        return fetchOne<PRINTER_INFO_2W>(out, [&](BYTE* p, DWORD size, DWORD* needed) {
            return ::GetPrinterW(printer_, 2, p, size, needed);
        });
    }

    bool getJob(std::uint32_t jobId, JobInfo2& out) override {
        return fetchOne<JOB_INFO_2W>(out, [&](BYTE* p, DWORD size, DWORD* needed) {
            return ::GetJobW(printer_, jobId, 2, p, size, needed);
        });
    }

    bool enumJobsSize(std::uint32_t firstJob, std::uint32_t count, std::uint32_t& needed) override {
        DWORD size = 0, returned = 0;
        ::SetLastError(0); // a failure that sets nothing must not pass for a short buffer
        BOOL ok = ::EnumJobsW(printer_, firstJob, count, 2, nullptr, 0, &size, &returned);
        needed = size;
        return ok || ::GetLastError() == ERROR_INSUFFICIENT_BUFFER;
    }

    bool enumJobs(std::uint32_t firstJob, std::uint32_t count, std::uint32_t bufferSize,
                  std::vector<JobInfo2>& out) override {
        out.clear();
        std::vector<BYTE> buffer(bufferSize, 0);
        DWORD needed = 0, returned = 0;
        if (!::EnumJobsW(printer_, firstJob, count, 2, buffer.empty() ? nullptr : buffer.data(),
                         bufferSize, &needed, &returned))
            return false;
        const auto* records = reinterpret_cast<const JOB_INFO_2W*>(buffer.data());
        for (DWORD i = 0; i < returned && (i + 1) * sizeof(JOB_INFO_2W) <= buffer.size(); ++i)
            out.push_back(convert(records[i]));
        return true;
    }

    bool setJob(std::uint32_t jobId, std::uint32_t command) override {
        return ::SetJobW(printer_, jobId, 0, nullptr, command) != FALSE;
    }

    bool writePrinter(const void* data, std::uint32_t size, std::uint32_t& written) override {
        DWORD n = 0;
        BOOL ok = ::WritePrinter(printer_, const_cast<void*>(data), size, &n);
        written = n;
        return ok != FALSE;
    }

private:
    HANDLE printer_;
    bool owned_;
};

using RevertFn = HANDLE(WINAPI*)();
using ImpersonateFn = BOOL(WINAPI*)(HANDLE);

class Win32Spoolss : public SpoolssModule {
public:
    explicit Win32Spoolss(HMODULE module) : module_(module) {}
    bool hasRevertToPrinterSelf() override { return revert() != nullptr; }
    std::uintptr_t revertToPrinterSelf() override {
        auto fn = revert();
        return fn ? reinterpret_cast<std::uintptr_t>(fn()) : 0;
    }
    bool impersonatePrinterClient(std::uintptr_t token) override {
        auto fn = reinterpret_cast<ImpersonateFn>(
            reinterpret_cast<void*>(::GetProcAddress(module_.get(), "ImpersonatePrinterClient")));
        return fn && fn(reinterpret_cast<HANDLE>(token));
    }

private:
    RevertFn revert() {
        return reinterpret_cast<RevertFn>(
            reinterpret_cast<void*>(::GetProcAddress(module_.get(), "RevertToPrinterSelf")));
    }
    ScopedModule module_;
};

class Win32Spooler : public Spooler {
public:
    bool enumPrinters(std::uint32_t flags, std::vector<PrinterInfo2>& out) override {
        return fetchAll<PRINTER_INFO_2W>(out, [&](BYTE* p, DWORD size, DWORD* needed, DWORD* got) {
            return ::EnumPrintersW(flags, nullptr, 2, p, size, needed, got);
        });
    }

    std::unique_ptr<Printer> openPrinter(const std::u16string& name,
                                         const PrinterDefaults* defaults) override {
        PRINTER_DEFAULTSW d{};
        std::u16string datatype;
        std::vector<std::uint8_t> devMode;
        if (defaults) {
            if (defaults->datatype) {
                datatype = *defaults->datatype;
                d.pDatatype = const_cast<wchar_t*>(wide(datatype));
            }
            devMode = defaults->devMode;
            if (!devMode.empty()) d.pDevMode = reinterpret_cast<DEVMODEW*>(devMode.data());
            d.DesiredAccess = defaults->desiredAccess;
        }
        HANDLE printer = nullptr;
        std::u16string copy = name;
        if (!::OpenPrinterW(const_cast<wchar_t*>(wide(copy)), &printer, defaults ? &d : nullptr))
            return nullptr;
        return std::make_unique<Win32Printer>(printer, true);
    }

    std::unique_ptr<Printer> borrowPrinter(std::uintptr_t handle) override {
        return std::make_unique<Win32Printer>(reinterpret_cast<HANDLE>(handle), false);
    }

    std::optional<std::u16string> driverDirectory() override {
        DWORD needed = 0;
        ::GetPrinterDriverDirectoryW(nullptr, nullptr, 1, nullptr, 0, &needed);
        if (needed == 0) return std::nullopt;
        std::wstring buffer(needed / sizeof(wchar_t) + 10, L'\0');
        if (!::GetPrinterDriverDirectoryW(
                nullptr, nullptr, 1, reinterpret_cast<BYTE*>(buffer.data()),
                static_cast<DWORD>(buffer.size() * sizeof(wchar_t)), &needed))
            return std::nullopt;
        return fromWide(buffer.c_str());
    }

    std::unique_ptr<SpoolssModule> loadSpoolss() override {
        HMODULE module = ::LoadLibraryW(L"spoolss.dll");
        if (!module) return nullptr;
        return std::make_unique<Win32Spoolss>(module);
    }
};
} // namespace

Spooler& Win32Platform::spooler() {
    static Win32Spooler instance;
    return instance;
}

} // namespace platform::win32
