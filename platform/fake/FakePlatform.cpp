#include "platform/fake/FakePlatform.h"

#include "platform/WideText.h"
#include "platform/fake/FakeInternals.h"

namespace platform {

FakePlatform::FakePlatform() {
    for (auto& r : roots_)
        r = std::make_unique<RegistryNode>();
    folders[KnownFolder::LocalAppData] = u"C:\\users\\anna\\AppData\\Local";
    folders[KnownFolder::RoamingAppData] = u"C:\\users\\anna\\AppData\\Roaming";
    folders[KnownFolder::Documents] = u"C:\\users\\anna\\Documents";
    env[u"USERNAME"] = u"anna";
    accounts[u"anna"] = Sid{1, {0, 0, 0, 0, 0, 5}, {21, 1004336348, 1177238915, 682003330, 1001}};
    for (auto dir :
         {u"C:", u"C:\\windows", u"C:\\windows\\system32", u"C:\\users", u"C:\\users\\anna",
          u"C:\\users\\anna\\AppData", u"C:\\users\\anna\\AppData\\Local",
          u"C:\\users\\anna\\AppData\\Roaming", u"C:\\users\\anna\\Documents"})
        directories_.insert(foldCase(dir));
}

FakePlatform::~FakePlatform() = default;

void FakePlatform::fail(Call call, std::uint32_t code, int times) {
    failures_[call] = Failure{code, times};
}

void FakePlatform::clearFailures() {
    failures_.clear();
}

bool FakePlatform::failing(Call call) {
    ++calls_[static_cast<int>(call)];
    auto it = failures_.find(call);
    if (it == failures_.end() || it->second.times == 0) return false;
    if (it->second.times > 0) --it->second.times;
    lastError_ = it->second.code;
    return true;
}

std::vector<FakeMessageBox> FakePlatform::boxes() const {
    std::lock_guard lock(recordLock_);
    return boxes_;
}

std::vector<std::string> FakePlatform::debugLines() const {
    std::lock_guard lock(recordLock_);
    return debugLines_;
}

// System

std::optional<OsVersion> FakePlatform::osVersion() {
    if (failing(Call::GetVersionEx)) return std::nullopt;
    return version;
}

std::optional<std::u16string> FakePlatform::userName(std::size_t bufferChars) {
    if (failing(Call::GetUserName)) return std::nullopt;
    if (!user) {
        lastError_ = error::accessDenied;
        return std::nullopt;
    }
    if (user->size() + 1 > bufferChars) {
        lastError_ = error::insufficientBuffer;
        return std::nullopt;
    }
    return user;
}

std::optional<std::u16string> FakePlatform::environment(const std::u16string& name) {
    if (failing(Call::GetEnvironmentVariable)) return std::nullopt;
    for (const auto& [key, value] : env)
        if (equalsIgnoreCase(key, name)) return value;
    lastError_ = 203; // ERROR_ENVVAR_NOT_FOUND
    return std::nullopt;
}

void FakePlatform::sleep(std::uint32_t milliseconds) {
    sleeps.push_back(milliseconds);
    ticks += milliseconds;
    if (onSleep) onSleep(milliseconds);
}

void FakePlatform::seedRandom(std::uint32_t seed) {
    seeds.push_back(seed);
    randState_ = seed;
}

// The generator of the Microsoft C runtime, so that sequences match the product's.
int FakePlatform::random() {
    randState_ = randState_ * 214013u + 2531011u;
    return static_cast<int>((randState_ >> 16) & 0x7FFF);
}

std::optional<Guid> FakePlatform::createGuid() {
    if (failing(Call::CoCreateGuid)) return std::nullopt;
    Guid g;
    g.data1 = 0x12345678 + guidCounter_++;
    g.data2 = 0x9ABC;
    g.data3 = 0x4DEF;
    g.data4 = {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, static_cast<std::uint8_t>(guidCounter_)};
    return g;
}

std::optional<std::u16string> FakePlatform::knownFolder(KnownFolder folder) {
    if (failing(Call::KnownFolder)) return std::nullopt;
    auto it = folders.find(folder);
    if (it == folders.end()) return std::nullopt;
    return it->second;
}

std::optional<std::u16string> FakePlatform::systemDirectory() {
    if (failing(Call::GetSystemDirectory)) return std::nullopt;
    return systemDir;
}

std::optional<std::u16string> FakePlatform::errorMessage(std::uint32_t code) {
    if (failing(Call::FormatMessage)) return std::nullopt;
    return u"System error " + fromUtf8(std::to_string(code)) + u".\r\n";
}

namespace {
class FakeNetApi : public NetApi {
public:
    explicit FakeNetApi(FakePlatform& fake, std::function<bool()> failing)
        : fake_(fake), failing_(std::move(failing)) {}
    std::uint32_t getDcName(std::u16string& name) override {
        if (failing_()) return fake_.system().lastError();
        name = fake_.domainController;
        return error::success;
    }

private:
    FakePlatform& fake_;
    std::function<bool()> failing_;
};
} // namespace

std::unique_ptr<NetApi> FakePlatform::loadNetApi() {
    if (failing(Call::LoadNetApi) || !netApiPresent) return nullptr;
    return std::make_unique<FakeNetApi>(*this, [this] { return failing(Call::NetGetDcName); });
}

// Reporter

int FakePlatform::messageBox(const std::u16string& text, const std::u16string& caption,
                             std::uint32_t style) {
    std::lock_guard lock(recordLock_);
    boxes_.push_back({text, caption, style});
    return messageBoxResult;
}

int FakePlatform::messageBoxA(const std::string& text, const std::string& caption,
                              std::uint32_t style) {
    return messageBox(fromUtf8(text), fromUtf8(caption), style);
}

void FakePlatform::debugOutput(std::string_view text) {
    std::lock_guard lock(recordLock_);
    debugLines_.emplace_back(text);
}

void FakePlatform::debugOutputW(const std::u16string& text) {
    debugOutput(toUtf8(text));
}

// Processes

namespace {
class FakeProcess : public Process {
public:
    FakeProcess(std::uint32_t exitCode, std::function<bool()> failing)
        : exitCode_(exitCode), failing_(std::move(failing)) {}
    bool wait(std::uint32_t) override { return true; }
    std::optional<std::uint32_t> exitCode() override {
        if (failing_()) return std::nullopt;
        return exitCode_;
    }

private:
    std::uint32_t exitCode_;
    std::function<bool()> failing_;
};
} // namespace

std::unique_ptr<Process> FakePlatform::createProcess(const ProcessStart& start) {
    if (failing(Call::CreateProcess)) return nullptr;
    started.push_back(start);
    return std::make_unique<FakeProcess>(processExitCode,
                                         [this] { return failing(Call::GetExitCodeProcess); });
}

namespace {
class FakeThread : public Thread {
public:
    explicit FakeThread(std::uint32_t id) : id_(id) {}
    WaitResult wait(std::uint32_t) override { return WaitResult::Signalled; } // it has ended
    std::uint32_t id() override { return id_; }

private:
    std::uint32_t id_;
};
} // namespace

std::unique_ptr<Thread> FakePlatform::startThread(std::function<void()> body) {
    if (failing(Call::CreateThread)) return nullptr;
    body();
    return std::make_unique<FakeThread>(nextThreadId_++);
}

// Security: a descriptor is a record of what was set in it.

namespace {
class FakeDescriptor : public SecurityDescriptor {
public:
    void* get() override { return &state; }
    fake::DescriptorState state;
};
} // namespace

std::unique_ptr<SecurityDescriptor> FakePlatform::allocDescriptor(std::size_t) {
    if (failing(Call::LocalAlloc)) return nullptr;
    return std::make_unique<FakeDescriptor>();
}

bool FakePlatform::initializeDescriptor(SecurityDescriptor& descriptor) {
    if (failing(Call::InitializeSecurityDescriptor)) return false;
    static_cast<fake::DescriptorState*>(descriptor.get())->initialised = true;
    return true;
}

bool FakePlatform::setNullDacl(SecurityDescriptor& descriptor) {
    if (failing(Call::SetSecurityDescriptorDacl)) return false;
    static_cast<fake::DescriptorState*>(descriptor.get())->nullDacl = true;
    return true;
}

std::unique_ptr<SecurityDescriptor> FakePlatform::descriptorFromString(const std::string& sddl) {
    if (failing(Call::ConvertStringSecurityDescriptor)) return nullptr;
    // Only the shape is checked: a component letter, a colon, and balanced brackets.
    int depth = 0;
    for (char c : sddl) {
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (depth < 0) break;
    }
    bool shaped = sddl.size() >= 2 && sddl[1] == ':' &&
                  std::string("OGDS").find(sddl[0]) != std::string::npos && depth == 0;
    if (!shaped) {
        lastError_ = error::invalidParameter;
        return nullptr;
    }
    auto d = std::make_unique<FakeDescriptor>();
    d->state.initialised = true;
    if (sddl.rfind("S:", 0) == 0) d->state.sacl = std::make_shared<std::string>(sddl);
    return d;
}

bool FakePlatform::getSacl(SecurityDescriptor& descriptor, void*& acl) {
    if (failing(Call::GetSecurityDescriptorSacl)) return false;
    acl = static_cast<fake::DescriptorState*>(descriptor.get())->sacl.get();
    return true;
}

bool FakePlatform::setSacl(SecurityDescriptor& descriptor, void* acl) {
    if (failing(Call::SetSecurityDescriptorSacl)) return false;
    auto* state = static_cast<fake::DescriptorState*>(descriptor.get());
    state->sacl = acl ? std::make_shared<std::string>(*static_cast<std::string*>(acl)) : nullptr;
    return true;
}

std::optional<Sid> FakePlatform::lookupAccountSid(const std::u16string& systemName,
                                                  const std::u16string& account) {
    accountLookupSystems.push_back(systemName);
    if (failing(Call::LookupAccountName)) return std::nullopt;
    for (const auto& [name, sid] : accounts)
        if (equalsIgnoreCase(name, account)) return sid;
    lastError_ = 1332; // ERROR_NONE_MAPPED
    return std::nullopt;
}

std::optional<FakeObjectSecurity> FakePlatform::securityOf(const std::u16string& name) const {
    auto it = security_.find(name);
    if (it == security_.end()) return std::nullopt;
    return it->second;
}

} // namespace platform
