// The printer's document information, read from the registry, and the packet of a job.

#include "metadata/DocInfo.h"
#include "metadata/PacketText.h"
#include "umpd/FakeOs.h"
#include "umpd/PrinterConfig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace testing_support;
using platform::Call;
using platform::RegistryRoot;
using platform::RegistryValue;

namespace {

const std::u16string printerKey = u"Software\\Foliograph\\P";

RegistryValue rawText(std::u16string_view units) {
    RegistryValue value{platform::regtype::string, {}};
    value.data.resize(units.size() * 2);
    std::memcpy(value.data.data(), units.data(), value.data.size());
    return value;
}

// A printer "P" whose key exists, so that no first-use defaults are laid in it.
class DocInfoTest : public FakeOsTest {
protected:
    DocInfoTest() {
        config.setPrinterName(u"P");
        set(u"NextAction", platform::dwordValue(3));
    }
    void set(const std::u16string& name, const RegistryValue& value) {
        fake.registry().setRegistryValue(RegistryRoot::CurrentUser, printerKey, name, value);
    }
    void setText(const std::u16string& name, const std::u16string& text) {
        set(name, platform::stringValue(text));
    }
    void setEveryField() {
        set(u"DocInfoEnable", platform::dwordValue(1));
        setText(u"DocInfoTitle", u"title");
        setText(u"DocInfoAuthor", u"author");
        setText(u"DocInfoSubject", u"subject");
        setText(u"DocInfoKeywords", u"keywords");
        setText(u"DocInfoCreator", u"creator");
        setText(u"DocInfoProducer", u"producer");
        setText(u"DocInfoCreationDate", u"D:2001");
        setText(u"DocInfoModDate", u"D:2002");
        set(u"DocInfoFromDoc", platform::dwordValue(7));
    }
    // Every field in order, as "name=value" lines.
    static std::string fields(const DocInfo& info) {
        return "enabled=" + std::to_string(info.enabled) + "\ntitle=" + utf8(info.title) +
               "\nauthor=" + utf8(info.author) + "\nsubject=" + utf8(info.subject) +
               "\nkeywords=" + utf8(info.keywords) + "\ncreator=" + utf8(info.creator) +
               "\nproducer=" + utf8(info.producer) + "\ncreationDate=" + utf8(info.creationDate) +
               "\nmodDate=" + utf8(info.modDate) + "\nreserved=" + utf8(info.reserved) +
               "\nfromDoc=" + std::to_string(info.fromDoc) + "\n";
    }

