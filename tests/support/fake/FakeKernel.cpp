#include "support/fake/FakeKernel.h"

#include "support/fake/FakeSecurity.h"

#include <cstring>
#include <stdexcept>

namespace platform {

struct FakeKernel::NamedObject {
    enum class Kind { Mapping, Event, Mutex } kind;
    std::vector<std::uint8_t> memory; // a mapping's bytes
    bool signalled = false;           // an event's state
    bool manualReset = false;
    int ownerCount = 0; // a mutex's recursion count
    std::u16string name;
    std::vector<FakeViewWrite> writes; // through a mapping's views
};

FakeKernel::~FakeKernel() = default;

namespace {
using Object = FakeKernel::NamedObject;

class FakeView : public MappedView {
public:
    explicit FakeView(std::shared_ptr<Object> object) : object_(std::move(object)) {}
    std::uint8_t* data() override { return object_->memory.data(); }
    void write(std::size_t offset, const void* bytes, std::size_t size) override {
        if (offset > object_->memory.size() || size > object_->memory.size() - offset)
            throw std::out_of_range("write past the end of a mapping");
        std::memcpy(object_->memory.data() + offset, bytes, size);
        object_->writes.push_back({offset, size});
    }

private:
    std::shared_ptr<Object> object_; // a view keeps its mapping alive, as in the kernel
};
} // namespace

// What every handle of a named object holds.
template <typename Interface> class FakeObjectHandle : public Interface {
public:
    FakeObjectHandle(FakeKernel& kernel, std::shared_ptr<Object> object)
        : kernel_(kernel), object_(std::move(object)) {}

protected:
    // A wait on an object that is not free: nobody else runs in the fake, so a wait
    // without limit would never end; it is counted instead.
    WaitResult waitInVain(std::uint32_t milliseconds) {
        if (milliseconds == infinite) {
            ++kernel_.foreverWaits;
            return WaitResult::Failed;
        }
        kernel_.system_.ticks += milliseconds;
        return WaitResult::Timeout;
    }
    bool failing(Call call) { return kernel_.calls_.failing(call); }
    bool failing(Call call, std::uint32_t access) { return kernel_.calls_.failing(call, access); }

    FakeKernel& kernel_;
    std::shared_ptr<Object> object_;
};

class FakeMappingHandle : public FakeObjectHandle<FileMapping> {
public:
    using FakeObjectHandle::FakeObjectHandle;
    std::unique_ptr<MappedView> mapView(std::uint32_t access) override {
        if (failing(Call::MapViewOfFile, access)) return nullptr;
        return std::make_unique<FakeView>(object_);
    }
};

class FakeEventHandle : public FakeObjectHandle<Event> {
public:
    using FakeObjectHandle::FakeObjectHandle;
    bool set() override {
        if (failing(Call::SetEvent)) return false;
        object_->signalled = true;
        auto hook = kernel_.eventHooks_.find(object_->name);
        if (hook != kernel_.eventHooks_.end() && !object_->name.empty()) hook->second();
        return true;
    }
    WaitResult wait(std::uint32_t milliseconds) override {
        if (failing(Call::WaitForSingleObject)) return WaitResult::Failed;
        if (!object_->signalled) return waitInVain(milliseconds);
        if (!object_->manualReset) object_->signalled = false;
        return WaitResult::Signalled;
    }
};

class FakeMutexHandle : public FakeObjectHandle<Mutex> {
public:
    using FakeObjectHandle::FakeObjectHandle;
    ~FakeMutexHandle() override { object_->ownerCount -= held_; }
    bool release() override {
        if (held_ == 0) {
            kernel_.calls_.lastError = 288; // ERROR_NOT_OWNER
            return false;
        }
        --held_;
        --object_->ownerCount;
        return true;
    }
    WaitResult wait(std::uint32_t milliseconds) override {
        if (failing(Call::WaitForSingleObject)) return WaitResult::Failed;
        if (object_->ownerCount > 0 && held_ == 0) return waitInVain(milliseconds);
        own();
        return WaitResult::Signalled;
    }
    void own() {
        ++held_;
        ++object_->ownerCount;
    }

private:
    int held_ = 0;
};

std::shared_ptr<Object> FakeKernel::findObject(const std::u16string& name) const {
    auto it = objects_.find(name);
    return it == objects_.end() ? nullptr : it->second.lock();
}

bool FakeKernel::exists(const std::u16string& name) const {
    return findObject(name) != nullptr;
}

void FakeKernel::onEventSet(const std::u16string& name, std::function<void()> hook) {
    eventHooks_[name] = std::move(hook);
}

std::optional<FakeObjectCreation> FakeKernel::creationOf(const std::u16string& name) const {
    auto it = creations_.find(name);
    if (it == creations_.end()) return std::nullopt;
    return it->second;
}

long FakeKernel::references(const std::u16string& name) const {
    auto object = findObject(name);
    return object ? object.use_count() - 1 : 0; // not counting the one just made
}

int FakeKernel::mutexHolds(const std::u16string& name) const {
    auto object = findObject(name);
    return object ? object->ownerCount : 0;
}

std::vector<FakeViewWrite> FakeKernel::viewWrites(const std::u16string& name) const {
    auto object = findObject(name);
    return object ? object->writes : std::vector<FakeViewWrite>{};
}

std::optional<FakeObjectSecurity> FakeKernel::securityOf(const std::u16string& name) const {
    auto it = security_.find(name);
    if (it == security_.end()) return std::nullopt;
    return it->second;
}

namespace {
FakeObjectSecurity describe(const SecurityAttributes* attributes) {
    FakeObjectSecurity s;
    if (!attributes) return s;
    s.hadAttributes = true;
    s.length = attributes->length;
    if (auto* shared = dynamic_cast<const FakeSharedSecurity*>(attributes->security)) {
        s.openToAll = true;
        s.lowIntegrity = shared->lowIntegrity;
    }
    return s;
}
} // namespace

std::shared_ptr<Object> FakeKernel::openNamed(int kind, const std::u16string& name) {
    auto object = findObject(name);
    if (!object || static_cast<int>(object->kind) != kind) {
        calls_.lastError = object ? error::invalidHandle : error::fileNotFound;
        return nullptr;
    }
    return object;
}

// Creating a name that exists opens it, as the kernel does, unless it is of another kind.
std::shared_ptr<Object> FakeKernel::createNamed(int kind, const std::u16string& name,
                                                const SecurityAttributes* attributes, bool& fresh) {
    auto object = findObject(name);
    fresh = !object;
    if (object) {
        calls_.lastError =
            static_cast<int>(object->kind) == kind ? error::alreadyExists : error::invalidHandle;
        return static_cast<int>(object->kind) == kind ? object : nullptr;
    }
    object = std::make_shared<Object>(
        Object{static_cast<Object::Kind>(kind), {}, false, false, 0, name, {}});
    if (!name.empty()) objects_[name] = object;
    security_[name] = describe(attributes);
    calls_.lastError = error::success;
    return object;
}

std::unique_ptr<FileMapping> FakeKernel::openFileMapping(std::uint32_t access,
                                                         const std::u16string& name) {
    openedMappingNames.push_back(name);
    if (calls_.failing(Call::OpenFileMapping, access)) return nullptr;
    auto object = openNamed(static_cast<int>(Object::Kind::Mapping), name);
    return object ? std::make_unique<FakeMappingHandle>(*this, object) : nullptr;
}

std::unique_ptr<FileMapping> FakeKernel::createFileMapping(const SecurityAttributes* attributes,
                                                           std::size_t size,
                                                           const std::u16string& name) {
    if (calls_.failing(Call::CreateFileMapping)) return nullptr;
    bool fresh = false;
    auto object = createNamed(static_cast<int>(Object::Kind::Mapping), name, attributes, fresh);
    if (!object) return nullptr;
    if (fresh) {
        object->memory.assign(size, 0);
        creations_[name] = {false, false, false, size};
    }
    return std::make_unique<FakeMappingHandle>(*this, object);
}

std::unique_ptr<Event> FakeKernel::createEvent(const SecurityAttributes* attributes,
                                               bool manualReset, bool initialState,
                                               const std::u16string& name) {
    if (calls_.failing(Call::CreateEvent)) return nullptr;
    bool fresh = false;
    auto object = createNamed(static_cast<int>(Object::Kind::Event), name, attributes, fresh);
    if (!object) return nullptr;
    if (fresh) {
        object->signalled = initialState;
        object->manualReset = manualReset;
        creations_[name] = {manualReset, initialState, false, 0};
    }
    return std::make_unique<FakeEventHandle>(*this, object);
}

std::unique_ptr<Event> FakeKernel::openEvent(std::uint32_t access, const std::u16string& name) {
    openedEventNames.push_back(name);
    if (calls_.failing(Call::OpenEvent, access)) return nullptr;
    auto object = openNamed(static_cast<int>(Object::Kind::Event), name);
    return object ? std::make_unique<FakeEventHandle>(*this, object) : nullptr;
}

std::unique_ptr<Mutex> FakeKernel::createMutex(const SecurityAttributes* attributes,
                                               bool initialOwner, const std::u16string& name) {
    if (calls_.failing(Call::CreateMutex)) return nullptr;
    bool fresh = false;
    auto object = createNamed(static_cast<int>(Object::Kind::Mutex), name, attributes, fresh);
    if (!object) return nullptr;
    auto handle = std::make_unique<FakeMutexHandle>(*this, object);
    if (fresh) creations_[name] = {false, false, initialOwner, 0};
    if (initialOwner && fresh) handle->own(); // an existing mutex is opened, not taken
    return handle;
}

std::unique_ptr<Mutex> FakeKernel::openMutex(std::uint32_t access, const std::u16string& name) {
    openedMutexNames.push_back(name);
    if (calls_.failing(Call::OpenMutex, access)) return nullptr;
    auto object = openNamed(static_cast<int>(Object::Kind::Mutex), name);
    return object ? std::make_unique<FakeMutexHandle>(*this, object) : nullptr;
}

} // namespace platform
