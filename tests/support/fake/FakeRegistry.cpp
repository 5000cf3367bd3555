#include "support/fake/FakeRegistry.h"

#include "platform/WideText.h"

#include <map>
#include <vector>

namespace platform {

struct FakeRegistry::Node {
    std::map<std::u16string, std::unique_ptr<Node>> children;     // by folded name
    std::vector<std::pair<std::u16string, RegistryValue>> values; // in the order written

    // The key at path below this one, or null; with create, the missing keys are made and
    // created tells whether any was.
    Node* walk(const std::u16string& path, bool create, bool* created = nullptr);
    // Value names compare without case.
    RegistryValue* find(std::u16string_view name);
    void set(const std::u16string& name, const RegistryValue& value);
};

FakeRegistry::FakeRegistry(FakeCalls& calls) : calls_(calls) {
    for (auto& r : roots_)
        r = std::make_unique<Node>();
}

FakeRegistry::~FakeRegistry() = default;

namespace {
std::vector<std::u16string> splitPath(const std::u16string& path) {
    std::vector<std::u16string> parts;
    std::u16string part;
    for (char16_t c : path) {
        if (c == u'\\') {
            if (!part.empty()) parts.push_back(part);
            part.clear();
        } else {
            part += c;
        }
    }
    if (!part.empty()) parts.push_back(part);
    return parts;
}
} // namespace

FakeRegistry::Node* FakeRegistry::Node::walk(const std::u16string& path, bool create,
                                             bool* created) {
    auto* node = this;
    for (const auto& part : splitPath(path)) {
        auto key = foldCase(part);
        auto it = node->children.find(key);
        if (it == node->children.end()) {
            if (!create) return nullptr;
            it = node->children.emplace(key, std::make_unique<Node>()).first;
            if (created) *created = true;
        }
        node = it->second.get();
    }
    return node;
}

RegistryValue* FakeRegistry::Node::find(std::u16string_view name) {
    for (auto& [key, value] : values)
        if (equalsIgnoreCase(key, name)) return &value;
    return nullptr;
}

void FakeRegistry::Node::set(const std::u16string& name, const RegistryValue& value) {
    if (auto* stored = find(name))
        *stored = value;
    else
        values.emplace_back(name, value);
}

namespace {
class FakeKey : public RegistryKey {
public:
    FakeKey(FakeCalls& calls, FakeRegistry::Node& node) : calls_(calls), node_(node) {}

    std::uint32_t queryValue(const std::u16string& name, RegistryValue& out,
                             std::size_t bufferSize) override {
        if (calls_.failing(Call::RegQueryValue)) return calls_.lastError;
        auto* value = node_.find(name);
        if (!value) return error::fileNotFound;
        if (value->data.size() > bufferSize) return error::moreData;
        out = *value;
        return error::success;
    }

    std::uint32_t setValue(const std::u16string& name, const RegistryValue& value) override {
        if (calls_.failing(Call::RegSetValue)) return calls_.lastError;
        node_.set(name, value);
        return error::success;
    }

    std::uint32_t enumValue(std::uint32_t index, std::u16string& name,
                            RegistryValue& out) override {
        if (calls_.failing(Call::RegEnumValue)) return calls_.lastError;
        if (index >= node_.values.size()) return error::noMoreItems;
        name = node_.values[index].first;
        out = node_.values[index].second;
        return error::success;
    }

    std::uint32_t valueCount(std::uint32_t& count) override {
        if (calls_.failing(Call::RegQueryInfoKey)) return calls_.lastError;
        count = static_cast<std::uint32_t>(node_.values.size());
        return error::success;
    }

    std::uint32_t createSubKey(const std::u16string& path, std::uint32_t access,
                               std::unique_ptr<RegistryKey>& key,
                               std::uint32_t& disposition) override {
        if (calls_.failing(Call::RegCreateKey, access)) return calls_.lastError;
        bool created = false;
        key = std::make_unique<FakeKey>(calls_, *node_.walk(path, true, &created));
        disposition = created ? regCreatedNewKey : regOpenedExistingKey;
        return error::success;
    }

    std::uint32_t openSubKey(const std::u16string& path, std::uint32_t access,
                             std::unique_ptr<RegistryKey>& key) override {
        if (calls_.failing(Call::RegOpenKey, access)) return calls_.lastError;
        auto* node = node_.walk(path, false);
        if (!node) return error::fileNotFound;
        key = std::make_unique<FakeKey>(calls_, *node);
        return error::success;
    }

private:
    FakeCalls& calls_;
    FakeRegistry::Node& node_;
};
} // namespace

std::unique_ptr<RegistryKey> FakeRegistry::root(RegistryRoot root) {
    return std::make_unique<FakeKey>(calls_, *roots_[static_cast<int>(root)]);
}

std::uint32_t FakeRegistry::openCurrentUser(std::uint32_t access,
                                            std::unique_ptr<RegistryKey>& key) {
    if (!hasRegOpenCurrentUser) return error::procNotFound;
    if (calls_.failing(Call::RegOpenCurrentUser, access)) return calls_.lastError;
    key = root(RegistryRoot::CurrentUser);
    return error::success;
}

std::optional<RegistryValue> FakeRegistry::registryValue(RegistryRoot root,
                                                         const std::u16string& path,
                                                         const std::u16string& name) {
    auto* node = roots_[static_cast<int>(root)]->walk(path, false);
    auto* value = node ? node->find(name) : nullptr;
    if (!value) return std::nullopt;
    return *value;
}

void FakeRegistry::setRegistryValue(RegistryRoot root, const std::u16string& path,
                                    const std::u16string& name, const RegistryValue& value) {
    roots_[static_cast<int>(root)]->walk(path, true)->set(name, value);
}

} // namespace platform
