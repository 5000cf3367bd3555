#include "support/fake/FakeReporter.h"

#include "platform/WideText.h"

namespace platform {

std::vector<FakeMessageBox> FakeReporter::boxes() const {
    std::lock_guard lock(lock_);
    return boxes_;
}

std::vector<std::string> FakeReporter::debugLines() const {
    std::lock_guard lock(lock_);
    return debugLines_;
}

int FakeReporter::messageBox(const std::u16string& text, const std::u16string& caption,
                             std::uint32_t style) {
    std::lock_guard lock(lock_);
    boxes_.push_back({text, caption, style});
    return messageBoxResult;
}

int FakeReporter::messageBoxA(const std::string& text, const std::string& caption,
                              std::uint32_t style) {
    return messageBox(fromUtf8(text), fromUtf8(caption), style);
}

void FakeReporter::debugOutput(std::string_view text) {
    std::lock_guard lock(lock_);
    debugLines_.emplace_back(text);
}

void FakeReporter::debugOutputW(const std::u16string& text) {
    debugOutput(toUtf8(text));
}

} // namespace platform
