#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

#include <sddl.h>

namespace platform::win32 {

namespace {
// An absolute descriptor, and the block of the label whose system access list it points into.
class Win32ObjectSecurity : public ObjectSecurity {
public:
    ScopedLocal descriptor, label;
};

// The mandatory label "ML" of low integrity "LW" that forbids writing up "NW".
constexpr const char* lowIntegrityLabel = "S:(ML;;NW;;;LW)";

class Win32Security : public Security {
public:
    SharedSecurity sharedObjectSecurity(bool lowIntegrity) override {
        auto security = std::make_unique<Win32ObjectSecurity>();
        security->descriptor.reset(::LocalAlloc(LPTR, SECURITY_DESCRIPTOR_MIN_LENGTH));
        void* descriptor = security->descriptor.get();
        if (!descriptor) return {nullptr, SharedSecurityFailure::NoMemory};
        if (!::InitializeSecurityDescriptor(descriptor, SECURITY_DESCRIPTOR_REVISION))
            return withoutSecurity(std::move(security), SharedSecurityFailure::Initialise);
        // A null access list: all access is allowed.
        if (!::SetSecurityDescriptorDacl(descriptor, TRUE, nullptr, FALSE))
            return withoutSecurity(std::move(security), SharedSecurityFailure::OpenToAll);
        auto failure = lowIntegrity ? applyLowLabel(*security) : SharedSecurityFailure::None;
        return {std::move(security), failure};
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

private:
    // The caller reads the error of the failed step after the block is freed.
    static SharedSecurity withoutSecurity(std::unique_ptr<Win32ObjectSecurity> security,
                                          SharedSecurityFailure failure) {
        DWORD code = ::GetLastError();
        security.reset();
        ::SetLastError(code);
        return {nullptr, failure};
    }

    // The label's system access list, made from its string form by a function that older
    // systems lack, so it is looked up by name.
    static SharedSecurityFailure applyLowLabel(Win32ObjectSecurity& security) {
        using ConvertFn = BOOL(WINAPI*)(LPCSTR, DWORD, PSECURITY_DESCRIPTOR*, PULONG);
        ScopedModule advapi(::LoadLibraryW(L"Advapi32.dll"));
        auto convert =
            advapi ? reinterpret_cast<ConvertFn>(reinterpret_cast<void*>(::GetProcAddress(
                         advapi.get(), "ConvertStringSecurityDescriptorToSecurityDescriptorA")))
                   : nullptr;
        PSECURITY_DESCRIPTOR label = nullptr;
        if (!convert || !convert(lowIntegrityLabel, SDDL_REVISION_1, &label, nullptr))
            return SharedSecurityFailure::LabelParse;
        security.label.reset(label);
        BOOL present = FALSE, defaulted = FALSE;
        PACL sacl = nullptr;
        if (!::GetSecurityDescriptorSacl(label, &present, &sacl, &defaulted))
            return SharedSecurityFailure::LabelRead;
        if (!::SetSecurityDescriptorSacl(security.descriptor.get(), TRUE, present ? sacl : nullptr,
                                         FALSE))
            return SharedSecurityFailure::LabelApply;
        return SharedSecurityFailure::None;
    }
};
} // namespace

void* nativeDescriptor(const ObjectSecurity& security) {
    return static_cast<const Win32ObjectSecurity&>(security).descriptor.get();
}

Security& Win32Platform::security() {
    static Win32Security instance;
    return instance;
}

} // namespace platform::win32
