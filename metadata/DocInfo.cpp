#include "metadata/DocInfo.h"

#include "metadata/XmpPacket.h"
#include "platform/Errors.h"
#include "umpd/NameMacros.h"
#include "umpd/PrinterConfig.h"

#include <cstring>

namespace {
// The product stands as both producer and creator tool; no setting changes them.
constexpr std::u16string_view productName = u"Foliograph";

// The buffer a text setting is read into: a longer value is not read at all.
constexpr std::size_t textBufferBytes = 4000;

// The value as that buffer holds it: its units up to the first NUL, whatever its type. A value
// that fills the buffer without a NUL would leave it unterminated, so it counts as too long.
std::u16string bufferText(const platform::RegistryValue& value) {
    std::u16string text(value.data.size() / 2, u'\0');
    std::memcpy(text.data(), value.data.data(), text.size() * 2);
    auto end = text.find(u'\0');
    if (end == std::u16string::npos && value.data.size() >= textBufferBytes) return {};
    text.resize(end == std::u16string::npos ? text.size() : end);
    return text;
}

// Straight from the registry, not the map: the key is opened afresh for each value.
std::u16string readText(PrinterConfig& config, std::u16string_view name) {
    auto key = config.openPrinterKey(keyAccess::keyRead);
    if (!key) return {};
    platform::RegistryValue value;
    if (key.get()->queryValue(std::u16string(name), value, textBufferBytes) !=
        platform::error::success)
        return {}; // missing, too long or unreadable: the buffer stays empty
    return bufferText(value);
}

std::uint32_t readFlag(PrinterConfig& config, std::u16string_view name) {
    std::uint32_t value = 0;
    return config.readDwordSetting(name, value, 0) ? value : 0;
}

// What follows the last "\" or "/"; one at index 0 does not count.
std::u16string_view baseName(std::u16string_view name) {
    for (std::size_t i = name.size(); i-- > 1;)
        if (name[i] == u'\\' || name[i] == u'/') return name.substr(i + 1);
    return name;
}
} // namespace

DocInfo readDocInfo(PrinterConfig& config) {
    static constexpr struct {
        const char16_t* name;
        std::u16string DocInfo::*field;
    } texts[] = {
        {u"DocInfoTitle", &DocInfo::title},
        {u"DocInfoAuthor", &DocInfo::author},
        {u"DocInfoSubject", &DocInfo::subject},
        {u"DocInfoKeywords", &DocInfo::keywords},
        {u"DocInfoCreator", &DocInfo::creator},
        {u"DocInfoProducer", &DocInfo::producer},
        {u"DocInfoCreationDate", &DocInfo::creationDate},
        {u"DocInfoModDate", &DocInfo::modDate},
    };
    DocInfo info;
    info.enabled = readFlag(config, u"DocInfoEnable");
    for (const auto& text : texts)
        info.*text.field = readText(config, text.name);
    info.fromDoc = readFlag(config, u"DocInfoFromDoc");
    return info;
}

std::u16string buildPdfaXml(PrinterConfig& config, std::u16string_view docName) {
    auto info = readDocInfo(config);
    if (info.enabled == 0) {
        // Subject and keywords stay: only title and author follow the switch.
        info.title.clear();
        info.author.clear();
    }
    if (info.title.empty()) info.title = baseName(untilNul(docName));
    auto pdfa = static_cast<std::uint32_t>(config.settings.getInt(u"pdfa", 1));
    return buildXmpPacket(info.title, info.author, info.subject, info.keywords, productName,
                          productName, pdfa, {}, {}, {}, {}, {});
}
