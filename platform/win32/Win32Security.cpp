#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

#include <sddl.h>

namespace platform::win32 {

namespace {
class Win32Descriptor : public SecurityDescriptor {
public:
    explicit Win32Descriptor(HLOCAL block) : block_(block) {}
    void* get() override { return block_.get(); }

private:
    ScopedLocal block_;
};

class Win32Security : public Security {
public:
    std::unique_ptr<SecurityDescriptor> allocDescriptor(std::size_t size) override {
        HLOCAL block = ::LocalAlloc(LPTR, size);
        if (!block) return nullptr;
        return std::make_unique<Win32Descriptor>(block);
    }

    bool initializeDescriptor(SecurityDescriptor& descriptor) override {
        return ::InitializeSecurityDescriptor(descriptor.get(), SECURITY_DESCRIPTOR_REVISION) !=
               FALSE;
    }

    bool setNullDacl(SecurityDescriptor& descriptor) override {
        return ::SetSecurityDescriptorDacl(descriptor.get(), TRUE, nullptr, FALSE) != FALSE;
    }

    std::unique_ptr<SecurityDescriptor> descriptorFromString(const std::string& sddl) override {
        using ConvertFn = BOOL(WINAPI*)(LPCSTR, DWORD, PSECURITY_DESCRIPTOR*, PULONG);
        ScopedModule advapi(::LoadLibraryW(L"Advapi32.dll"));
        if (!advapi) return nullptr;
        auto convert = reinterpret_cast<ConvertFn>(reinterpret_cast<void*>(::GetProcAddress(
            advapi.get(), "ConvertStringSecurityDescriptorToSecurityDescriptorA")));
        PSECURITY_DESCRIPTOR out = nullptr;
        if (!convert || !convert(sddl.c_str(), SDDL_REVISION_1, &out, nullptr)) return nullptr;
        return std::make_unique<Win32Descriptor>(out);
    }

    bool getSacl(SecurityDescriptor& descriptor, void*& acl) override {
        BOOL present = FALSE, defaulted = FALSE;
        PACL sacl = nullptr;
        if (!::GetSecurityDescriptorSacl(descriptor.get(), &present, &sacl, &defaulted))
            return false;
        acl = present ? sacl : nullptr;
        return true;
    }

    bool setSacl(SecurityDescriptor& descriptor, void* acl) override {
        return ::SetSecurityDescriptorSacl(descriptor.get(), TRUE, static_cast<PACL>(acl), FALSE) !=
               FALSE;
    }

    std::optional<Sid> lookupAccountSid(const std::u16string& systemName,
                                        const std::u16string& account) override {
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
};
} // namespace

Security& Win32Platform::security() {
    static Win32Security instance;
    return instance;
}

} // namespace platform::win32
