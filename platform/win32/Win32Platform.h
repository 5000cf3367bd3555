#pragma once

#include "platform/Platform.h"

namespace platform::win32 {

// The real Windows API behind the platform interfaces.
class Win32Platform : public Platform,
                      private Registry,
                      private Spooler,
                      private Kernel,
                      private Processes,
                      private Security,
                      private System,
                      private Reporter,
                      private FileSystem {
public:
    Registry& registry() override { return *this; }
    Spooler& spooler() override { return *this; }
    Kernel& kernel() override { return *this; }
    Processes& processes() override { return *this; }
    Security& security() override { return *this; }
    System& system() override { return *this; }
    Reporter& reporter() override { return *this; }
    FileSystem& files() override { return *this; }

private:
    std::unique_ptr<RegistryKey> root(RegistryRoot root) override;
    bool hasOpenCurrentUser() override;
    std::uint32_t openCurrentUser(std::uint32_t access, std::unique_ptr<RegistryKey>& key) override;

    bool enumPrinters(std::uint32_t flags, std::vector<PrinterInfo2>& out) override;
    std::unique_ptr<Printer> openPrinter(const std::u16string& name,
                                         const PrinterDefaults* defaults) override;
    std::optional<std::u16string> driverDirectory() override;
    std::unique_ptr<SpoolssModule> loadSpoolss() override;
    std::unique_ptr<Printer> borrowPrinter(std::uintptr_t handle) override;

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

    std::unique_ptr<Process> createProcess(const ProcessStart& start) override;
    std::unique_ptr<Thread> startThread(std::function<void()> body) override;

    std::unique_ptr<SecurityDescriptor> allocDescriptor(std::size_t size) override;
    bool initializeDescriptor(SecurityDescriptor& descriptor) override;
    bool setNullDacl(SecurityDescriptor& descriptor) override;
    std::unique_ptr<SecurityDescriptor> descriptorFromString(const std::string& sddl) override;
    bool getSacl(SecurityDescriptor& descriptor, void*& acl) override;
    bool setSacl(SecurityDescriptor& descriptor, void* acl) override;
    std::optional<Sid> lookupAccountSid(const std::u16string& systemName,
                                        const std::u16string& account) override;

    std::optional<OsVersion> osVersion() override;
    std::optional<std::u16string> userName(std::size_t bufferChars) override;
    std::optional<std::u16string> environment(const std::u16string& name) override;
    std::uint32_t tickCount() override;
    void sleep(std::uint32_t milliseconds) override;
    std::uint32_t currentThreadId() override;
    std::uint32_t currentProcessId() override;
    void seedRandom(std::uint32_t seed) override;
    int random() override;
    std::int32_t timeZoneBias() override;
    std::optional<Guid> createGuid() override;
    std::optional<std::u16string> knownFolder(KnownFolder folder) override;
    std::optional<std::u16string> systemDirectory() override;
    std::uint32_t lastError() override;
    void setLastError(std::uint32_t code) override;
    std::optional<std::u16string> errorMessage(std::uint32_t code) override;
    std::unique_ptr<NetApi> loadNetApi() override;

    int messageBox(const std::u16string& text, const std::u16string& caption,
                   std::uint32_t style) override;
    int messageBoxA(const std::string& text, const std::string& caption,
                    std::uint32_t style) override;
    void debugOutput(std::string_view text) override;
    void debugOutputW(const std::u16string& text) override;

    std::optional<std::uint32_t> attributes(const std::u16string& path) override;
    bool createDirectory(const std::u16string& path) override;
    std::unique_ptr<File> createFile(const std::u16string& path) override;
    std::optional<std::vector<std::uint8_t>> readFile(const std::u16string& path) override;
    std::vector<std::u16string> profileSection(const std::u16string& file,
                                               const std::u16string& section,
                                               std::size_t bufferChars) override;
    std::uint32_t profileInt(const std::u16string& file, const std::u16string& section,
                             const std::u16string& key, std::int32_t fallback) override;
};

} // namespace platform::win32
