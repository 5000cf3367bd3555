#pragma once

#include "platform/Reporter.h"

#include <mutex>
#include <string>
#include <vector>

namespace platform {

struct FakeMessageBox {
    std::u16string text, caption;
    std::uint32_t style = 0;
};

// Boxes and debug output, recorded; safe for the job's box threads.
class FakeReporter : public Reporter {
public:
    std::vector<FakeMessageBox> boxes() const;
    std::vector<std::string> debugLines() const; // narrow as given, wide as UTF-8
    int messageBoxResult = 1;

    int messageBox(const std::u16string& text, const std::u16string& caption,
                   std::uint32_t style) override;
    int messageBoxA(const std::string& text, const std::string& caption,
                    std::uint32_t style) override;
    void debugOutput(std::string_view text) override;
    void debugOutputW(const std::u16string& text) override;

private:
    mutable std::mutex lock_;
    std::vector<FakeMessageBox> boxes_;
    std::vector<std::string> debugLines_;
};

} // namespace platform
