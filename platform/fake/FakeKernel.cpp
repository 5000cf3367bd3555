#include "platform/fake/FakeInternals.h"

#include <cstring>

namespace platform {

namespace {
using Object = FakePlatform::NamedObject;

class FakeView : public MappedView {
public:
    explicit FakeView(std::shared_ptr<Object> object) : object_(std::move(object)) {}
    std::uint8_t* data() override { return object_->memory.data(); }

private:
    std::shared_ptr<Object> object_; // a view keeps its mapping alive, as in the kernel
};
} // namespace

// What every handle of a named object holds.
template <typename Interface> class FakeObjectHandle : public Interface {
public:
    FakeObjectHandle(FakePlatform& fake, std::shared_ptr<Object> object)
        : fake_(fake), object_(std::move(object)) {}

protected:
    // A wait on an object that is not free: nobody else runs in the fake, so a wait
    // without limit would never end; it is counted instead.
    WaitResult waitInVain(std::uint32_t milliseconds) {
        if (milliseconds == infinite) {
            ++fake_.foreverWaits;
            return WaitResult::Failed;
        }
        fake_.ticks += milliseconds;
        return WaitResult::Timeout;
    }
    FakePlatform& fake_;
    std::shared_ptr<Object> object_;
};

class FakeMappingHandle : public FakeObjectHandle<FileMapping> {
public:
    using FakeObjectHandle::FakeObjectHandle;
    std::unique_ptr<MappedView> mapView(std::uint32_t access) override {
        if (fake_.failing(Call::MapViewOfFile, access)) return nullptr;
        return std::make_unique<FakeView>(object_);
    }
};

class FakeEventHandle : public FakeObjectHandle<Event> {
public:
    using FakeObjectHandle::FakeObjectHandle;
    bool set() override {
        if (fake_.failing(Call::SetEvent)) return false;
        object_->signalled = true;
        auto hook = fake_.eventHooks_.find(object_->name);
        if (hook != fake_.eventHooks_.end() && !object_->name.empty()) hook->second();
        return true;
    }
    WaitResult wait(std::uint32_t milliseconds) override {
        if (fake_.failing(Call::WaitForSingleObject)) return WaitResult::Failed;
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
            fake_.lastError_ = 288; // ERROR_NOT_OWNER
            return false;
        }
        --held_;
        --object_->ownerCount;
        return true;
    }
    WaitResult wait(std::uint32_t milliseconds) override {
        if (fake_.failing(Call::WaitForSingleObject)) return WaitResult::Failed;
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

std::shared_ptr<Object> FakePlatform::findObject(const std::u16string& name) const {
    auto it = objects_.find(name);
    return it == objects_.end() ? nullptr : it->second.lock();
}

void FakePlatform::nameObject(const std::u16string& name, const std::shared_ptr<Object>& object) {
    object->name = name;
    if (!name.empty()) objects_[name] = object;
}

bool FakePlatform::exists(const std::u16string& name) const {
    return findObject(name) != nullptr;
}

void FakePlatform::onEventSet(const std::u16string& name, std::function<void()> hook) {
    eventHooks_[name] = std::move(hook);
}

namespace {
FakeObjectSecurity describe(const SecurityAttributes* attributes) {
    FakeObjectSecurity s;
    if (!attributes) return s;
    s.hadAttributes = true;
    s.length = attributes->length;
    if (auto* d = static_cast<fake::DescriptorState*>(attributes->descriptor)) {
        s.nullDacl = d->nullDacl;
        if (d->sacl) s.label = *d->sacl;
    }
    return s;
}
} // namespace

std::shared_ptr<Object> FakePlatform::openNamed(int kind, const std::u16string& name) {
    auto object = findObject(name);
    if (!object || static_cast<int>(object->kind) != kind) {
        lastError_ = object ? error::invalidHandle : error::fileNotFound;
        return nullptr;
    }
    return object;
}

// Creating a name that exists opens it, as the kernel does, unless it is of another kind.
std::shared_ptr<Object> FakePlatform::createNamed(int kind, const std::u16string& name,
                                                  const SecurityAttributes* attributes,
                                                  bool& fresh) {
    auto object = findObject(name);
    fresh = !object;
    if (object) {
        lastError_ =
            static_cast<int>(object->kind) == kind ? error::alreadyExists : error::invalidHandle;
        return static_cast<int>(object->kind) == kind ? object : nullptr;
    }
    object =
        std::make_shared<Object>(Object{static_cast<Object::Kind>(kind), {}, false, false, 0, {}});
    nameObject(name, object);
    security_[name] = describe(attributes);
    lastError_ = error::success;
    return object;
}

std::unique_ptr<FileMapping> FakePlatform::openFileMapping(std::uint32_t access,
                                                           const std::u16string& name) {
    openedMappingNames.push_back(name);
    if (failing(Call::OpenFileMapping, access)) return nullptr;
    auto object = openNamed(static_cast<int>(Object::Kind::Mapping), name);
    return object ? std::make_unique<FakeMappingHandle>(*this, object) : nullptr;
}

std::unique_ptr<FileMapping> FakePlatform::createFileMapping(const SecurityAttributes* attributes,
                                                             std::size_t size,
                                                             const std::u16string& name) {
    if (failing(Call::CreateFileMapping)) return nullptr;
    bool fresh = false;
    auto object = createNamed(static_cast<int>(Object::Kind::Mapping), name, attributes, fresh);
    if (!object) return nullptr;
    if (fresh) object->memory.assign(size, 0);
    return std::make_unique<FakeMappingHandle>(*this, object);
}

std::unique_ptr<Event> FakePlatform::createEvent(const SecurityAttributes* attributes,
                                                 bool manualReset, bool initialState,
                                                 const std::u16string& name) {
    if (failing(Call::CreateEvent)) return nullptr;
    bool fresh = false;
    auto object = createNamed(static_cast<int>(Object::Kind::Event), name, attributes, fresh);
    if (!object) return nullptr;
    if (fresh) {
        object->signalled = initialState;
        object->manualReset = manualReset;
    }
    return std::make_unique<FakeEventHandle>(*this, object);
}

std::unique_ptr<Event> FakePlatform::openEvent(std::uint32_t access, const std::u16string& name) {
    openedEventNames.push_back(name);
    if (failing(Call::OpenEvent, access)) return nullptr;
    auto object = openNamed(static_cast<int>(Object::Kind::Event), name);
    return object ? std::make_unique<FakeEventHandle>(*this, object) : nullptr;
}

std::unique_ptr<Mutex> FakePlatform::createMutex(const SecurityAttributes* attributes,
                                                 bool initialOwner, const std::u16string& name) {
    if (failing(Call::CreateMutex)) return nullptr;
    bool fresh = false;
    auto object = createNamed(static_cast<int>(Object::Kind::Mutex), name, attributes, fresh);
    if (!object) return nullptr;
    auto handle = std::make_unique<FakeMutexHandle>(*this, object);
    if (initialOwner && fresh) handle->own(); // an existing mutex is opened, not taken
    return handle;
}

std::unique_ptr<Mutex> FakePlatform::openMutex(std::uint32_t access, const std::u16string& name) {
    openedMutexNames.push_back(name);
    if (failing(Call::OpenMutex, access)) return nullptr;
    auto object = openNamed(static_cast<int>(Object::Kind::Mutex), name);
    return object ? std::make_unique<FakeMutexHandle>(*this, object) : nullptr;
}

} // namespace platform
