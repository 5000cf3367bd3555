#include "umpd/SystemServices.h"

#include "platform/Platform.h"
#include "platform/WideText.h"

#include <cstdarg>
#include <cstdio>

namespace {
platform::OsVersion version() {
    return platform::current().system().osVersion().value_or(platform::OsVersion{});
}
} // namespace

std::uint32_t getOsMajorVersion() {
    return version().major;
}
std::uint32_t getPlatformId() {
    return version().platformId;
}

bool isNt4() {
    auto v = version();
    return v.major == 4 && v.platformId == platformNt;
}

bool isNt5OrLater() {
    return getOsMajorVersion() >= 5;
}

std::u16string lastErrorText() {
    auto& system = platform::current().system();
    return system.errorMessage(system.lastError()).value_or(u"Error string not found");
}

void errorBox(const char* format, ...) {
    char text[1024]; // longer texts are cut
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    platform::current().reporter().messageBoxA(text, "Error", platform::mbServiceNotification);
}

void errorBoxText(std::u16string_view text) {
    platform::current().reporter().messageBox(std::u16string(text), u"Error",
                                              platform::mbServiceNotification);
}

void failureBox(std::u16string_view caption, std::uint32_t style) {
    auto text = lastErrorText();
    trace(u"Error: %s GetLastError: %s\n", caption, text);
    platform::current().reporter().messageBox(text, std::u16string(caption), style);
}
