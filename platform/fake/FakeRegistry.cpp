#include "platform/WideText.h"
#include "platform/fake/FakeInternals.h"

namespace platform {

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

FakePlatform::RegistryNode* FakePlatform::RegistryNode::walk(const std::u16string& path,
                                                             bool create, bool* created) {
    auto* node = this;
    for (const auto& part : splitPath(path)) {
        auto key = foldCase(part);
        auto it = node->children.find(key);
        if (it == node->children.end()) {
            if (!create) return nullptr;
            it = node->children.emplace(key, std::make_unique<RegistryNode>()).first;
            if (created) *created = true;
        }
        node = it->second.get();
    }
    return node;
}

RegistryValue* FakePlatform::RegistryNode::find(std::u16string_view name) {
    for (auto& [key, value] : values)
        if (equalsIgnoreCase(key, name)) return &value;
    return nullptr;
}

void FakePlatform::RegistryNode::set(const std::u16string& name, const RegistryValue& value) {
    if (auto* stored = find(name))
        *stored = value;
    else
        values.emplace_back(name, value);
}

class FakeKey : public RegistryKey {
public:
    FakeKey(FakePlatform& fake, FakePlatform::RegistryNode& node) : fake_(fake), node_(node) {}

    std::uint32_t queryValue(const std::u16string& name, RegistryValue& out,
                             std::size_t bufferSize) override {
        if (fake_.failing(Call::RegQueryValue)) return fake_.lastError_;
        auto* value = node_.find(name);
        if (!value) return error::fileNotFound;
        if (value->data.size() > bufferSize) return error::moreData;
        out = *value;
        return error::success;
    }

    std::uint32_t setValue(const std::u16string& name, const RegistryValue& value) override {
        if (fake_.failing(Call::RegSetValue)) return fake_.lastError_;
        node_.set(name, value);
        return error::success;
    }

    std::uint32_t enumValue(std::uint32_t index, std::u16string& name,
                            RegistryValue& out) override {
        if (fake_.failing(Call::RegEnumValue)) return fake_.lastError_;
        if (index >= node_.values.size()) return error::noMoreItems;
        name = node_.values[index].first;
        out = node_.values[index].second;
        return error::success;
    }

    std::uint32_t valueCount(std::uint32_t& count) override {
        if (fake_.failing(Call::RegQueryInfoKey)) return fake_.lastError_;
        count = static_cast<std::uint32_t>(node_.values.size());
        return error::success;
    }

    std::uint32_t createSubKey(const std::u16string& path, std::uint32_t access,
                               std::unique_ptr<RegistryKey>& key,
                               std::uint32_t& disposition) override {
        if (fake_.failing(Call::RegCreateKey, access)) return fake_.lastError_;
        bool created = false;
        key = std::make_unique<FakeKey>(fake_, *node_.walk(path, true, &created));
        disposition = created ? regCreatedNewKey : regOpenedExistingKey;
        return error::success;
    }

    std::uint32_t openSubKey(const std::u16string& path, std::uint32_t access,
                             std::unique_ptr<RegistryKey>& key) override {
        if (fake_.failing(Call::RegOpenKey, access)) return fake_.lastError_;
        auto* node = node_.walk(path, false);
        if (!node) return error::fileNotFound;
        key = std::make_unique<FakeKey>(fake_, *node);
        return error::success;
    }

private:
    FakePlatform& fake_;
    FakePlatform::RegistryNode& node_;
};

std::unique_ptr<RegistryKey> FakePlatform::root(RegistryRoot root) {
    return std::make_unique<FakeKey>(*this, *roots_[static_cast<int>(root)]);
}

bool FakePlatform::hasOpenCurrentUser() {
    return hasRegOpenCurrentUser;
}

std::uint32_t FakePlatform::openCurrentUser(std::uint32_t access,
                                            std::unique_ptr<RegistryKey>& key) {
    if (!hasRegOpenCurrentUser) return error::procNotFound;
    if (failing(Call::RegOpenCurrentUser, access)) return lastError_;
    key = root(RegistryRoot::CurrentUser);
    return error::success;
}

std::optional<RegistryValue> FakePlatform::registryValue(RegistryRoot root,
                                                         const std::u16string& path,
                                                         const std::u16string& name) {
    auto* node = roots_[static_cast<int>(root)]->walk(path, false);
    auto* value = node ? node->find(name) : nullptr;
    if (!value) return std::nullopt;
    return *value;
}

void FakePlatform::setRegistryValue(RegistryRoot root, const std::u16string& path,
                                    const std::u16string& name, const RegistryValue& value) {
    roots_[static_cast<int>(root)]->walk(path, true)->set(name, value);
}

} // namespace platform
