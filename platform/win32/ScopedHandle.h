#pragma once

#include "platform/win32/Windows.h"

#include <string>
#include <utility>

namespace platform::win32 {

// A handle closed by its traits when the holder goes (after LLVM's ScopedHandle).
template <typename Traits> class ScopedHandle {
public:
    using Handle = typename Traits::Handle;
    ScopedHandle() : handle_(Traits::invalid()) {}
    explicit ScopedHandle(Handle h) : handle_(h) {}
    ScopedHandle(ScopedHandle&& other) noexcept : handle_(other.release()) {}
    ScopedHandle& operator=(ScopedHandle&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ScopedHandle(const ScopedHandle&) = delete;
    ScopedHandle& operator=(const ScopedHandle&) = delete;
    ~ScopedHandle() { reset(); }

    Handle get() const { return handle_; }
    explicit operator bool() const { return Traits::isValid(handle_); }
    Handle release() { return std::exchange(handle_, Traits::invalid()); }
    void reset(Handle h = Traits::invalid()) {
        if (Traits::isValid(handle_)) Traits::close(handle_);
        handle_ = h;
    }

private:
    Handle handle_;
};

struct KernelHandleTraits { // events, mutexes, mappings, processes: null when absent
    using Handle = HANDLE;
    static Handle invalid() { return nullptr; }
    static bool isValid(Handle h) { return h != nullptr && h != INVALID_HANDLE_VALUE; }
    static void close(Handle h) { ::CloseHandle(h); }
};

struct RegistryKeyTraits {
    using Handle = HKEY;
    static Handle invalid() { return nullptr; }
    // Predefined roots are not closed: they belong to the process.
    static bool isValid(Handle h) {
        return h != nullptr && h != HKEY_CURRENT_USER && h != HKEY_LOCAL_MACHINE && h != HKEY_USERS;
    }
    static void close(Handle h) { ::RegCloseKey(h); }
};

struct LocalMemoryTraits { // LocalAlloc blocks: security descriptors, message texts
    using Handle = HLOCAL;
    static Handle invalid() { return nullptr; }
    static bool isValid(Handle h) { return h != nullptr; }
    static void close(Handle h) { ::LocalFree(h); }
};

struct ModuleTraits {
    using Handle = HMODULE;
    static Handle invalid() { return nullptr; }
    static bool isValid(Handle h) { return h != nullptr; }
    static void close(Handle h) { ::FreeLibrary(h); }
};

struct ViewTraits {
    using Handle = void*;
    static Handle invalid() { return nullptr; }
    static bool isValid(Handle h) { return h != nullptr; }
    static void close(Handle h) { ::UnmapViewOfFile(h); }
};

using ScopedKernelHandle = ScopedHandle<KernelHandleTraits>;
using ScopedKey = ScopedHandle<RegistryKeyTraits>;
using ScopedLocal = ScopedHandle<LocalMemoryTraits>;
using ScopedModule = ScopedHandle<ModuleTraits>;
using ScopedView = ScopedHandle<ViewTraits>;

// wchar_t is 16-bit here: the job face's text passes through unchanged.
inline const wchar_t* wide(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}
inline std::u16string fromWide(const wchar_t* text) {
    return text ? std::u16string(reinterpret_cast<const char16_t*>(text)) : std::u16string();
}

} // namespace platform::win32
