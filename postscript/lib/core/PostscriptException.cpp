#include "core/PostscriptException.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

std::string formatString(const char* format, ...) {
    char buffer[1500];
    va_list args;
    va_start(args, format);
    int written = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (written < 0) return {};
    return std::string(buffer, std::strlen(buffer));
}

const std::string& PostscriptException::formattedText() {
    const char* name = file ? file : "";
    // Only the file's own name: both separators, since the build may be either.
    for (const char* p = name; *p; ++p)
        if (*p == '\\' || *p == '/') name = p + 1;
    text = formatString("[%s:%u] %s", name, line, message.c_str());
    if (text.empty() || text.back() != '\n') text += '\n';
    return text;
}
