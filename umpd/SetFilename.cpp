#include "umpd/SetFilename.h"

#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/DirectoryPath.h"
#include "umpd/NameMacros.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SystemServices.h"

#include <atomic>

namespace {
constexpr std::size_t templateLineBytes = 520;
constexpr int randomTries = 11;
constexpr char16_t defaultTrimChar = u'-';

std::atomic<bool> randomSeeded{false};

bool endsInSeparator(std::u16string_view text) {
    return !text.empty() && (text.back() == u'\\' || text.back() == u'/');
}

// out with text appended, as much of it as leaves out within outSize - 1 characters.
void appendBounded(std::u16string& out, std::u16string_view text, std::size_t outSize) {
    std::size_t room = outSize > out.size() + 1 ? outSize - out.size() - 1 : 0;
    out += text.substr(0, cutLength(text, room));
}

// A setting's text when its length is 1 to limit - 1.
std::u16string boundedSetting(const PrinterConfig* config, std::u16string_view key,
                              std::size_t limit) {
    const auto* value = config ? config->settings.get(key) : nullptr;
    if (!value) return {};
    auto text = untilNul(*value);
    return text.size() >= 1 && text.size() < limit ? std::u16string(text) : std::u16string();
}

// _wsplitpath's parts: drive "X:", folder up to its last separator, name, extension from the
// name's last ".".
struct PathParts {
    std::u16string_view drive, folder, name, extension;
};

PathParts splitPath(std::u16string_view path) {
    PathParts parts;
    if (path.size() >= 2 && path[1] == u':') {
        parts.drive = path.substr(0, 2);
        path.remove_prefix(2);
    }
    auto slash = path.find_last_of(u"\\/");
    if (slash != std::u16string_view::npos) {
        parts.folder = path.substr(0, slash + 1);
        path.remove_prefix(slash + 1);
    }
    auto dot = path.rfind(u'.');
    parts.name = path.substr(0, dot);
    if (dot != std::u16string_view::npos) parts.extension = path.substr(dot);
    return parts;
}
} // namespace

void SetFilename::forgetRandomSeed() {
    randomSeeded = false;
}

std::u16string repairLongPath(std::u16string_view path) {
    constexpr std::size_t limit = SetFilename::pathChars - 1;
    auto parts = splitPath(path);
    std::u16string out(parts.drive);
    if (parts.folder.size() + out.size() + parts.extension.size() >= limit - 1)
        out += u'\\';
    else
        out += parts.folder;
    std::size_t room = limit > out.size() + parts.extension.size()
                           ? limit - out.size() - parts.extension.size()
                           : 0;
    out += parts.name.substr(0, cutLength(parts.name, room));
    // An extension too long for any name is cut too: the path must fit.
    appendBounded(out, parts.extension, limit + 1);
    return out;
}

void SetFilename::readSettings() {
    const auto* trim = config ? config->settings.get(u"TrimNameChar") : nullptr;
    trimChar = trim ? static_cast<char16_t>(intValue(*trim)) : defaultTrimChar;
    defaultExtension = boundedSetting(config, u"DefaultExtension", extensionChars);
    if (defaultExtension.empty()) defaultExtension = u".pdf";
    defaultSaveDir = boundedSetting(config, u"DefaultSaveDir", templateChars);
    defaultSaveFilename = boundedSetting(config, u"DefaultSaveFilename", templateChars);
}

// "@file": the template is the first line of that file, in the ANSI code page.
void SetFilename::readTemplateFile() {
    if (defaultSaveFilename.empty() || defaultSaveFilename[0] != u'@') return;
    auto bytes = platform::current().files().readFile(defaultSaveFilename.substr(1));
    if (!bytes) return;
    std::string line(bytes->begin(), bytes->end());
    line = line.substr(0, line.find('\0'));
    auto newline = line.find('\n');
    if (newline != std::string::npos) line.resize(newline + 1);
    if (line.size() > templateLineBytes - 1) line.resize(templateLineBytes - 1);
    while (!line.empty() && (line.back() == ' ' || line.back() == '\t' || line.back() == '\r' ||
                             line.back() == '\n'))
        line.pop_back();
    auto text = platform::current().system().fromAnsi(line);
    defaultSaveFilename = text.substr(0, cutLength(text, templateChars - 1));
}

void SetFilename::getDirectory(std::u16string& out, std::size_t capacity) {
    if (defaultSaveDir.empty()) {
        out.clear();
        return;
    }
    out = capacity == 0 || defaultSaveDir.size() >= capacity - 1 ? u"C:\\" : defaultSaveDir;
    if (!endsInSeparator(out)) out += u'\\';
    if (capacity > 0 && out.size() >= capacity) out.resize(cutLength(out, capacity - 1));
}

