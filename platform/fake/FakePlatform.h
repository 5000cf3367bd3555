#pragma once

#include "platform/Platform.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

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
    LocalAlloc,
    InitializeSecurityDescriptor,
    SetSecurityDescriptorDacl,
    ConvertStringSecurityDescriptor,
    GetSecurityDescriptorSacl,
    SetSecurityDescriptorSacl,
    LookupAccountName,
    GetVersionEx,
    GetUserName,
    GetEnvironmentVariable,
    CoCreateGuid,
    KnownFolder,
    GetSystemDirectory,
    FormatMessage,
    LoadNetApi,
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

// The security a named object was created with, as far as the fake can tell.
struct FakeObjectSecurity {
    bool hadAttributes = false;
    std::uint32_t length = 0;
    bool nullDacl = false;
    std::string label; // the string form its system access list came from
    bool operator==(const FakeObjectSecurity&) const = default;
};

struct FakeMessageBox {
    std::u16string text, caption;
    std::uint32_t style = 0;
};

struct FakePrinter {
    PrinterInfo2 info;
    std::vector<JobInfo2> jobs;
    std::optional<std::uint32_t> countedJobs; // cJobs, when the count lags behind the queue
    std::vector<std::uint8_t> written;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> jobControls; // SetJobW's id and command
    std::optional<PrinterDefaults> lastDefaults;
};

