#pragma once

// Printers of the product's driver in the test system: the fake's, or real ones added to
// the Wine prefix.

#include <string>

#ifdef _WIN32
#include "platform/win32/Windows.h"
#include <winspool.h>
#endif

namespace testing_support {

inline const std::u16string productDriver = u"Tamarisk Foliograph";

#ifdef _WIN32
// A text as the wide-character APIs take it; wchar_t is 16-bit here.
inline wchar_t* w(const std::u16string& s) {
    return const_cast<wchar_t*>(reinterpret_cast<const wchar_t*>(s.c_str()));
}

// Adds the driver once, then a printer on the given port; true when the printer can be
// opened afterwards (also when an earlier run left it there).
inline bool addSystemPrinter(const std::u16string& name, const std::u16string& driver,
                             const std::u16string& port) {
    std::u16string driverPath = u"wineps.drv", data = u"generic.ppd";
    DRIVER_INFO_3W di{};
    di.cVersion = 3;
    di.pName = w(driver);
    di.pDriverPath = w(driverPath);
    di.pDataFile = w(data);
    di.pConfigFile = w(driverPath);
    if (!AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&di)) &&
        GetLastError() != ERROR_PRINTER_DRIVER_ALREADY_INSTALLED)
        return false;
    std::u16string processor = u"WinPrint", datatype = u"RAW";
    PRINTER_INFO_2W pi{};
    pi.pPrinterName = w(name);
    pi.pPortName = w(port);
    pi.pDriverName = w(driver);
    pi.pPrintProcessor = w(processor);
    pi.pDatatype = w(datatype);
    HANDLE printer = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&pi));
    if (!printer && GetLastError() != ERROR_PRINTER_ALREADY_EXISTS) return false;
    if (printer) ClosePrinter(printer);
    HANDLE check = nullptr;
    if (!OpenPrinterW(w(name), &check, nullptr)) return false;
    ClosePrinter(check);
    return true;
}

// A job started on the printer the way the spooler's caller has it: an open handle with a
// document begun on it, printing to the given file.
inline std::uintptr_t startSystemJob(const std::u16string& printer, const std::u16string& document,
                                     const std::u16string& output, std::uint32_t& jobId) {
    HANDLE handle = nullptr;
    if (!OpenPrinterW(w(printer), &handle, nullptr)) return 0;
    std::u16string datatype = u"RAW";
    DOC_INFO_1W doc{w(document), w(output), w(datatype)};
    jobId = StartDocPrinterW(handle, 1, reinterpret_cast<BYTE*>(&doc));
    return reinterpret_cast<std::uintptr_t>(handle);
}

inline bool endSystemJob(std::uintptr_t printer) {
    auto handle = reinterpret_cast<HANDLE>(printer);
    bool ended = EndDocPrinter(handle);
    return ClosePrinter(handle) && ended;
}
#endif

} // namespace testing_support
