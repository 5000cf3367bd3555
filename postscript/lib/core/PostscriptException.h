#pragma once

#include <cstdint>
#include <string>

// The one failure of the conversion face. It carries the source location of the
// throw; the host sees "[file:line] message".
class PostscriptException {
public:
    PostscriptException(const char* file, uint32_t line, std::string message)
        : file(file), line(line), message(std::move(message)) {}

    const std::string& formattedText();

    const char* file;
    uint32_t line;
    std::string message;
    std::string text;
};

// A runaway program stopped at a machine limit (a full stack, the step
// limit). The failure is an ordinary one to the host; the translator also
// drops the runaway's remaining work, so that the next buffer goes on.
class RunawayStopped : public PostscriptException {
public:
    using PostscriptException::PostscriptException;
};

// printf-style formatting through a buffer of 1500 bytes; longer output is cut.
std::string formatString(const char* format, ...) __attribute__((format(printf, 1, 2)));

#define PS_THROW(message) throw PostscriptException(__FILE__, __LINE__, (message))
#define PS_THROWF(...) throw PostscriptException(__FILE__, __LINE__, formatString(__VA_ARGS__))
#define PS_THROW_RUNAWAY(...) throw RunawayStopped(__FILE__, __LINE__, formatString(__VA_ARGS__))
