#pragma once

#include "platform/Kernel.h"
#include "support/fake/FakeCalls.h"
#include "support/fake/FakeSystem.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// The security a named object was created with, as far as the fake can tell.
struct FakeObjectSecurity {
    bool hadAttributes = false;
    std::uint32_t length = 0;
    bool openToAll = false;
    bool lowIntegrity = false;
    bool operator==(const FakeObjectSecurity&) const = default;
};

// How a named object was made, as the kernel was asked.
struct FakeObjectCreation {
    bool manualReset = false; // events
    bool initialState = false;
    bool initialOwner = false; // mutexes
    std::size_t size = 0;      // mappings
    bool operator==(const FakeObjectCreation&) const = default;
};

// One write through a view of a mapping.
struct FakeViewWrite {
    std::size_t offset = 0, size = 0;
    bool operator==(const FakeViewWrite&) const = default;
};

// Named mappings, events and mutexes in memory. Nothing else runs in the fake: a wait
// that cannot be satisfied takes its time on the system's clock, or, without limit, is
// counted and fails.
class FakeKernel : public Kernel {
public:
    FakeKernel(FakeCalls& calls, FakeSystem& system) : calls_(calls), system_(system) {}
    ~FakeKernel() override;

    // A hook runs when an event of that name is set.
    void onEventSet(const std::u16string& name, std::function<void()> hook);
    bool exists(const std::u16string& name) const;
    std::optional<FakeObjectSecurity> securityOf(const std::u16string& name) const;
    // The last creation of the name, also after the object is gone.
    std::optional<FakeObjectCreation> creationOf(const std::u16string& name) const;
    // Open handles and views of a live object; 0 when there is none.
    long references(const std::u16string& name) const;
    // How many times a mutex is held, by all its handles together.
    int mutexHolds(const std::u16string& name) const;
    // The writes made through views of a live mapping, in order.
    std::vector<FakeViewWrite> viewWrites(const std::u16string& name) const;
    std::vector<std::u16string> openedMutexNames, openedEventNames, openedMappingNames;
    int foreverWaits = 0; // waits without limit on an object nobody frees

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

    struct NamedObject;

private:
    template <typename Interface> friend class FakeObjectHandle;
    friend class FakeEventHandle;
    friend class FakeMutexHandle;

    std::shared_ptr<NamedObject> findObject(const std::u16string& name) const;
    // Both set the last error as the kernel would.
    std::shared_ptr<NamedObject> openNamed(int kind, const std::u16string& name);
    std::shared_ptr<NamedObject> createNamed(int kind, const std::u16string& name,
                                             const SecurityAttributes* attributes, bool& fresh);

    FakeCalls& calls_;
    FakeSystem& system_;
    std::map<std::u16string, std::weak_ptr<NamedObject>> objects_;
    std::map<std::u16string, FakeObjectSecurity> security_;
    std::map<std::u16string, FakeObjectCreation> creations_;
    std::map<std::u16string, std::function<void()>> eventHooks_;
};

} // namespace platform
