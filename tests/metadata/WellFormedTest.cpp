// Packets as UTF-8 through a real XML parser: hostile texts must not break them.

#include "metadata/DocInfo.h"
#include "metadata/PacketText.h"
#include "metadata/XmpPacket.h"
#include "umpd/FakeOs.h"
#include "umpd/PrinterConfig.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

using namespace testing_support;
using platform::RegistryRoot;

namespace {

// xmllint's exit status for the text (0: well-formed), or nullopt without xmllint.
std::optional<int> xmllintStatus(const std::string& text) {
#ifdef _WIN32
    (void)text;
    return std::nullopt; // the Wine run has no xmllint
#else
    if (std::system("command -v xmllint >/dev/null 2>&1") != 0) return std::nullopt;
    FILE* pipe = popen("xmllint --noout -", "w");
    if (!pipe) return std::nullopt;
    std::fwrite(text.data(), 1, text.size(), pipe);
    return pclose(pipe);
#endif
}

#define EXPECT_WELL_FORMED(text)                                                                   \
    do {                                                                                           \
        auto packet_ = (text);                                                                     \
        auto status_ = xmllintStatus(packet_);                                                     \
        if (!status_) GTEST_SKIP() << "xmllint is not on PATH here";                               \
        EXPECT_EQ(*status_, 0) << packet_;                                                         \
    } while (false)

struct HostileRow {
    const char* name;
    std::u16string text;
};

class Hostile : public FakeOsTest, public ::testing::WithParamInterface<HostileRow> {};

class ControlUnit : public FakeOsTest {};

TEST_P(Hostile, JobPacketStaysWellFormed) {
    const auto& text = GetParam().text;
    PrinterConfig config;
    config.setPrinterName(u"P");
    auto put = [&](const char16_t* name, const platform::RegistryValue& value) {
        fake.registry().setRegistryValue(RegistryRoot::CurrentUser, u"Software\\Foliograph\\P",
                                         name, value);
    };
    for (auto name : {u"DocInfoTitle", u"DocInfoAuthor", u"DocInfoSubject", u"DocInfoKeywords"})
        put(name, platform::stringValue(text));
    // Disabled: the title is the document name's; enabled: the settings'.
    for (std::uint32_t enable : {0u, 1u}) {
        put(u"DocInfoEnable", platform::dwordValue(enable));
        EXPECT_WELL_FORMED(utf8(buildPdfaXml(config, u"C:\\dir\\" + text)));
    }
}

TEST_P(Hostile, InvoicePacketsStayWellFormed) {
    const auto& text = GetParam().text;
    for (auto version : {u"", u"1.0"})
        EXPECT_WELL_FORMED(utf8(buildXmpPacket(text, text, text, text, text, text, 1, u"EN 16931",
                                               version, u"factur-x.xml", {}, {})));
}

INSTANTIATE_TEST_SUITE_P(
    Names, Hostile,
    ::testing::Values(HostileRow{"Quotes", u"\"double\" and 'single'"},
                      HostileRow{"Markup", u"<b>&amp;</b> & <![CDATA[x]]> -->"},
                      HostileRow{"NonAscii", u"Gr\u00f6\u00dfe \u4e2d\u6587 \U0001F600 \U00010348"},
                      HostileRow{"Whitespace", u"tab\tlf\ncr\r end"},
                      HostileRow{"EntityLike", u"&#x1; &lt; &unknown; &"},
                      HostileRow{"PathLike", u"sub\\a'b\"/c<d>.ps"}),
    rowName);

// The escape writes every unit below 32 as a reference, which XML 1.0 allows for tab, LF and
// CR only: a title holding unit 1 gives a packet that a parser refuses.
TEST_F(ControlUnit, ReferenceIsNotXml10) {
    auto packet = utf8(buildXmpPacket(u"a\x01z", {}, {}, {}, {}, {}, 0, {}, {}, {}, {}, {}));
    ASSERT_NE(packet.find("a&#x1;z"), std::string::npos);
    auto status = xmllintStatus(packet);
    if (!status) GTEST_SKIP() << "xmllint is not on PATH here";
    EXPECT_NE(*status, 0);
}

} // namespace
