#pragma once

#include <functional>
#include <string_view>

namespace platform {

// Text for a debugger: OutputDebugStringA on Windows; on other systems stderr,
// when KELUMPD64_DEBUG is set in the environment.
void outputDebugString(std::string_view text);

// Tests catch the text instead; an empty function restores the system's way.
using DebugSink = std::function<void(std::string_view)>;
void setDebugSink(DebugSink sink);

namespace detail {
void systemDebugOutput(std::string_view text); // per backend
}

} // namespace platform