void SetFilename::appendDocName(std::u16string& docName, std::u16string& out,
                                std::size_t capacity) {
    auto name = untilNul(docName);
    // "Writer - Letter.docx": the application's part ends at the trim character. The name
    // stops at its NUL, so a NUL trim character finds nothing.
    std::size_t start = 0;
    auto trim = name.find(trimChar);
    if (trim != std::u16string_view::npos) {
        start = trim + 1;
        while (start < name.size() && name[start] == u' ')
            ++start;
        if (start >= name.size()) start = 0;
    }
    auto rest = name.substr(start);
    std::size_t room = capacity > defaultExtension.size() ? capacity - defaultExtension.size() : 0;
    std::size_t keep = rest.size() < room ? rest.size() : (room > 0 ? room - 1 : 0);
    std::u16string text(rest.substr(0, cutLength(rest, keep)));
    // A short suffix is the document's type, which the extension replaces.
    for (std::size_t i = text.size() > 1 ? text.size() - 1 : 0; i >= 1; --i) {
        if (text[i] == u'.') {
            if (text.size() - i - 1 < 5) text.resize(i);
            break;
        }
    }
    text += defaultExtension;
    for (auto& c : text)
        if (isIllegalNameChar(c)) c = u'_';
    // The folder leaves little room only when it is near the limit itself; the path must fit.
    if (capacity == 0)
        text.clear();
    else if (text.size() > capacity - 1)
        text.resize(cutLength(text, capacity - 1));
    out += text;
    // From here on this is the job's document name.
    docName = text.substr(0, cutLength(text, docNameChars - 1));
}

void SetFilename::randomName(std::u16string& out, std::size_t outSize) {
    auto& system = platform::current().system();
    auto& files = platform::current().files();
    if (!randomSeeded.exchange(true))
        system.seedRandom(system.currentThreadId() * system.tickCount());
    for (int attempt = 1;; ++attempt) {
        auto number = platform::fromUtf8(std::to_string(system.random()));
        std::size_t reserved = number.size() + defaultExtension.size() + 1;
        if (defaultSaveDir.empty())
            out.clear();
        else if (outSize > reserved && defaultSaveDir.size() < outSize - reserved)
            out = defaultSaveDir;
        else
            out = u"C:\\";
        if (!out.empty() && !endsInSeparator(out)) out += u'\\';
        appendBounded(out, number, outSize);
        appendBounded(out, defaultExtension, outSize);
        trace(u"randstring [%s]\n", out);
        if (attempt == randomTries || !files.attributes(out)) return;
    }
}

void SetFilename::numberedName(std::u16string& docName, std::u16string& out, std::size_t outSize) {
    auto length = defaultSaveFilename.size();
    getDirectory(out, outSize > length ? outSize - length : 0);
    std::int32_t number = config ? config->settings.getInt(u"AUTONUM", 0) : 0;
    // Advanced before the file exists: a job that fails still uses up its number.
    if (config)
        config->setIntSetting(u"AUTONUM",
                              static_cast<std::int32_t>(static_cast<std::uint32_t>(number) + 1));
    auto expanded = expandMacros(defaultSaveFilename, docName, number, true);
    appendBounded(out, expanded.size() >= pathChars ? defaultSaveFilename : expanded, outSize);
}

bool SetFilename::setOutputFilename(std::u16string& docName, std::u16string& out,
                                    std::size_t outSize, std::uint32_t action) {
    readSettings();
    readTemplateFile();
    switch (action) {
    case 0:
    case 2:
    case 3:
    case 5: {
        getDirectory(out, outSize);
        // The template stands in for a missing document name, as a name, not expanded.
        auto& taken =
            docName.empty() && !defaultSaveFilename.empty() ? defaultSaveFilename : docName;
        if (!untilNul(taken).empty())
            appendDocName(taken, out, outSize > out.size() ? outSize - out.size() : 0);
        else
            randomName(out, outSize);
        break;
    }
    case 1:
        numberedName(docName, out, outSize);
        break;
    case 4:
        randomName(out, outSize);
        break;
    default:
        break;
    }
    out = urlDecode(out);
    if (out.size() > pathChars) out = repairLongPath(out);

    auto folder = out.substr(0, cutLength(out, pathChars - 1));
    auto slash = folder.find_last_of(u"\\/");
    if (slash != std::u16string::npos && slash > 0) folder.resize(slash);
    return createDirectoryPath(folder);
}
