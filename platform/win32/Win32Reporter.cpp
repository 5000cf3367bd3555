#include "platform/DebugOutput.h"
#include "platform/win32/ScopedHandle.h"
#include "platform/win32/Win32Platform.h"

namespace platform::win32 {

namespace {
class Win32Reporter : public Reporter {
public:
    int messageBox(const std::u16string& text, const std::u16string& caption,
                   std::uint32_t style) override {
        return ::MessageBoxW(nullptr, wide(text), wide(caption), style);
    }
    int messageBoxA(const std::string& text, const std::string& caption,
                    std::uint32_t style) override {
        return ::MessageBoxA(nullptr, text.c_str(), caption.c_str(), style);
    }
    void debugOutput(std::string_view text) override { outputDebugString(text); }
    void debugOutputW(const std::u16string& text) override { ::OutputDebugStringW(wide(text)); }
};
} // namespace

Reporter& Win32Platform::reporter() {
    static Win32Reporter instance;
    return instance;
}

} // namespace platform::win32
