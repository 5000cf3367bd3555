#include "support/fake/FakeFiles.h"

#include "platform/WideText.h"

namespace platform {

struct FakeFiles::Node {
    std::vector<std::uint8_t> bytes;
};

FakeFiles::FakeFiles(FakeCalls& calls) : calls_(calls) {
    for (auto dir :
         {u"C:", u"C:\\windows", u"C:\\windows\\system32", u"C:\\users", u"C:\\users\\anna",
          u"C:\\users\\anna\\AppData", u"C:\\users\\anna\\AppData\\Local",
          u"C:\\users\\anna\\AppData\\Roaming", u"C:\\users\\anna\\Documents", u"C:\\work"})
        directories_.insert(foldCase(dir));
}

FakeFiles::~FakeFiles() = default;

namespace {
std::u16string parentOf(const std::u16string& path) {
    auto cut = path.find_last_of(u'\\');
    return cut == std::u16string::npos ? std::u16string() : path.substr(0, cut);
}

std::u16string trim(std::u16string_view text) {
    auto first = text.find_first_not_of(u" \t\r");
    if (first == std::u16string_view::npos) return {};
    auto last = text.find_last_not_of(u" \t\r");
    return std::u16string(text.substr(first, last - first + 1));
}

class FakeFile : public File {
public:
    FakeFile(FakeCalls& calls, std::shared_ptr<FakeFiles::Node> node)
        : calls_(calls), node_(std::move(node)) {}
    bool write(const void* data, std::uint32_t size, std::uint32_t& written) override {
        written = 0;
        if (calls_.failing(Call::WriteFile)) return false;
        auto* bytes = static_cast<const std::uint8_t*>(data);
        node_->bytes.insert(node_->bytes.end(), bytes, bytes + size);
        written = size;
        return true;
    }

private:
    FakeCalls& calls_;
    std::shared_ptr<FakeFiles::Node> node_;
};
} // namespace

std::u16string FakeFiles::keyOf(const std::u16string& path) const {
    std::u16string p = path;
    for (auto& c : p)
        if (c == u'/') c = u'\\';
    bool absolute = (p.size() >= 2 && p[1] == u':') || (!p.empty() && p[0] == u'\\');
    if (!absolute) p = currentDirectory + u"\\" + p;
    return foldCase(p);
}

std::optional<std::uint32_t> FakeFiles::attributes(const std::u16string& path) {
    if (calls_.failing(Call::GetFileAttributes)) return std::nullopt;
    if (path.empty()) {
        calls_.lastError = 3; // ERROR_PATH_NOT_FOUND: an empty path names nothing
        return std::nullopt;
    }
    auto key = keyOf(path);
    while (key.size() > 3 && key.back() == u'\\')
        key.pop_back();
    if (directories_.count(key)) return fileAttributeDirectory;
    if (files_.count(key)) return fileAttributeNormal;
    calls_.lastError = error::fileNotFound;
    return std::nullopt;
}

bool FakeFiles::createDirectory(const std::u16string& path) {
    if (calls_.failing(Call::CreateDirectory)) return false;
    auto key = keyOf(path);
    while (!key.empty() && key.back() == u'\\')
        key.pop_back();
    if (directories_.count(key) || files_.count(key)) {
        calls_.lastError = error::alreadyExists;
        return false;
    }
    if (!directories_.count(parentOf(key))) {
        calls_.lastError = 3; // ERROR_PATH_NOT_FOUND
        return false;
    }
    directories_.insert(key);
    return true;
}

std::unique_ptr<File> FakeFiles::createFile(const std::u16string& path) {
    if (calls_.failing(Call::CreateFile)) return nullptr;
    auto key = keyOf(path);
    if (directories_.count(key) || !directories_.count(parentOf(key))) {
        calls_.lastError = directories_.count(key) ? error::accessDenied : 3;
        return nullptr;
    }
    auto node = std::make_shared<Node>();
    files_[key] = node;
    return std::make_unique<FakeFile>(calls_, node);
}

std::optional<std::vector<std::uint8_t>> FakeFiles::readFile(const std::u16string& path) {
    if (calls_.failing(Call::ReadFile)) return std::nullopt;
    auto it = files_.find(keyOf(path));
    if (it == files_.end()) {
        calls_.lastError = error::fileNotFound;
        return std::nullopt;
    }
    return it->second->bytes;
}

void FakeFiles::writeFile(const std::u16string& path, const std::string& bytes) {
    auto key = keyOf(path);
    for (auto dir = parentOf(key); !dir.empty(); dir = parentOf(dir))
        directories_.insert(dir);
    auto node = std::make_shared<Node>();
    node->bytes.assign(bytes.begin(), bytes.end());
    files_[key] = node;
}

std::optional<std::string> FakeFiles::fileText(const std::u16string& path) const {
    auto it = files_.find(keyOf(path));
    if (it == files_.end()) return std::nullopt;
    return std::string(it->second->bytes.begin(), it->second->bytes.end());
}

// A profile file as the system reads one: "[section]" lines, then "key=value" lines;
// names compare without case, blanks around keys and values do not count.
std::vector<std::u16string> FakeFiles::sectionLines(const std::u16string& file,
                                                    const std::u16string& section,
                                                    std::size_t bufferChars) {
    std::vector<std::u16string> lines;
    auto text = fileText(file);
    if (!text) return lines;
    auto wide = fromUtf8(*text);
    bool inSection = false;
    std::size_t used = 1; // the list's final NUL
    std::size_t pos = 0;
    while (pos <= wide.size()) {
        auto end = wide.find(u'\n', pos);
        if (end == std::u16string::npos) end = wide.size();
        auto line = trim(std::u16string_view(wide).substr(pos, end - pos));
        pos = end + 1;
        if (line.empty()) continue;
        if (line.front() == u'[') {
            auto close = line.find(u']');
            inSection = equalsIgnoreCase(trim(line.substr(1, close - 1)), section);
            continue;
        }
        if (!inSection) continue;
        auto eq = line.find(u'=');
        if (eq != std::u16string::npos)
            line = trim(line.substr(0, eq)) + u"=" + trim(line.substr(eq + 1));
        if (used + line.size() + 1 > bufferChars) break;
        used += line.size() + 1;
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::u16string> FakeFiles::profileSection(const std::u16string& file,
                                                      const std::u16string& section,
                                                      std::size_t bufferChars) {
    if (calls_.failing(Call::GetPrivateProfileSection)) return {};
    return sectionLines(file, section, bufferChars);
}

std::uint32_t FakeFiles::profileInt(const std::u16string& file, const std::u16string& section,
                                    const std::u16string& key, std::int32_t fallback) {
    if (calls_.failing(Call::GetPrivateProfileInt)) return static_cast<std::uint32_t>(fallback);
    for (const auto& line : sectionLines(file, section, 32767)) {
        auto eq = line.find(u'=');
        if (eq == std::u16string::npos || !equalsIgnoreCase(line.substr(0, eq), key)) continue;
        auto value = line.substr(eq + 1);
        bool negative = !value.empty() && value[0] == u'-';
        std::uint32_t n = 0;
        for (std::size_t i = negative ? 1 : 0; i < value.size(); ++i) {
            if (value[i] < u'0' || value[i] > u'9') break;
            n = n * 10 + (value[i] - u'0');
        }
        return negative ? 0u - n : n;
    }
    return static_cast<std::uint32_t>(fallback);
}

} // namespace platform
