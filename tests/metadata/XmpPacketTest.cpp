// The packet's pieces and the whole packet, with the in-memory system's clock and GUIDs.

#include "metadata/XmpPacket.h"
#include "metadata/InvoiceSchemas.h"
#include "metadata/PacketText.h"
#include "umpd/FakeOs.h"

#include <gtest/gtest.h>

#include <climits>

using namespace testing_support;
using platform::Call;
using platform::FakeSystem;

namespace {

// ---- escaping, one unit at a time

struct EscapeRow {
    const char* name;
    std::u16string text, escaped;
};

class Escape : public ::testing::TestWithParam<EscapeRow> {};

TEST_P(Escape, UnitByUnit) {
    EXPECT_EQ(xmlEscape(GetParam().text), GetParam().escaped);
}

INSTANTIATE_TEST_SUITE_P(
    Units, Escape,
    ::testing::Values(EscapeRow{"Empty", u"", u""}, EscapeRow{"Plain", u"abc", u"abc"},
                      EscapeRow{"Quote", u"\"", u"&quot;"}, EscapeRow{"Ampersand", u"&", u"&amp;"},
                      EscapeRow{"Apostrophe", u"'", u"&apos;"}, EscapeRow{"Less", u"<", u"&lt;"},
                      EscapeRow{"Greater", u">", u"&gt;"}, EscapeRow{"Tab", u"\t", u"&#x9;"},
                      EscapeRow{"LineFeed", u"\n", u"&#xa;"},
                      EscapeRow{"CarriageReturn", u"\r", u"&#xd;"},
                      // XML 1.0 admits no reference to 1 or 31: the rule writes them all the same.
                      EscapeRow{"UnitOne", u"\x01", u"&#x1;"},
                      EscapeRow{"Unit31", u"\x1f", u"&#x1f;"}, EscapeRow{"Space", u" ", u" "},
                      EscapeRow{"Delete", u"\x7f", u"\x7f"},
                      EscapeRow{"Latin", u"\u00e9t\u00e9", u"\u00e9t\u00e9"},
                      EscapeRow{"SurrogatePair", u"\U0001F600", u"\xD83D\xDE00"},
                      EscapeRow{"LoneSurrogate", u"\xDC00", u"\xDC00"},
                      EscapeRow{"Mixed", u"a<b>&'\"\n", u"a&lt;b&gt;&amp;&apos;&quot;&#xa;"}),
    rowName);

// ---- dates

struct DateRow {
    const char* name;
    std::optional<std::tm> local;
    std::int32_t bias;
    const char* text;
};

std::tm unformattable() {
    auto t = FakeSystem::clock(2026, 3, 5, 14, 7, 9);
    t.tm_mon = 12;
    return t;
}

class Date : public ::testing::TestWithParam<DateRow> {};

TEST_P(Date, LocalClockWithTheStandardZone) {
    EXPECT_EQ(utf8(formatXmpDate(GetParam().local, GetParam().bias)), GetParam().text);
}

const auto march5 = FakeSystem::clock(2026, 3, 5, 14, 7, 9);

INSTANTIATE_TEST_SUITE_P(
    Zones, Date,
    ::testing::Values(DateRow{"Utc", march5, 0, "2026-03-05T14:07:09Z"},
                      DateRow{"East", march5, -330, "2026-03-05T14:07:09+05:30"},
                      DateRow{"West", march5, 300, "2026-03-05T14:07:09-05:00"},
                      DateRow{"OneMinuteEast", march5, -1, "2026-03-05T14:07:09+00:01"},
                      DateRow{"BeyondADay", march5, 1500, "2026-03-05T14:07:09-25:00"},
                      DateRow{"LowestBias", march5, INT_MIN, "2026-03-05T14:07:09+35791394:08"},
                      DateRow{"HighestBias", march5, INT_MAX, "2026-03-05T14:07:09-35791394:07"},
                      DateRow{"Padded", FakeSystem::clock(2000, 1, 2, 3, 4, 5), 60,
                              "2000-01-02T03:04:05-01:00"},
                      DateRow{"NoClock", std::nullopt, -330, ""},
                      DateRow{"Unformattable", unformattable(), -330, ""}),
    rowName);

TEST(DateNow, IsThePlatformsClockAndBias) {
    CurrentFake fake;
    fake.system().now = FakeSystem::clock(2025, 12, 31, 23, 59, 58);
    fake.system().bias = -60;
    EXPECT_EQ(utf8(formatXmpDate()), "2025-12-31T23:59:58+01:00");
}

// ---- document ids

TEST(Guid, IsLowerCaseHexWithDashesAndNewEachTime) {
    CurrentFake fake;
    EXPECT_EQ(utf8(newGuidText()), firstGuid);
    EXPECT_EQ(utf8(newGuidText()), secondGuid);
}

TEST(Guid, FailingGivesEmptyText) {
    CurrentFake fake;
    fake.fail(Call::CoCreateGuid);
    EXPECT_EQ(newGuidText(), u"");
}

// ---- whole packets

struct PacketRow {
    const char* name;
    std::u16string title, author, subject, keywords, producer, creatorTool;
    std::uint32_t pdfaPart;
    std::u16string createDate, modifyDate;
    std::string middle; // between the head and the document id
};

std::u16string packetOf(const PacketRow& row, std::u16string_view level = {},
                        std::u16string_view version = {}, std::u16string_view fileName = {}) {
    return buildXmpPacket(row.title, row.author, row.subject, row.keywords, row.producer,
                          row.creatorTool, row.pdfaPart, level, version, fileName, row.createDate,
                          row.modifyDate);
}

class PacketFrame : public FakeOsTest {};

class Packet : public FakeOsTest, public ::testing::WithParamInterface<PacketRow> {};

TEST_P(Packet, HasThePiecesOfItsTexts) {
    EXPECT_EQ(utf8(packetOf(GetParam())), packetHead + GetParam().middle + packetTail(firstGuid));
}

const std::string datesNow =
    "xap:ModifyDate='" + fakeNow + "'\nxap:CreateDate='" + fakeNow + "'\n/>\n";
const std::string xapOpen =
    "<rdf:Description rdf:about='' xmlns:xap='http://ns.adobe.com/xap/1.0/'\n";

INSTANTIATE_TEST_SUITE_P(
    Pieces, Packet,
    ::testing::Values(
        PacketRow{"Bare", u"", u"", u"", u"", u"", u"", 0, u"", u"", xapOpen + datesNow},
        PacketRow{"ProducerOnly", u"", u"", u"", u"", u"P&Co", u"", 0, u"", u"",
                  "<rdf:Description rdf:about='' xmlns:pdf='http://ns.adobe.com/pdf/1.3/'\n"
                  "pdf:Producer='P&amp;Co'\n/>\n" +
                      xapOpen + datesNow},
        PacketRow{"KeywordsOnly", u"", u"", u"", u"it's", u"", u"", 0, u"", u"",
                  "<rdf:Description rdf:about='' xmlns:pdf='http://ns.adobe.com/pdf/1.3/'\n"
                  "pdf:Keywords='it&apos;s'\n/>\n" +
                      xapOpen + datesNow},
        PacketRow{"Everything", u"T<1>", u"A \"B\"", u"S\n", u"k", u"p", u"c>", 3,
                  u"2001-02-03T04:05:06Z", u"2002-02-03T04:05:06Z",
                  R"(<rdf:Description rdf:about='' xmlns:pdf='http://ns.adobe.com/pdf/1.3/'
pdf:Producer='p'
pdf:Keywords='k'
/>
<rdf:Description rdf:about='' xmlns:xap='http://ns.adobe.com/xap/1.0/'
xap:CreatorTool='c&gt;'
xap:ModifyDate='2002-02-03T04:05:06Z'
xap:CreateDate='2001-02-03T04:05:06Z'
/>
<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/'>
<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>T&lt;1&gt;</rdf:li></rdf:Alt></dc:title>
<dc:creator><rdf:Seq><rdf:li>A &quot;B&quot;</rdf:li></rdf:Seq></dc:creator>
<dc:description><rdf:Alt><rdf:li xml:lang='x-default'>S&#xa;</rdf:li></rdf:Alt></dc:description>
</rdf:Description>
<rdf:Description rdf:about='' xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'
pdfaid:part='3'
pdfaid:conformance='B'
/>
)"},
        PacketRow{"AuthorOnly", u"", u"Ann", u"", u"", u"", u"", 0, u"", u"",
                  xapOpen + datesNow +
                      "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/'>\n"
                      "<dc:creator><rdf:Seq><rdf:li>Ann</rdf:li></rdf:Seq></dc:creator>\n"
                      "</rdf:Description>\n"},
        PacketRow{"SubjectOnly", u"", u"", u"S", u"", u"", u"", 0, u"", u"",
                  xapOpen + datesNow +
                      "<rdf:Description rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/'>\n"
                      "<dc:description><rdf:Alt><rdf:li xml:lang='x-default'>S</rdf:li></rdf:Alt>"
                      "</dc:description>\n</rdf:Description>\n"},
        PacketRow{"DatesUnescaped", u"", u"", u"", u"", u"", u"", 0, u"C<&>", u"M'",
                  xapOpen + "xap:ModifyDate='M''\nxap:CreateDate='C<&>'\n/>\n"},
        PacketRow{"ModifyGiven", u"", u"", u"", u"", u"", u"", 0, u"", u"M",
                  xapOpen + "xap:ModifyDate='M'\nxap:CreateDate='" + fakeNow + "'\n/>\n"},
        PacketRow{"CreateGiven", u"", u"", u"", u"", u"", u"", 0, u"C", u"",
                  xapOpen + "xap:ModifyDate='" + fakeNow + "'\nxap:CreateDate='C'\n/>\n"},
        PacketRow{
            "PartAsSigned", u"", u"", u"", u"", u"", u"", 0xFFFFFFFFu, u"", u"",
            xapOpen + datesNow +
                "<rdf:Description rdf:about='' xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'\n"
                "pdfaid:part='-1'\npdfaid:conformance='B'\n/>\n"}),
    rowName);

TEST_F(PacketFrame, PacketWithoutAClockHasEmptyDates) {
    fake.system().now = std::nullopt;
    fake.system().bias = -330;
    EXPECT_EQ(utf8(packetOf(PacketRow{"", u"", u"", u"", u"", u"", u"", 0, u"", u"", ""})),
              packetHead + xapOpen + "xap:ModifyDate=''\nxap:CreateDate=''\n/>\n" +
                  packetTail(firstGuid));
}

TEST_F(PacketFrame, PacketWithoutAGuidSaysUuidAlone) {
    fake.fail(Call::CoCreateGuid);
    EXPECT_EQ(utf8(packetOf(PacketRow{"", u"", u"", u"", u"", u"", u"", 0, u"", u"", ""})),
              packetHead + xapOpen + datesNow + packetTail(""));
}

TEST_F(PacketFrame, EachPacketHasANewDocumentId) {
    const PacketRow bare{"", u"", u"", u"", u"", u"", u"", 0, u"", u"", ""};
    EXPECT_EQ(utf8(packetOf(bare)), packetHead + xapOpen + datesNow + packetTail(firstGuid));
    EXPECT_EQ(utf8(packetOf(bare)), packetHead + xapOpen + datesNow + packetTail(secondGuid));
}

TEST_F(PacketFrame, InvoiceBlockFollowsTheDocumentId) {
    const PacketRow bare{"", u"", u"", u"", u"", u"", u"", 0, u"", u"", ""};
    const std::pair<std::u16string_view, std::string> forms[] = {{u"", firstGuid},
                                                                 {u"1.0", secondGuid}};
    for (const auto& [version, guid] : forms) {
        auto invoice = utf8(buildInvoiceSchemas(u"BASIC", version, u"factur-x.xml"));
        ASSERT_FALSE(invoice.empty());
        EXPECT_EQ(utf8(packetOf(bare, u"BASIC", version, u"factur-x.xml")),
                  packetHead + xapOpen + datesNow + packetTail(guid, invoice));
    }
}

// A clock that moves on a second each time it is read.
class TickingSystem : public FakeSystem {
public:
    using FakeSystem::FakeSystem;
    std::optional<std::tm> localTime() override {
        auto reading = now;
        if (now) ++now->tm_sec;
        return reading;
    }
};

class TickingFake : public CurrentFake {
public:
    TickingSystem& system() override { return ticking; }
    TickingSystem ticking{*this};
};

struct TickRow {
    const char* name;
    std::u16string createDate, modifyDate;
    std::string modified, created;
};

class Ticking : public ::testing::TestWithParam<TickRow> {};

TEST_P(Ticking, BothDatesMissingAreOneReading) {
    TickingFake fake;
    const auto& row = GetParam();
    auto packet =
        utf8(buildXmpPacket({}, {}, {}, {}, {}, {}, 0, {}, {}, {}, row.createDate, row.modifyDate));
    EXPECT_EQ(packet, packetHead + xapOpen + "xap:ModifyDate='" + row.modified +
                          "'\nxap:CreateDate='" + row.created + "'\n/>\n" + packetTail(firstGuid));
}

INSTANTIATE_TEST_SUITE_P(Readings, Ticking,
                         ::testing::Values(TickRow{"BothMissing", u"", u"", fakeNow, fakeNow},
                                           TickRow{"ModifyGiven", u"", u"M", "M", fakeNow},
                                           TickRow{"CreateGiven", u"C", u"", fakeNow, "C"}),
                         rowName);

} // namespace
