#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

#include <sddl.h>

namespace platform::win32 {

namespace {
// The record the system wants; nLength is passed through as the caller set it.
struct NativeAttributes {
    explicit NativeAttributes(const SecurityAttributes* a) {
        if (!a) return;
        record.nLength = a->length;
        record.lpSecurityDescriptor = a->descriptor;
        record.bInheritHandle = a->inheritHandle;
        pointer = &record;
    }
    SECURITY_ATTRIBUTES record{};
    SECURITY_ATTRIBUTES* pointer = nullptr;
};

WaitResult waitOn(HANDLE h, std::uint32_t milliseconds) {
    switch (::WaitForSingleObject(h, milliseconds)) {
    case WAIT_OBJECT_0:
        return WaitResult::Signalled;
    case WAIT_ABANDONED:
        return WaitResult::Abandoned;
    case WAIT_TIMEOUT:
        return WaitResult::Timeout;
    default:
        return WaitResult::Failed;
    }
}

class Win32View : public MappedView {
public:
    explicit Win32View(void* view) : view_(view) {}
    std::uint8_t* data() override { return static_cast<std::uint8_t*>(view_.get()); }

private:
    ScopedView view_;
};

class Win32Mapping : public FileMapping {
public:
    explicit Win32Mapping(HANDLE h) : handle_(h) {}
    std::unique_ptr<MappedView> mapView(std::uint32_t access) override {
        void* view = ::MapViewOfFile(handle_.get(), access, 0, 0, 0);
        if (!view) return nullptr;
        return std::make_unique<Win32View>(view);
    }

private:
    ScopedKernelHandle handle_;
};

class Win32Event : public Event {
public:
    explicit Win32Event(HANDLE h) : handle_(h) {}
    bool set() override { return ::SetEvent(handle_.get()) != FALSE; }
    WaitResult wait(std::uint32_t milliseconds) override {
        return waitOn(handle_.get(), milliseconds);
    }

private:
    ScopedKernelHandle handle_;
};

class Win32Mutex : public Mutex {
public:
    explicit Win32Mutex(HANDLE h) : handle_(h) {}
    bool release() override { return ::ReleaseMutex(handle_.get()) != FALSE; }
    WaitResult wait(std::uint32_t milliseconds) override {
        return waitOn(handle_.get(), milliseconds);
    }

private:
    ScopedKernelHandle handle_;
};

class Win32Process : public Process {
public:
    Win32Process(HANDLE process, HANDLE thread) : process_(process), thread_(thread) {}
    bool wait(std::uint32_t milliseconds) override {
        return ::WaitForSingleObject(process_.get(), milliseconds) == WAIT_OBJECT_0;
    }
    std::optional<std::uint32_t> exitCode() override {
        DWORD code = 0;
        if (!::GetExitCodeProcess(process_.get(), &code)) return std::nullopt;
        return code;
    }

private:
    ScopedKernelHandle process_, thread_;
};

class Win32Thread : public Thread {
public:
    Win32Thread(HANDLE thread, DWORD id) : thread_(thread), id_(id) {}
    WaitResult wait(std::uint32_t milliseconds) override {
        return waitOn(thread_.get(), milliseconds);
    }
    std::uint32_t id() override { return id_; }

private:
    ScopedKernelHandle thread_;
    DWORD id_;
};

DWORD WINAPI runThreadBody(void* parameter) {
    std::unique_ptr<std::function<void()>> body(static_cast<std::function<void()>*>(parameter));
    (*body)();
    return 0;
}

class Win32Descriptor : public SecurityDescriptor {
public:
    explicit Win32Descriptor(HLOCAL block) : block_(block) {}
    void* get() override { return block_.get(); }

private:
    ScopedLocal block_;
};

template <typename T> std::unique_ptr<T> wrap(HANDLE h) {
    return h ? std::make_unique<T>(h) : nullptr;
}
} // namespace

std::unique_ptr<FileMapping> Win32Platform::openFileMapping(std::uint32_t access,
                                                            const std::u16string& name) {
    return wrap<Win32Mapping>(::OpenFileMappingW(access, FALSE, wide(name)));
}

std::unique_ptr<FileMapping> Win32Platform::createFileMapping(const SecurityAttributes* attributes,
                                                              std::size_t size,
                                                              const std::u16string& name) {
    NativeAttributes sa(attributes);
    auto wideSize = static_cast<unsigned long long>(size);
    return wrap<Win32Mapping>(::CreateFileMappingW(
        INVALID_HANDLE_VALUE, sa.pointer, PAGE_READWRITE, static_cast<DWORD>(wideSize >> 32),
        static_cast<DWORD>(wideSize), name.empty() ? nullptr : wide(name)));
}

std::unique_ptr<Event> Win32Platform::createEvent(const SecurityAttributes* attributes,
                                                  bool manualReset, bool initialState,
                                                  const std::u16string& name) {
    NativeAttributes sa(attributes);
    return wrap<Win32Event>(
        ::CreateEventW(sa.pointer, manualReset, initialState, name.empty() ? nullptr : wide(name)));
}

std::unique_ptr<Event> Win32Platform::openEvent(std::uint32_t access, const std::u16string& name) {
    return wrap<Win32Event>(::OpenEventW(access, FALSE, wide(name)));
}

std::unique_ptr<Mutex> Win32Platform::createMutex(const SecurityAttributes* attributes,
                                                  bool initialOwner, const std::u16string& name) {
    NativeAttributes sa(attributes);
    return wrap<Win32Mutex>(
        ::CreateMutexW(sa.pointer, initialOwner, name.empty() ? nullptr : wide(name)));
}

std::unique_ptr<Mutex> Win32Platform::openMutex(std::uint32_t access, const std::u16string& name) {
    return wrap<Win32Mutex>(::OpenMutexW(access, FALSE, wide(name)));
}

std::unique_ptr<Process> Win32Platform::createProcess(const ProcessStart& start) {
    STARTUPINFOW si{};
    si.cb = sizeof si; // 104 on this target
    if (start.showWindow) {
        si.dwFlags = STARTF_USESHOWWINDOW;
        si.wShowWindow = *start.showWindow;
    }
    PROCESS_INFORMATION pi{};
    std::u16string commandLine = start.commandLine; // CreateProcessW may write into it
    if (!::CreateProcessW(nullptr, const_cast<wchar_t*>(wide(commandLine)), nullptr, nullptr, FALSE,
                          start.creationFlags, nullptr,
                          start.workingDirectory ? wide(*start.workingDirectory) : nullptr, &si,
                          &pi))
        return nullptr;
    return std::make_unique<Win32Process>(pi.hProcess, pi.hThread);
}

std::unique_ptr<Thread> Win32Platform::startThread(std::function<void()> body) {
    auto owned = std::make_unique<std::function<void()>>(std::move(body));
    DWORD id = 0;
    HANDLE thread = ::CreateThread(nullptr, 0, runThreadBody, owned.get(), 0, &id);
    if (!thread) return nullptr;
    owned.release(); // the thread frees it
    return std::make_unique<Win32Thread>(thread, id);
}

std::unique_ptr<SecurityDescriptor> Win32Platform::allocDescriptor(std::size_t size) {
    HLOCAL block = ::LocalAlloc(LPTR, size);
    if (!block) return nullptr;
    return std::make_unique<Win32Descriptor>(block);
}

bool Win32Platform::initializeDescriptor(SecurityDescriptor& descriptor) {
    return ::InitializeSecurityDescriptor(descriptor.get(), SECURITY_DESCRIPTOR_REVISION) != FALSE;
}

bool Win32Platform::setNullDacl(SecurityDescriptor& descriptor) {
    return ::SetSecurityDescriptorDacl(descriptor.get(), TRUE, nullptr, FALSE) != FALSE;
}

std::unique_ptr<SecurityDescriptor> Win32Platform::descriptorFromString(const std::string& sddl) {
    using ConvertFn = BOOL(WINAPI*)(LPCSTR, DWORD, PSECURITY_DESCRIPTOR*, PULONG);
    ScopedModule advapi(::LoadLibraryW(L"Advapi32.dll"));
    if (!advapi) return nullptr;
    auto convert = reinterpret_cast<ConvertFn>(reinterpret_cast<void*>(
        ::GetProcAddress(advapi.get(), "ConvertStringSecurityDescriptorToSecurityDescriptorA")));
    PSECURITY_DESCRIPTOR out = nullptr;
    if (!convert || !convert(sddl.c_str(), SDDL_REVISION_1, &out, nullptr)) return nullptr;
    return std::make_unique<Win32Descriptor>(out);
}

bool Win32Platform::getSacl(SecurityDescriptor& descriptor, void*& acl) {
    BOOL present = FALSE, defaulted = FALSE;
    PACL sacl = nullptr;
    if (!::GetSecurityDescriptorSacl(descriptor.get(), &present, &sacl, &defaulted)) return false;
    acl = present ? sacl : nullptr;
    return true;
}

bool Win32Platform::setSacl(SecurityDescriptor& descriptor, void* acl) {
    return ::SetSecurityDescriptorSacl(descriptor.get(), TRUE, static_cast<PACL>(acl), FALSE) !=
           FALSE;
}

std::optional<Sid> Win32Platform::lookupAccountSid(const std::u16string& systemName,
                                                   const std::u16string& account) {
    const wchar_t* system = systemName.empty() ? nullptr : wide(systemName);
    DWORD sidSize = 0, domainChars = 0;
    SID_NAME_USE use;
    ::LookupAccountNameW(system, wide(account), nullptr, &sidSize, nullptr, &domainChars, &use);
    if (sidSize == 0) return std::nullopt;
    std::vector<BYTE> sid(sidSize);
    std::wstring domain(domainChars + 1, L'\0');
    if (!::LookupAccountNameW(system, wide(account), sid.data(), &sidSize, domain.data(),
                              &domainChars, &use) ||
        !::IsValidSid(sid.data()))
        return std::nullopt;
    Sid out;
    out.revision = sid[0]; // SID_REVISION; there is no accessor for it
    const auto* authority = ::GetSidIdentifierAuthority(sid.data());
    for (int i = 0; i < 6; ++i)
        out.authority[i] = authority->Value[i];
    for (UCHAR i = 0, n = *::GetSidSubAuthorityCount(sid.data()); i < n; ++i)
        out.subAuthorities.push_back(*::GetSidSubAuthority(sid.data(), i));
    return out;
}

} // namespace platform::win32
