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

class FakeKey : public RegistryKey {
public:
    FakeKey(FakePlatform& fake, FakePlatform::RegistryNode& node) : fake_(fake), node_(node) {}

    std::uint32_t queryValue(const std::u16string& name, RegistryValue& out,
                             std::size_t bufferSize) override {
        if (fake_.failing(Call::RegQueryValue)) return fake_.lastError_;
        for (const auto& [key, value] : node_.values) {
            if (!equalsIgnoreCase(key, name)) continue;
            if (value.data.size() > bufferSize) return error::moreData;
            out = value;
            return error::success;
        }
        return error::fileNotFound;
    }

    std::uint32_t setValue(const std::u16string& name, const RegistryValue& value) override {
        if (fake_.failing(Call::RegSetValue)) return fake_.lastError_;
        for (auto& [key, stored] : node_.values) {
            if (equalsIgnoreCase(key, name)) {
                stored = value;
                return error::success;
            }
        }
        node_.values.emplace_back(name, value);
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
        auto* node = &node_;
        disposition = regOpenedExistingKey;
        for (const auto& part : splitPath(path)) {
            auto& child = node->children[foldCase(part)];
            if (!child) {
                child = std::make_unique<FakePlatform::RegistryNode>();
                disposition = regCreatedNewKey;
            }
            node = child.get();
        }
        key = std::make_unique<FakeKey>(fake_, *node);
        return error::success;
    }

    std::uint32_t openSubKey(const std::u16string& path, std::uint32_t access,
                             std::unique_ptr<RegistryKey>& key) override {
        if (fake_.failing(Call::RegOpenKey, access)) return fake_.lastError_;
        auto* node = &node_;
        for (const auto& part : splitPath(path)) {
            auto it = node->children.find(foldCase(part));
            if (it == node->children.end()) return error::fileNotFound;
            node = it->second.get();
        }
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

FakePlatform::RegistryNode& FakePlatform::node(RegistryRoot root, const std::u16string& path) {
    auto* node = roots_[static_cast<int>(root)].get();
    for (const auto& part : splitPath(path)) {
        auto& child = node->children[foldCase(part)];
        if (!child) child = std::make_unique<RegistryNode>();
        node = child.get();
    }
    return *node;
}

std::optional<RegistryValue> FakePlatform::registryValue(RegistryRoot root,
                                                         const std::u16string& path,
                                                         const std::u16string& name) {
    const RegistryNode* node = roots_[static_cast<int>(root)].get();
    for (const auto& part : splitPath(path)) {
        auto it = node->children.find(foldCase(part));
        if (it == node->children.end()) return std::nullopt;
        node = it->second.get();
    }
    for (const auto& [key, value] : node->values)
        if (equalsIgnoreCase(key, name)) return value;
    return std::nullopt;
}

void FakePlatform::setRegistryValue(RegistryRoot root, const std::u16string& path,
                                    const std::u16string& name, const RegistryValue& value) {
    auto& values = node(root, path).values;
    for (auto& [key, stored] : values) {
        if (equalsIgnoreCase(key, name)) {
            stored = value;
            return;
        }
    }
    values.emplace_back(name, value);
}

} // namespace platform
