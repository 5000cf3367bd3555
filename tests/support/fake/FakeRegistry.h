#pragma once

#include "platform/Registry.h"
#include "support/fake/FakeCalls.h"

#include <memory>

namespace platform {

// The three roots in memory: keys and values by name compared without case, values in
// the order written.
class FakeRegistry : public Registry {
public:
    explicit FakeRegistry(FakeCalls& calls);
    ~FakeRegistry() override;

    bool advapiPresent = true;
    bool hasRegOpenCurrentUser = true;

    // For setting up and checking a test.
    std::optional<RegistryValue> registryValue(RegistryRoot root, const std::u16string& path,
                                               const std::u16string& name);
    void setRegistryValue(RegistryRoot root, const std::u16string& path, const std::u16string& name,
                          const RegistryValue& value);

    std::unique_ptr<RegistryKey> root(RegistryRoot root) override;
    bool advapiLoads() override { return advapiPresent; }
    bool hasOpenCurrentUser() override { return advapiPresent && hasRegOpenCurrentUser; }
    std::uint32_t openCurrentUser(std::uint32_t access, std::unique_ptr<RegistryKey>& key) override;

    struct Node;

private:
    FakeCalls& calls_;
    std::unique_ptr<Node> roots_[3];
};

} // namespace platform