    PrinterConfig config;
};

const std::string everyField = "enabled=1\ntitle=title\nauthor=author\nsubject=subject\n"
                               "keywords=keywords\ncreator=creator\nproducer=producer\n"
                               "creationDate=D:2001\nmodDate=D:2002\nreserved=\nfromDoc=7\n";
const std::string noField = "enabled=0\ntitle=\nauthor=\nsubject=\nkeywords=\ncreator=\n"
                            "producer=\ncreationDate=\nmodDate=\nreserved=\nfromDoc=0\n";

TEST_F(DocInfoTest, ReadsEverySettingIntoItsField) {
    setEveryField();
    EXPECT_EQ(fields(readDocInfo(config)), everyField);
}

TEST_F(DocInfoTest, ReadsTheRegistryAndNotTheMap) {
    for (const auto* name : {u"DocInfoEnable", u"DocInfoTitle", u"DocInfoFromDoc"})
        config.settings.set(name, u"1");
    EXPECT_EQ(fields(readDocInfo(config)), noField);
}

TEST_F(DocInfoTest, RegistryFailuresGiveEmptyFields) {
    setEveryField();
    for (auto call : {Call::RegQueryValue, Call::RegCreateKey}) {
        fake.clearFailures();
        fake.fail(call);
        EXPECT_EQ(fields(readDocInfo(config)), noField);
    }
}

TEST_F(DocInfoTest, OpensTheKeyAfreshForEachValue) {
    setEveryField();
    fake.fail(Call::RegCreateKey, platform::error::accessDenied, 1);
    auto info = readDocInfo(config);
    EXPECT_EQ(info.enabled, 0u); // the first opening failed
    EXPECT_EQ(utf8(info.title), "title");
    EXPECT_EQ(info.fromDoc, 7u);
    EXPECT_EQ(fake.callCount(Call::RegCreateKey), 10);
}

// ---- what a text setting's buffer of 4000 bytes takes

struct TextRow {
    const char* name;
    std::optional<RegistryValue> value;
    std::u16string title;
};

class TextValue : public DocInfoTest, public ::testing::WithParamInterface<TextRow> {};

TEST_P(TextValue, FillsItsFieldOrLeavesItEmpty) {
    if (GetParam().value) set(u"DocInfoTitle", *GetParam().value);
    EXPECT_EQ(readDocInfo(config).title, GetParam().title);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, TextValue,
    ::testing::Values(
        TextRow{"Missing", std::nullopt, u""},
        // 3998 bytes of text and its NUL fill the buffer exactly.
        TextRow{"Text3998Bytes", platform::stringValue(std::u16string(1999, u'a')),
                std::u16string(1999, u'a')},
        TextRow{"Text4000Bytes", platform::stringValue(std::u16string(2000, u'a')), u""},
        TextRow{"Text5000Bytes", platform::stringValue(std::u16string(2500, u'a')), u""},
        TextRow{"Unterminated3998Bytes", rawText(std::u16string(1999, u'b')),
                std::u16string(1999, u'b')},
        TextRow{"Unterminated4000Bytes", rawText(std::u16string(2000, u'b')), u""},
        TextRow{"EmbeddedNul", rawText(std::u16string(u"ab\0cd\0", 6)), u"ab"},
        TextRow{"Expandable", RegistryValue{platform::regtype::expandString, {'x', 0, 0, 0}}, u"x"},
        // The buffer takes any type's bytes: a 32-bit 0x31 reads as "1".
        TextRow{"Dword", platform::dwordValue(0x31), u"1"}),
    rowName);

// ---- the packet of a job

struct JobRow {
    const char* name;
    std::u16string docName;
    std::optional<std::uint32_t> enable;
    std::u16string texts;               // "DocInfoName=text" lines
    std::optional<std::u16string> pdfa; // in the map
    std::string keywords;               // the pdf:Keywords line
    std::string dublinCore;
    std::string pdfaid;
};

const std::string dcOpen =
    "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/'>\n";
const std::string dcClose = "</rdf:Description>\n";

std::string dcTitle(const std::string& title) {
    return "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>" + title +
           "</rdf:li></rdf:Alt></dc:title>\n";
}
std::string dcCreator(const std::string& author) {
    return "<dc:creator><rdf:Seq><rdf:li>" + author + "</rdf:li></rdf:Seq></dc:creator>\n";
}
std::string dcDescription(const std::string& subject) {
    return "<dc:description><rdf:Alt><rdf:li xml:lang='x-default'>" + subject +
           "</rdf:li></rdf:Alt></dc:description>\n";
}
std::string part(const std::string& number) {
    return "<rdf:Description rdf:about='' xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'\n"
           "pdfaid:part='" +
           number + "'\npdfaid:conformance='B'\n/>\n";
}

std::string jobPacket(const JobRow& row) {
    return packetHead +
           "<rdf:Description rdf:about='' xmlns:pdf='http://ns.adobe.com/pdf/1.3/'\n"
           "pdf:Producer='Foliograph'\n" +
           row.keywords +
           "/>\n"
           "<rdf:Description rdf:about='' xmlns:xap='http://ns.adobe.com/xap/1.0/'\n"
           "xap:CreatorTool='Foliograph'\n"
           "xap:ModifyDate='" +
           fakeNow + "'\nxap:CreateDate='" + fakeNow + "'\n/>\n" + row.dublinCore + row.pdfaid +
           packetTail(firstGuid);
}

class JobPacket : public DocInfoTest, public ::testing::WithParamInterface<JobRow> {};

TEST_P(JobPacket, FromTheSettingsAndTheDocumentName) {
    const auto& row = GetParam();
    if (row.enable) set(u"DocInfoEnable", platform::dwordValue(*row.enable));
    for (std::u16string_view rest = row.texts; !rest.empty();) {
        auto line = rest.substr(0, rest.find(u'\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        auto eq = line.find(u'=');
        setText(std::u16string(line.substr(0, eq)), std::u16string(line.substr(eq + 1)));
    }
    if (row.pdfa) config.settings.set(u"pdfa", *row.pdfa);
    EXPECT_EQ(utf8(buildPdfaXml(config, row.docName)), jobPacket(row));
}

const std::u16string titleAuthorSubject = u"DocInfoTitle=T\nDocInfoAuthor=Ann\nDocInfoSubject=S";

// A document name alone, with the setting's title unused.
JobRow named(const char* name, std::u16string docName, const std::string& title) {
    return JobRow{name,
                  std::move(docName),
                  0,
                  u"",
                  std::nullopt,
                  "",
                  title.empty() ? "" : dcOpen + dcTitle(title) + dcClose,
                  part("1")};
}

INSTANTIATE_TEST_SUITE_P(
    Settings, JobPacket,
    ::testing::Values(
        // Title and author follow the switch; the subject does not.
        JobRow{"Disabled", u"C:\\docs\\report.txt", 0, titleAuthorSubject, std::nullopt, "",
               dcOpen + dcTitle("report.txt") + dcDescription("S") + dcClose, part("1")},
        JobRow{"EnableMissing", u"C:\\docs\\report.txt", std::nullopt, titleAuthorSubject,
               std::nullopt, "", dcOpen + dcTitle("report.txt") + dcDescription("S") + dcClose,
               part("1")},
        JobRow{"Enabled", u"C:\\docs\\report.txt", 1, titleAuthorSubject, std::nullopt, "",
               dcOpen + dcTitle("T") + dcCreator("Ann") + dcDescription("S") + dcClose, part("1")},
        JobRow{"EnabledEscaped", u"x", 1, u"DocInfoTitle=A & B", std::nullopt, "",
               dcOpen + dcTitle("A &amp; B") + dcClose, part("1")},
        JobRow{"EnabledWithoutTitle", u"a/b.ps", 1, u"DocInfoAuthor=Ann", std::nullopt, "",
               dcOpen + dcTitle("b.ps") + dcCreator("Ann") + dcClose, part("1")},
        JobRow{"KeywordsWhileDisabled", u"x", 0, u"DocInfoKeywords=it's", std::nullopt,
               "pdf:Keywords='it&apos;s'\n", dcOpen + dcTitle("x") + dcClose, part("1")},
        JobRow{"Pdfa0", u"x", 0, u"", u"0", "", dcOpen + dcTitle("x") + dcClose, ""},
        JobRow{"Pdfa2", u"x", 0, u"", u"2", "", dcOpen + dcTitle("x") + dcClose, part("2")},
        JobRow{"PdfaNegative", u"x", 0, u"", u"-1", "", dcOpen + dcTitle("x") + dcClose,
               part("-1")},
        // An empty text is _wtoi's 0; only an absent key is the default.
        JobRow{"PdfaEmptyText", u"x", 0, u"", u"", "", dcOpen + dcTitle("x") + dcClose, ""},
        JobRow{"NoNameNoTitle", u"", 1, u"", std::nullopt, "", "", part("1")},
        JobRow{"NoNameButSubject", u"", 1, u"DocInfoSubject=S", std::nullopt, "",
               dcOpen + dcDescription("S") + dcClose, part("1")},
        named("Backslashes", u"C:\\a\\b.ps", "b.ps"), named("Slashes", u"/home/u/x.ps", "x.ps"),
        named("MixedSeparators", u"a\\b/c", "c"), named("LastSeparatorWins", u"a/b\\c", "c"),
        named("LeadingBackslashOnly", u"\\x", "\\x"), named("LeadingSlashOnly", u"/x", "/x"),
        named("SlashAlone", u"/", "/"), named("TrailingSeparator", u"dir\\", ""),
        named("TwoSeparators", u"\\\\", ""),
        named("EndsAtNul", std::u16string(u"a\\b\0c\\d", 7), "b"),
        named("HostileName", u"C:\\x\\<a \"q\">&'\u00e9\U0001F600.ps",
              "&lt;a &quot;q&quot;&gt;&amp;&apos;\u00e9\U0001F600.ps")),
    rowName);

TEST_F(DocInfoTest, EachCallIsANewPacket) {
    fake.system().bias = -330;
    auto first = utf8(buildPdfaXml(config, u"x"));
    fake.system().now = platform::FakeSystem::clock(2026, 3, 5, 14, 7, 10);
    auto second = utf8(buildPdfaXml(config, u"x"));
    EXPECT_NE(first.find("uuid:" + firstGuid + "<"), std::string::npos);
    EXPECT_NE(first.find("xap:CreateDate='2026-03-05T14:07:09+05:30'"), std::string::npos);
    EXPECT_NE(second.find("uuid:" + secondGuid + "<"), std::string::npos);
    EXPECT_NE(second.find("xap:CreateDate='2026-03-05T14:07:10+05:30'"), std::string::npos);
}

TEST_F(DocInfoTest, JobPacketHasNoInvoiceBlock) {
    setEveryField();
    config.settings.set(u"pdfa", u"3");
    auto packet = utf8(buildPdfaXml(config, u"invoice.pdf"));
    EXPECT_EQ(packet.find("zf:"), std::string::npos);
    EXPECT_EQ(packet.find("fx:"), std::string::npos);
    EXPECT_EQ(packet.find("pdfaExtension"), std::string::npos);
}

} // namespace
