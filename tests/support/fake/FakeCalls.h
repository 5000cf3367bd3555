#pragma once

#include "platform/Errors.h"

#include <cstdint>
#include <map>
#include <set>

namespace platform {

// Every platform call the fake can be told to fail.
enum class Call {
    RegOpenCurrentUser,
    RegCreateKey,
    RegOpenKey,
    RegQueryValue,
    RegSetValue,
    RegEnumValue,
    RegQueryInfoKey,
    EnumPrinters,
    OpenPrinter,
    GetPrinter,
    GetJob,
    EnumJobs,
    SetJob,
    WritePrinter,
    GetPrinterDriverDirectory,
    LoadSpoolss,
    RevertToPrinterSelf,
    ImpersonatePrinterClient,
    OpenFileMapping,
    CreateFileMapping,
    MapViewOfFile,
    CreateEvent,
    OpenEvent,
    SetEvent,
    WaitForSingleObject,
    CreateMutex,
    OpenMutex,
    CreateProcess,
    GetExitCodeProcess,
    CreateThread,
    LookupAccountName,
    GetVersionEx,
    GetUserName,
    GetEnvironmentVariable,
    CoCreateGuid,
    KnownFolder,
    GetSystemDirectory,
    FormatMessage,
    LoadNetApi,
    LoadLibrary,
    WideCharToMultiByte,
    NetGetDcName,
    GetFileAttributes,
    CreateDirectory,
    CreateFile,
    WriteFile,
    ReadFile,
    GetPrivateProfileSection,
    GetPrivateProfileInt,
    Count
};

// What all the fakes of one system share: the plan of failures, the count of calls, the
// access rights asked and the last error.
class FakeCalls {
public:
    // Failures: after `skip` calls that succeed, the next `times` calls (all of them with -1)
    // fail with `code`.
    void fail(Call call, std::uint32_t code = error::accessDenied, int times = -1, int skip = 0);
    void clearFailures();
    int callCount(Call call) const { return calls_[static_cast<int>(call)]; }

    // Counts the call and applies a planned failure: true when it is to fail.
    bool failing(Call call);
    // The same for a call that asks for access rights, which are recorded.
    bool failing(Call call, std::uint32_t access) {
        accessAsked[call].insert(access);
        return failing(call);
    }

    // The access masks asked of the calls that take one (opening named objects, mapping
    // views, opening and creating keys), so that tests can hold them to the wire values.
    std::map<Call, std::set<std::uint32_t>> accessAsked;
    std::uint32_t lastError = 0;

private:
    struct Failure {
        std::uint32_t code = 0;
        int times = 0;
        int skip = 0;
    };
    int calls_[static_cast<int>(Call::Count)] = {};
    std::map<Call, Failure> failures_;
};

} // namespace platform
