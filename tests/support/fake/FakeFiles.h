#pragma once

#include "platform/Files.h"
#include "support/fake/FakeCalls.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace platform {

// Files and directories in memory, by path compared without case, and profile files read
// as the system reads them.
class FakeFiles : public FileSystem {
public:
    explicit FakeFiles(FakeCalls& calls);
    ~FakeFiles() override;

    // Where relative paths lead; "/" separates as "\" does.
    std::u16string currentDirectory = u"C:\\work";

    // A file with its directories, for setting up a test.
    void writeFile(const std::u16string& path, const std::string& bytes);
    std::optional<std::string> fileText(const std::u16string& path) const;

    std::optional<std::uint32_t> attributes(const std::u16string& path) override;
    bool createDirectory(const std::u16string& path) override;
    std::unique_ptr<File> createFile(const std::u16string& path) override;
    std::optional<std::vector<std::uint8_t>> readFile(const std::u16string& path) override;
    std::vector<std::u16string> profileSection(const std::u16string& file,
                                               const std::u16string& section,
                                               std::size_t bufferChars) override;
    std::uint32_t profileInt(const std::u16string& file, const std::u16string& section,
                             const std::u16string& key, std::int32_t fallback) override;

    struct Node;

private:
    std::u16string keyOf(const std::u16string& path) const; // absolute, "\\" only, folded
    std::vector<std::u16string> sectionLines(const std::u16string& file,
                                             const std::u16string& section,
                                             std::size_t bufferChars);

    FakeCalls& calls_;
    std::map<std::u16string, std::shared_ptr<Node>> files_; // by folded path
    std::set<std::u16string> directories_;                  // folded paths
};

} // namespace platform
