#include "platform/DebugOutput.h"

namespace platform {

namespace {
DebugSink& sink() {
    static DebugSink current;
    return current;
}
} // namespace

void outputDebugString(std::string_view text) {
    if (sink())
        sink()(text);
    else
        detail::systemDebugOutput(text);
}

void setDebugSink(DebugSink newSink) {
    sink() = std::move(newSink);
}

} // namespace platform