// An operating system in memory for tests: registry, spooler, named objects, files,
// clock and reports. Any call listed in Call can be made to fail with a chosen error.
// Not thread-safe, except for the records of boxes and debug output.
class FakePlatform : public Platform,
                     private Registry,
                     private Spooler,
                     private Kernel,
                     private Processes,
                     private Security,
                     private System,
                     private Reporter,
                     private FileSystem {
public:
    FakePlatform();
    ~FakePlatform() override;

    Registry& registry() override { return *this; }
    Spooler& spooler() override { return *this; }
    Kernel& kernel() override { return *this; }
    Processes& processes() override { return *this; }
    Security& security() override { return *this; }
    System& system() override { return *this; }
    Reporter& reporter() override { return *this; }
    FileSystem& files() override { return *this; }

    // Failures: the next `times` calls (all of them with -1) fail with `code`.
    void fail(Call call, std::uint32_t code = error::accessDenied, int times = -1);
    void clearFailures();
    int callCount(Call call) const { return calls_[static_cast<int>(call)]; }

    // The system as reported.
    std::optional<OsVersion> version = OsVersion{6, 1, 7601, 2};
    std::optional<std::u16string> user = u"anna";
    std::map<std::u16string, std::u16string> env;
    std::uint32_t processId = 4242, threadId = 77;
    std::int32_t bias = 0;
    std::map<KnownFolder, std::u16string> folders;
    std::u16string systemDir = u"C:\\windows\\system32";
    std::u16string driverDir = u"C:\\windows\\system32\\spool\\drivers\\x64";
    bool hasRegOpenCurrentUser = true;
    bool netApiPresent = true;
    std::u16string domainController = u"\\\\DC1";
    bool spoolssHasRevert = true;
    int messageBoxResult = 1;
    std::map<std::u16string, Sid> accounts; // by account name, compared without case
    std::uint32_t processExitCode = 0;

    // The clock: sleeps advance it; hooks let a test change the world meanwhile.
    std::uint32_t ticks = 1000;
    std::vector<std::uint32_t> sleeps;
    std::function<void(std::uint32_t)> onSleep;
    std::vector<std::uint32_t> seeds;

    // Records.
    std::vector<FakeMessageBox> boxes() const;
    std::vector<std::string> debugLines() const; // narrow as given, wide as UTF-8
    std::vector<ProcessStart> started;
    std::vector<std::u16string> accountLookupSystems; // the system name of each look-up
    std::vector<std::u16string> openedMutexNames, openedEventNames, openedMappingNames;
    std::optional<FakeObjectSecurity> securityOf(const std::u16string& name) const;
    std::uintptr_t impersonatedWith = 0;
    // The access masks asked of the calls that take one (opening named objects, mapping
    // views, opening and creating keys), so that tests can hold them to the wire values.
    std::map<Call, std::set<std::uint32_t>> accessAsked;
    int foreverWaits = 0; // waits without limit on an event nobody signals

    // Printers and jobs.
    FakePrinter& addPrinter(const std::u16string& name, const std::u16string& driver,
                            const std::u16string& port);
    FakePrinter* printer(const std::u16string& name);
    // A handle to the printer as a caller would pass it, with a job of that document
    // started on it; the job's id is given back.
    std::uintptr_t callerHandle(const std::u16string& name, const std::u16string& document,
                                std::uint32_t& jobId);

    // Named objects: a hook runs when an event of that name is set.
    void onEventSet(const std::u16string& name, std::function<void()> hook);
    bool exists(const std::u16string& name) const;

    // Files.
    void writeFile(const std::u16string& path, const std::string& bytes);
    std::optional<std::string> fileText(const std::u16string& path) const;

    // Registry, for setting up and checking a test.
    std::optional<RegistryValue> registryValue(RegistryRoot root, const std::u16string& path,
                                               const std::u16string& name);
    void setRegistryValue(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                          const RegistryValue& value);

    struct RegistryNode;
    struct NamedObject;
    struct FileNode;

private:
    // Counts the call and applies a planned failure: true when it is to fail.
    bool failing(Call call);
    // The same for a call that asks for access rights, which are recorded.
    bool failing(Call call, std::uint32_t access) {
        accessAsked[call].insert(access);
        return failing(call);
    }
    friend class FakeKey;
    friend class FakeMappingHandle;
    friend class FakeEventHandle;
    friend class FakeMutexHandle;
    friend class FakePrinterHandle;
    friend class FakeFile;

    // Registry
    std::unique_ptr<RegistryKey> root(RegistryRoot root) override;
    bool hasOpenCurrentUser() override;
    std::uint32_t openCurrentUser(std::uint32_t access, std::unique_ptr<RegistryKey>& key) override;
    // Spooler
    bool enumPrinters(std::uint32_t flags, std::vector<PrinterInfo2>& out) override;
    std::unique_ptr<Printer> openPrinter(const std::u16string& name,
                                         const PrinterDefaults* defaults) override;
    std::optional<std::u16string> driverDirectory() override;
    std::unique_ptr<SpoolssModule> loadSpoolss() override;
    std::unique_ptr<Printer> borrowPrinter(std::uintptr_t handle) override;
    // Kernel
    std::unique_ptr<FileMapping> openFileMapping(std::uint32_t access,
                                                 const std::u16string& name) override;
    std::unique_ptr<FileMapping> createFileMapping(const SecurityAttributes* attributes,
                                                   std::size_t size,
                                                   const std::u16string& name) override;
    std::unique_ptr<Event> createEvent(const SecurityAttributes* attributes, bool manualReset,
                                       bool initialState, const std::u16string& name) override;
    std::unique_ptr<Event> openEvent(std::uint32_t access, const std::u16string& name) override;
    std::unique_ptr<Mutex> createMutex(const SecurityAttributes* attributes, bool initialOwner,
                                       const std::u16string& name) override;
    std::unique_ptr<Mutex> openMutex(std::uint32_t access, const std::u16string& name) override;
    // Processes
    std::unique_ptr<Process> createProcess(const ProcessStart& start) override;
    // Nothing else runs in the fake: the body runs on the caller's thread, to its end.
    std::unique_ptr<Thread> startThread(std::function<void()> body) override;
    // Security
    std::unique_ptr<SecurityDescriptor> allocDescriptor(std::size_t size) override;
    bool initializeDescriptor(SecurityDescriptor& descriptor) override;
    bool setNullDacl(SecurityDescriptor& descriptor) override;
    std::unique_ptr<SecurityDescriptor> descriptorFromString(const std::string& sddl) override;
    bool getSacl(SecurityDescriptor& descriptor, void*& acl) override;
    bool setSacl(SecurityDescriptor& descriptor, void* acl) override;
    std::optional<Sid> lookupAccountSid(const std::u16string& systemName,
                                        const std::u16string& account) override;
    // System
    std::optional<OsVersion> osVersion() override;
    std::optional<std::u16string> userName(std::size_t bufferChars) override;
    std::optional<std::u16string> environment(const std::u16string& name) override;
    std::uint32_t tickCount() override { return ticks; }
    void sleep(std::uint32_t milliseconds) override;
    std::uint32_t currentThreadId() override { return threadId; }
    std::uint32_t currentProcessId() override { return processId; }
    void seedRandom(std::uint32_t seed) override;
    int random() override;
    std::int32_t timeZoneBias() override { return bias; }
    std::optional<Guid> createGuid() override;
    std::optional<std::u16string> knownFolder(KnownFolder folder) override;
    std::optional<std::u16string> systemDirectory() override;
    std::uint32_t lastError() override { return lastError_; }
    void setLastError(std::uint32_t code) override { lastError_ = code; }
    std::optional<std::u16string> errorMessage(std::uint32_t code) override;
    std::unique_ptr<NetApi> loadNetApi() override;
    // Reporter
    int messageBox(const std::u16string& text, const std::u16string& caption,
                   std::uint32_t style) override;
    int messageBoxA(const std::string& text, const std::string& caption,
                    std::uint32_t style) override;
    void debugOutput(std::string_view text) override;
    void debugOutputW(const std::u16string& text) override;
    // FileSystem
    std::optional<std::uint32_t> attributes(const std::u16string& path) override;
    bool createDirectory(const std::u16string& path) override;
    std::unique_ptr<File> createFile(const std::u16string& path) override;
    std::optional<std::vector<std::uint8_t>> readFile(const std::u16string& path) override;
    std::vector<std::u16string> profileSection(const std::u16string& file,
                                               const std::u16string& section,
                                               std::size_t bufferChars) override;
    std::uint32_t profileInt(const std::u16string& file, const std::u16string& section,
                             const std::u16string& key, std::int32_t fallback) override;

    std::shared_ptr<NamedObject> findObject(const std::u16string& name) const;
    // kind is a NamedObject::Kind; both set lastError() as the kernel would.
    std::shared_ptr<NamedObject> openNamed(int kind, const std::u16string& name);
    std::shared_ptr<NamedObject> createNamed(int kind, const std::u16string& name,
                                             const SecurityAttributes* attributes, bool& fresh);
    void nameObject(const std::u16string& name, const std::shared_ptr<NamedObject>& object);
    std::vector<std::u16string> sectionLines(const std::u16string& file,
                                             const std::u16string& section,
                                             std::size_t bufferChars);

    struct Failure {
        std::uint32_t code = 0;
        int times = 0;
    };
    int calls_[static_cast<int>(Call::Count)] = {};
    std::map<Call, Failure> failures_;
    std::uint32_t lastError_ = 0;
    std::uint32_t randState_ = 1;
    std::uint32_t guidCounter_ = 0;
    std::uintptr_t nextToken_ = 0x100;
    std::uint32_t nextThreadId_ = 0x200;

    std::unique_ptr<RegistryNode> roots_[3];
    std::vector<std::pair<std::u16string, FakePrinter>> printers_;
    std::map<std::uintptr_t, std::u16string> callerHandles_;
    std::map<std::u16string, std::weak_ptr<NamedObject>> objects_;
    std::map<std::u16string, FakeObjectSecurity> security_;
    std::map<std::u16string, std::function<void()>> eventHooks_;
    std::map<std::u16string, std::shared_ptr<FileNode>> files_; // by folded path
    std::set<std::u16string> directories_;                      // folded paths

    mutable std::mutex recordLock_;
    std::vector<FakeMessageBox> boxes_;
    std::vector<std::string> debugLines_;
};

} // namespace platform
