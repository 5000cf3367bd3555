#pragma once

#include "platform/fake/FakePlatform.h"

#include <memory>
#include <string>

namespace platform {

namespace fake {
// What the fake's security calls wrote into a descriptor.
struct DescriptorState {
    bool initialised = false;
    bool nullDacl = false;
    std::shared_ptr<std::string> sacl; // the string form of the label, when set
};
} // namespace fake

struct FakePlatform::RegistryNode {
    std::map<std::u16string, std::unique_ptr<RegistryNode>> children; // by folded name
    std::vector<std::pair<std::u16string, RegistryValue>> values;     // in the order written

    // The key at path below this one, or null; with create, the missing keys are made and
    // created tells whether any was.
    RegistryNode* walk(const std::u16string& path, bool create, bool* created = nullptr);
    // Value names compare without case.
    RegistryValue* find(std::u16string_view name);
    void set(const std::u16string& name, const RegistryValue& value);
};

struct FakePlatform::NamedObject {
    enum class Kind { Mapping, Event, Mutex } kind;
    std::vector<std::uint8_t> memory; // a mapping's bytes
    bool signalled = false;           // an event's state
    bool manualReset = false;
    int ownerCount = 0; // a mutex's recursion count
    std::u16string name;
};

struct FakePlatform::FileNode {
    std::vector<std::uint8_t> bytes;
};

} // namespace platform
