#include "support/TestSupport.h"

#include "core/NameObject.h"
#include "core/Parser.h"
#include "core/PostscriptException.h"
#include "core/StringObject.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <typeinfo>

namespace testing_support {

namespace {
const double identity[6] = {1, 0, 0, 1, 0, 0};
const float floatIdentity[6] = {1, 0, 0, 1, 0, 0};
} // namespace

Session::Session() : pdf(identity) {}

Handle::Handle() : h(PSOpen(floatIdentity)) {}

bool Session::run(std::string_view text) {
    pdf.contentText.clear();
    return pdf.executeBuffer(reinterpret_cast<const unsigned char*>(text.data()),
                             static_cast<uint32_t>(text.size()));
}

std::string rowName(std::size_t index, const std::string& text) {
    std::string name = "row" + std::to_string(index);
    bool gap = false;
    for (char c : text) {
        if (name.size() >= 40) break;
        const bool word = std::isalnum(static_cast<unsigned char>(c));
        if (word)
            name += c;
        else if (!gap)
            name += '_';
        gap = !word;
    }
    while (name.back() == '_')
        name.pop_back();
    return name;
}

std::string render(const PostscriptObject* object) {
    if (object->type == ps_string) {
        const auto* string = static_cast<const StringObject*>(object);
        std::string text = "(";
        for (unsigned char c : string->text()) {
            if (c >= 0x20 && c < 0x7F && c != '\\') {
                text += static_cast<char>(c);
            } else {
                char hex[8];
                std::snprintf(hex, sizeof hex, "\\x%02X", c);
                text += hex;
            }
        }
        text += ')';
        for (const std::string& filter : string->stringData()->filters)
            text += " /" + filter;
        return text;
    }
    if (object->type == ps_name) {
        const auto* name = static_cast<const NameObject*>(object);
        // An operator is a name with an action of its own.
        if (typeid(*object) != typeid(NameObject)) return "--" + name->text() + "--";
        return (object->executable ? "" : "/") + name->text();
    }
    return object->describe();
}

std::vector<std::string> scanAll(std::string_view text, const std::vector<std::size_t>& cuts) {
    Session session;
    Parser& parser = *session.interpreter().parser;
    std::vector<std::string> objects;
    auto* data = reinterpret_cast<const unsigned char*>(text.data());
    std::vector<std::size_t> ends(cuts);
    ends.push_back(text.size());
    std::size_t from = 0;
    std::size_t lastFailure = text.size() + 1;
    for (std::size_t end : ends) {
        while (from < end) {
            parser.setBuffer(data + from, data + end);
            try {
                while (PostscriptObject* object = parser.nextObject()) {
                    objects.push_back(render(object));
                    releaseIfUnreferenced(object);
                }
                from = end;
            } catch (PostscriptException& failure) {
                // Go on where the scanner stopped, with the state the failure
                // left; a failure that repeats without reading a byte is noted
                // once and its byte skipped.
                std::size_t at = static_cast<std::size_t>(parser.cursor - data);
                if (at != lastFailure) objects.push_back("ERROR: " + failure.message);
                from = at == lastFailure ? at + 1 : at;
                lastFailure = at;
            }
        }
    }
    return objects;
}

std::string Session::stackValues() const {
    std::string text;
    for (const PostscriptObject* object : pdf.interpreter->operandStack->items) {
        if (!text.empty()) text += ' ';
        text += object->doubleEqualsText();
    }
    return text;
}

std::string Session::error() const {
    const std::string& full = pdf.errorText;
    std::size_t close = full.find("] ");
    std::string message = close == std::string::npos ? full : full.substr(close + 2);
    if (!message.empty() && message.back() == '\n') message.pop_back();
    return message;
}

std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (PostscriptException& failure) {
        return failure.message;
    }
    return {};
}

std::vector<std::filesystem::path> samplePrograms() {
    std::vector<std::filesystem::path> found;
    std::error_code ec;
    std::filesystem::path root(KEL_SAMPLES_DIR);
    if (!std::filesystem::is_directory(root, ec)) return found;
    for (auto& entry : std::filesystem::recursive_directory_iterator(root, ec)) {
        if (!entry.is_regular_file()) continue;
        if (entry.path().extension() == ".md") continue;
        found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace testing_support
