#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

#include <atomic>
#include <cstring>

namespace platform::win32 {

namespace {
// The record the system wants; nLength is passed through as the caller set it.
struct NativeAttributes {
    explicit NativeAttributes(const SecurityAttributes* a) {
        if (!a) return;
        record.nLength = a->length;
        record.lpSecurityDescriptor = a->security ? nativeDescriptor(*a->security) : nullptr;
        record.bInheritHandle = a->inheritHandle;
        pointer = &record;
    }
    SECURITY_ATTRIBUTES record{};
    SECURITY_ATTRIBUTES* pointer = nullptr;
};

// An empty name makes an unnamed object.
const wchar_t* objectName(const std::u16string& name) {
    return name.empty() ? nullptr : wide(name);
}

class Win32View : public MappedView {
public:
    explicit Win32View(void* view) : view_(view) {}
    std::uint8_t* data() override { return static_cast<std::uint8_t*>(view_.get()); }
    void write(std::size_t offset, const void* bytes, std::size_t size) override {
        // Every earlier write reaches the other process before this one.
        std::atomic_thread_fence(std::memory_order_release);
        std::memcpy(data() + offset, bytes, size);
    }

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

// Events, mutexes and threads: a handle to wait on.
template <typename Interface> class Win32Waitable : public Interface {
public:
    explicit Win32Waitable(HANDLE h) : handle_(h) {}
    WaitResult wait(std::uint32_t milliseconds) override {
        switch (::WaitForSingleObject(handle_.get(), milliseconds)) {
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

protected:
    ScopedKernelHandle handle_;
};

class Win32Event : public Win32Waitable<Event> {
public:
    using Win32Waitable::Win32Waitable;
    bool set() override { return ::SetEvent(handle_.get()) != FALSE; }
};

class Win32Mutex : public Win32Waitable<Mutex> {
public:
    using Win32Waitable::Win32Waitable;
    bool release() override { return ::ReleaseMutex(handle_.get()) != FALSE; }
};

class Win32Thread : public Win32Waitable<Thread> {
public:
    Win32Thread(HANDLE thread, DWORD id) : Win32Waitable(thread), id_(id) {}
    std::uint32_t id() override { return id_; }

private:
    DWORD id_;
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

DWORD WINAPI runThreadBody(void* parameter) {
    std::unique_ptr<std::function<void()>> body(static_cast<std::function<void()>*>(parameter));
    (*body)();
    return 0;
}

template <typename T> std::unique_ptr<T> wrap(HANDLE h) {
    return h ? std::make_unique<T>(h) : nullptr;
}

class Win32Kernel : public Kernel {
public:
    std::unique_ptr<FileMapping> openFileMapping(std::uint32_t access,
                                                 const std::u16string& name) override {
        return wrap<Win32Mapping>(::OpenFileMappingW(access, FALSE, wide(name)));
    }

    std::unique_ptr<FileMapping> createFileMapping(const SecurityAttributes* attributes,
                                                   std::size_t size,
                                                   const std::u16string& name) override {
        NativeAttributes sa(attributes);
        auto wideSize = static_cast<unsigned long long>(size);
        return wrap<Win32Mapping>(::CreateFileMappingW(
            INVALID_HANDLE_VALUE, sa.pointer, PAGE_READWRITE, static_cast<DWORD>(wideSize >> 32),
            static_cast<DWORD>(wideSize), objectName(name)));
    }

    std::unique_ptr<Event> createEvent(const SecurityAttributes* attributes, bool manualReset,
                                       bool initialState, const std::u16string& name) override {
        NativeAttributes sa(attributes);
        return wrap<Win32Event>(
            ::CreateEventW(sa.pointer, manualReset, initialState, objectName(name)));
    }

    std::unique_ptr<Event> openEvent(std::uint32_t access, const std::u16string& name) override {
        return wrap<Win32Event>(::OpenEventW(access, FALSE, wide(name)));
    }

    std::unique_ptr<Mutex> createMutex(const SecurityAttributes* attributes, bool initialOwner,
                                       const std::u16string& name) override {
        NativeAttributes sa(attributes);
        return wrap<Win32Mutex>(::CreateMutexW(sa.pointer, initialOwner, objectName(name)));
    }

    std::unique_ptr<Mutex> openMutex(std::uint32_t access, const std::u16string& name) override {
        return wrap<Win32Mutex>(::OpenMutexW(access, FALSE, wide(name)));
    }
};

class Win32Processes : public Processes {
public:
    std::unique_ptr<Process> createProcess(const ProcessStart& start) override {
        STARTUPINFOW si{};
        si.cb = sizeof si; // 104 on this target
        if (start.showWindow) {
            si.dwFlags = STARTF_USESHOWWINDOW;
            si.wShowWindow = *start.showWindow;
        }
        PROCESS_INFORMATION pi{};
        std::u16string commandLine = start.commandLine; // CreateProcessW may write into it
        if (!::CreateProcessW(nullptr, const_cast<wchar_t*>(wide(commandLine)), nullptr, nullptr,
                              FALSE, start.creationFlags, nullptr,
                              start.workingDirectory ? wide(*start.workingDirectory) : nullptr, &si,
                              &pi))
            return nullptr;
        return std::make_unique<Win32Process>(pi.hProcess, pi.hThread);
    }

    std::unique_ptr<Thread> startThread(std::function<void()> body) override {
        auto owned = std::make_unique<std::function<void()>>(std::move(body));
        DWORD id = 0;
        HANDLE thread = ::CreateThread(nullptr, 0, runThreadBody, owned.get(), 0, &id);
        if (!thread) return nullptr;
        owned.release(); // the thread frees it
        return std::make_unique<Win32Thread>(thread, id);
    }
};
} // namespace

Kernel& Win32Platform::kernel() {
    static Win32Kernel instance;
    return instance;
}

Processes& Win32Platform::processes() {
    static Win32Processes instance;
    return instance;
}

} // namespace platform::win32
