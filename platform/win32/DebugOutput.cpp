#include "platform/DebugOutput.h"

#include "platform/win32/Windows.h"

#include <string>

namespace platform::detail {

void systemDebugOutput(std::string_view text) {
    std::string copy(text); // OutputDebugStringA wants a NUL-terminated text
    OutputDebugStringA(copy.c_str());
}

} // namespace platform::detail
