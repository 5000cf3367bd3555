#include "platform/DebugOutput.h"

#include <cstdio>
#include <cstdlib>

namespace platform::detail {

void systemDebugOutput(std::string_view text) {
    if (!std::getenv("KELUMPD64_DEBUG")) return;
    std::fwrite(text.data(), 1, text.size(), stderr);
    if (text.empty() || text.back() != '\n') std::fputc('\n', stderr);
}

} // namespace platform::detail
