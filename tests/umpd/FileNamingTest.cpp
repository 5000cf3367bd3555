// Output file naming over the in-memory system: decoding, the template language, every save
// action, the limits of each setting and hostile document names.

#include "umpd/DirectoryPath.h"
#include "umpd/FakeOs.h"
#include "umpd/NameMacros.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SetFilename.h"

#include <gtest/gtest.h>

using namespace testing_support;
using platform::Call;
using platform::toUtf8;

namespace {

bool hasLoneSurrogate(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool high = text[i] >= 0xD800 && text[i] < 0xDC00;
        bool low = text[i] >= 0xDC00 && text[i] < 0xE000;
        if (high && !(i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000))
            return true;
        if (low && !(i > 0 && text[i - 1] >= 0xD800 && text[i - 1] < 0xDC00)) return true;
        if (high) ++i;
    }
    return false;
}

struct DecodeRow {
    const char* name;
    std::u16string in, out;
};

class Decode : public ::testing::TestWithParam<DecodeRow> {};

TEST_P(Decode, PercentAndPlus) {
    EXPECT_EQ(urlDecode(GetParam().in), GetParam().out);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Decode,
    ::testing::Values(
        DecodeRow{"Plus", u"a+b", u"a b"}, DecodeRow{"Letter", u"%41", u"A"},
        DecodeRow{"LowerHex", u"%7e", u"~"}, DecodeRow{"Colon", u"%3A", u"_"},
        DecodeRow{"Slash", u"%2F", u"_"}, DecodeRow{"Backslash", u"%5c", u"_"},
        DecodeRow{"Control", u"%0A", u"_"}, DecodeRow{"Nul", u"%00x", u"_x"},
        DecodeRow{"NotHex", u"%zz", u"_"}, DecodeRow{"HalfHex", u"%4zq", u"_q"},
        DecodeRow{"DoublePercent", u"%%41", u"%A"}, DecodeRow{"LastPercent", u"100%", u"100%"},
        DecodeRow{"OneBeforeEnd", u"a%4", u"a_"}, DecodeRow{"OneHexBeforeEnd", u"a%F", u"a_"},
        DecodeRow{"SignedMinus", u"%-1z", u"\uFFFFz"}, DecodeRow{"BlankThenDigit", u"% 9", u"_"},
        DecodeRow{"BytesStayCharacters", u"%C3%A9", u"\u00C3\u00A9"},
        DecodeRow{"StopsAtNul",
                  std::u16string(u"a%\0"
                                 u"41",
                                 5),
                  u"a%"},
        DecodeRow{"Surrogates", u"\U0001F600+%41", u"\U0001F600 A"}),
    rowName);

struct TimeRow {
    const char* name;
    std::u16string format;
    std::optional<std::u16string> out;
};

class TimeCodes : public ::testing::TestWithParam<TimeRow> {};

TEST_P(TimeCodes, AsTheCLibraryInItsOwnLocale) {
    auto now = platform::FakeSystem::clock(2026, 3, 5, 9, 7, 2); // a Thursday
    EXPECT_EQ(formatTime(GetParam().format, now, -90, 200), GetParam().out);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TimeCodes,
    ::testing::Values(
        TimeRow{"Date", u"%Y-%m-%d", u"2026-03-05"},
        TimeRow{"Names", u"%a %A %b %B %h", u"Thu Thursday Mar March Mar"},
        TimeRow{"Clock", u"%H:%M:%S %I %p", u"09:07:02 09 AM"},
        TimeRow{"Locale", u"%c|%x|%X", u"03/05/26 09:07:02|03/05/26|09:07:02"},
        TimeRow{"Short", u"%D %F %T %R %e", u"03/05/26 2026-03-05 09:07:02 09:07  5"},
        TimeRow{"Counts", u"%j %u %w %U %W %y %C", u"064 4 4 09 09 26 20"},
        TimeRow{"Zone", u"%z", u"+0130"}, TimeRow{"NoZeros", u"%#d/%#m %#H", u"5/3 9"},
        TimeRow{"Percent", u"50%%", u"50%"}, TimeRow{"UnknownCode", u"%Y%Q", std::nullopt},
        TimeRow{"LonePercentAtEnd", u"a%", std::nullopt},
        TimeRow{"TooLong", std::u16string(100, u'x') + u"%A%A%A%A%A%A%A%A%A%A%A%A%A%A",
                std::nullopt}),
    rowName);

struct MacroRow {
    const char* name;
    std::u16string text, docName;
    std::int32_t number;
    bool sanitise;
    std::u16string out;
};

class Macros : public FakeOsTest, public ::testing::WithParamInterface<MacroRow> {
protected:
    Macros() {
        auto& s = fake.system();
        s.now = platform::FakeSystem::clock(2026, 3, 5, 14, 7, 9);
        s.envFirst = {u"=C:=C:\\work", u"=D:=D:\\other"};
        s.env[u"DATE"] = u"%Y";
        s.env[u"NUM"] = u"{AUTONUM3}";
        s.env[u"DOCS"] = u"{DOC}";
        s.env[u"SELF"] = u"{SELF}";
        s.env[u"SUB"] = u"a\\b";
    }
};

TEST_P(Macros, ExpandStageByStage) {
    const auto& row = GetParam();
    EXPECT_EQ(expandMacros(row.text, row.docName, row.number, row.sanitise), row.out);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Macros,
    ::testing::Values(
        MacroRow{"DateAndDoc", u"%Y-%m-%d {DOC}", u"Writer - Report.docx", 0, true,
                 u"2026-03-05 Report"},
        MacroRow{"OnlyPercentIsLast", u"100%", u"d", 0, true, u"100%"},
        MacroRow{"UnknownDateCodeLeavesText", u"%Q{DOC}", u"a.txt", 0, true, u"%Qa"},
        MacroRow{"Environment", u"{USERNAME}-{SUB}", u"", 0, false, u"anna-a\\b"},
        MacroRow{"EnvironmentIsCaseSensitive", u"{username}", u"", 0, true, u"{username}"},
        MacroRow{"EmptyNameIsTheFirstDriveEntry", u"{}", u"", 0, false, u"C:=C:\\work"},
        MacroRow{"EnvironmentAfterDates", u"{DATE}", u"", 0, true, u"%Y"},
        MacroRow{"NumbersAfterEnvironment", u"{NUM}", u"", 7, true, u"007"},
        MacroRow{"DocAfterEnvironment", u"{DOCS}", u"x - y.txt", 0, true, u"y"},
        MacroRow{"ReplacementGoesOnAfterIt", u"{SELF}{SELF}", u"", 0, true, u"{SELF}{SELF}"},
        MacroRow{"AllNumberForms", u"{AUTONUM}.{AUTONUM2}.{AUTONUM3}.{AUTONUM4}.{AUTONUM5}", u"", 7,
                 true, u"7.07.007.0007.00007"},
        MacroRow{"NegativeNumber", u"{AUTONUM3}", u"", -4, true, u"-04"},
        MacroRow{"DocNameIsNotExpanded", u"{DOC}", u"{AUTONUM} %Y.txt", 3, false, u"{AUTONUM} %Y"},
        MacroRow{"DocFromFirstDash", u"{DOC}", u"a - b - c.txt", 0, true, u"b - c"},
        MacroRow{"DocDashAtEnd", u"{DOC}", u"Name -", 0, true, u"Name -"},
        MacroRow{"DocIgnoresTrimChar", u"{DOC}", u"App_X - y.txt", 0, true, u"y"},
        MacroRow{"DocLongSuffixStays", u"{DOC}", u"x.final", 0, true, u"x.final"},
        MacroRow{"DocFourCharSuffix", u"{DOC}", u"x.docx", 0, true, u"x"},
        MacroRow{"DocDotAtStartStays", u"{DOC}", u"- .pdf", 0, true, u".pdf"},
        MacroRow{"NoSuffix", u"{DOC_NOSUFFIX}", u"Writer - Report.docx", 0, false,
                 u"Writer - Report"},
        MacroRow{"NoSuffixDotAtZero", u"{DOC_NOSUFFIX}", u".txt", 0, true, u".txt"},
        MacroRow{"Full", u"{DOC_FULL}", u"a:b.txt", 0, true, u"a-b.txt"},
        MacroRow{"EmptyDocLeavesMacros", u"{DOC}{DOC_NOSUFFIX}[{DOC_FULL}]", u"", 0, true,
                 u"{DOC}{DOC_NOSUFFIX}[]"},
        MacroRow{"TemplateSlashBecomesDash", u"a/b-{DOC}.pdf", u"Writer - Rep.docx", 0, true,
                 u"a-b-Rep.pdf"},
        MacroRow{"NoSanitise", u"a/b:{DOC_FULL}", u"<x>", 0, false, u"a/b:<x>"},
        MacroRow{"SurrogatesPass", u"{DOC}\U0001F600", u"\U0001F600 - \U0001F601.txt", 0, true,
                 u"\U0001F601\U0001F600"}),
    rowName);

TEST_F(FakeOsTest, AnEnvironmentVariableNamedAutonumWins) {
    fake.system().env[u"AUTONUM"] = u"env";
    EXPECT_EQ(expandMacros(u"{AUTONUM}{AUTONUM2}", u"", 5, true), u"env05");
}

TEST_F(FakeOsTest, RunawayEnvironmentStopsGrowing) {
    // Each variable names the next twice: 2^24 copies unless the growth is bounded.
    for (char c = 'A'; c < 'Y'; ++c) {
        std::u16string next{u'{', static_cast<char16_t>(c + 1), u'}'};
        fake.system().env[std::u16string(1, static_cast<char16_t>(c))] = next + next;
    }
    auto text = expandMacros(u"{A}", u"", 0, true);
    EXPECT_LE(text.size(), 32768u);
    EXPECT_GT(text.size(), 10000u);
}

// ---- the whole naming

struct NameRow {
    const char* name;
    std::uint32_t action;
    std::u16string docName;
    std::vector<std::pair<std::u16string, std::u16string>> settings;
    std::u16string path;
    std::u16string docNameAfter;
    bool result = true;
};

class Naming : public FakeOsTest, public ::testing::WithParamInterface<NameRow> {
protected:
    Naming() {
        config.setPrinterName(u"P");
        // The printer has been used before: no first-use defaults get in the way.
        fake.registry().setRegistryValue(platform::RegistryRoot::CurrentUser,
                                         u"Software\\Foliograph\\P", u"used",
                                         platform::dwordValue(1));
        fake.files().createDirectory(u"C:\\Out");
    }
    bool name(std::uint32_t action, std::u16string& docName, std::u16string& path) {
        SetFilename naming(&config, action);
        return naming.setOutputFilename(docName, path, 780, action);
    }
    PrinterConfig config;
};

TEST_P(Naming, GivesThePath) {
    const auto& row = GetParam();
    config.settings.set(u"DefaultSaveDir", u"C:\\Out");
    config.settings.set(u"DefaultSaveFilename", u"{DOC}.pdf");
    for (const auto& [key, value] : row.settings)
        config.settings.set(key, value);
    auto docName = row.docName;
    std::u16string path;
    EXPECT_EQ(name(row.action, docName, path), row.result);
    EXPECT_EQ(path, row.path);
    EXPECT_EQ(docName, row.docNameAfter);
}

const std::u16string dir700(700, u'd');
const std::u16string ext39 = u"." + std::u16string(38, u'e');
const std::u16string ext40 = u"." + std::u16string(39, u'e');

INSTANTIATE_TEST_SUITE_P(
    Actions, Naming,
    ::testing::Values(
        NameRow{
            "FromDocument", 3, u"Writer - Report.docx", {}, u"C:\\Out\\Report.pdf", u"Report.pdf"},
        NameRow{"Action0", 0, u"Writer - Report.docx", {}, u"C:\\Out\\Report.pdf", u"Report.pdf"},
        NameRow{"Action2", 2, u"a.b.c", {}, u"C:\\Out\\a.b.pdf", u"a.b.pdf"},
        NameRow{"Action5", 5, u"Report", {}, u"C:\\Out\\Report.pdf", u"Report.pdf"},
        NameRow{"IllegalColon", 3, u"a:b.txt", {}, u"C:\\Out\\a_b.pdf", u"a_b.pdf"},
        NameRow{"TemplateStandsInAsAName", 3, u"", {}, u"C:\\Out\\{DOC}.pdf", u""},
        NameRow{"FolderWithSeparator",
                3,
                u"x",
                {{u"DefaultSaveDir", u"C:\\Out\\"}},
                u"C:\\Out\\x.pdf",
                u"x.pdf"},
        NameRow{"DashAtEndKeepsAll", 3, u"Name -", {}, u"C:\\Out\\Name -.pdf", u"Name -.pdf"},
        NameRow{"FiveCharSuffixStays", 3, u"a.final", {}, u"C:\\Out\\a.final.pdf", u"a.final.pdf"},
        NameRow{"OneCharName", 3, u".", {}, u"C:\\Out\\..pdf", u"..pdf"},
        NameRow{"TrimCharSetting",
                3,
                u"App_Name - x.txt",
                {{u"TrimNameChar", u"95"}},
                u"C:\\Out\\Name - x.pdf",
                u"Name - x.pdf"},
        NameRow{"TrimCharEmptyIsNul",
                3,
                u"a - b.txt",
                {{u"TrimNameChar", u""}},
                u"C:\\Out\\a - b.pdf",
                u"a - b.pdf"},
        NameRow{"Extension39",
                3,
                u"x",
                {{u"DefaultExtension", ext39}},
                u"C:\\Out\\x" + ext39,
                u"x" + ext39},
        NameRow{"Extension40IsTooLong",
                3,
                u"x",
                {{u"DefaultExtension", ext40}},
                u"C:\\Out\\x.pdf",
                u"x.pdf"},
        NameRow{"ExtensionWithoutDot",
                3,
                u"x.txt",
                {{u"DefaultExtension", u"ps"}},
                u"C:\\Out\\xps",
                u"xps"},
        NameRow{"NoFolder", 3, u"x", {{u"DefaultSaveDir", u""}}, u"x.pdf", u"x.pdf"},
        NameRow{"Numbered",
                1,
                u"d",
                {{u"DefaultSaveFilename", u"Inv{AUTONUM3}.pdf"}, {u"AUTONUM", u"7"}},
                u"C:\\Out\\Inv007.pdf",
                u"d"},
        NameRow{"NumberedTemplateSlash",
                1,
                u"Writer - Rep.docx",
                {{u"DefaultSaveFilename", u"a/b-{DOC}.pdf"}},
                u"C:\\Out\\a-b-Rep.pdf",
                u"Writer - Rep.docx"},
        NameRow{"NumberedYear", 1, u"d", {{u"DefaultSaveFilename", u"%Y"}}, u"C:\\Out\\2026", u"d"},
        NameRow{"NumberedPercentKept",
                1,
                u"d",
                {{u"DefaultSaveFilename", u"100%"}},
                u"C:\\Out\\100%",
                u"d"},
        NameRow{"NumberedTooLongIsUnexpanded",
                1,
                std::u16string(200, u'q'),
                {{u"DefaultSaveFilename", u"{DOC_FULL}{DOC_FULL}"}},
                u"C:\\Out\\{DOC_FULL}{DOC_FULL}",
                std::u16string(200, u'q')},
        NameRow{"Exactly260IsLeft",
                3,
                std::u16string(249, u'n'),
                {},
                u"C:\\Out\\" + std::u16string(249, u'n') + u".pdf",
                std::u16string(249, u'n') + u".pdf"},
        NameRow{"UnknownAction", 6, u"x", {}, u"", u"x", false},
        NameRow{"FolderIsDecoded",
                3,
                u"a+b%21",
                {{u"DefaultSaveDir", u"C:\\My+Docs"}},
                u"C:\\My Docs\\a b!.pdf",
                u"a+b%21.pdf"},
        // A percent at the end of the name meets the extension's dot in the path.
        NameRow{
            "PercentAtEnd", 3, u"Report 100%", {}, u"C:\\Out\\Report 100_df", u"Report 100%.pdf"},
        NameRow{"PercentAndOneAtEnd", 3, u"Report%4", {}, u"C:\\Out\\Report_pdf", u"Report%4.pdf"},
        NameRow{
            "AllIllegal", 3, u"<>:\"/\\|?*\x01", {}, u"C:\\Out\\__________.pdf", u"__________.pdf"},
        NameRow{"DotDotCannotClimb",
                3,
                u"..\\..\\evil.txt",
                {},
                u"C:\\Out\\.._.._evil.pdf",
                u".._.._evil.pdf"},
        NameRow{"DriveLetterName",
                3,
                u"C:\\Windows\\win.ini",
                {},
                u"C:\\Out\\C__Windows_win.pdf",
                u"C__Windows_win.pdf"},
        NameRow{"ServerShareName",
                3,
                u"\\\\server\\share\\f.txt",
                {},
                u"C:\\Out\\__server_share_f.pdf",
                u"__server_share_f.pdf"}),
    rowName);

TEST_F(Naming, NumberAdvancesInMapAndRegistryBeforeTheFileExists) {
    config.settings.set(u"DefaultSaveDir", u"C:\\Out");
    config.settings.set(u"DefaultSaveFilename", u"Inv{AUTONUM3}.pdf");
    config.settings.set(u"AUTONUM", u"7");
    std::u16string docName = u"d", path;
    name(1, docName, path);
    EXPECT_EQ(*config.settings.get(u"AUTONUM"), u"8");
    EXPECT_EQ(fake.registry().registryValue(platform::RegistryRoot::CurrentUser,
                                            u"Software\\Foliograph\\P", u"AUTONUM"),
              platform::dwordValue(8));
    path.clear();
    name(1, docName, path);
    EXPECT_EQ(path, u"C:\\Out\\Inv008.pdf");
}

TEST_F(Naming, TemplateFromAFile) {
    config.settings.set(u"DefaultSaveDir", u"C:\\Out");
    config.settings.set(u"AUTONUM", u"4");
    struct Row {
        std::u16string setting;
        std::string file;
        std::u16string path;
    } rows[] = {
        {u"@C:\\t.txt", "  Inv{AUTONUM}\xE9.pdf \t\r\nsecond line", u"C:\\Out\\  Inv4\u00E9.pdf"},
        {u"@C:\\t.txt", std::string(600, 'x'), u"C:\\Out\\" + std::u16string(252, u'x')},
        {u"@C:\\missing.txt", "", u"C:\\Out\\@C--missing.txt"},
    };
    for (auto& row : rows) {
        fake.files().writeFile(u"C:\\t.txt", row.file);
        config.settings.set(u"DefaultSaveFilename", row.setting);
        std::u16string docName = u"d", path;
        name(1, docName, path);
        EXPECT_EQ(path, row.path) << toUtf8(row.setting);
    }
}

TEST_F(Naming, SettingLimits) {
    struct Row {
        const char* name;
        std::u16string key, value;
        std::u16string path;
    } rows[] = {
        {"Folder519", u"DefaultSaveDir", u"C:\\" + std::u16string(516, u'f'), u"C:\\x.pdf"},
        {"Folder520IsEmpty", u"DefaultSaveDir", u"C:\\" + std::u16string(517, u'f'), u"x.pdf"},
        {"Template519", u"DefaultSaveFilename", std::u16string(519, u't'),
         u"C:\\Out\\" + std::u16string(248, u't') + u".pdf"},
        {"Template520IsEmpty", u"DefaultSaveFilename", std::u16string(520, u't'), u"random"},
    };
    for (const auto& row : rows) {
        config.settings.set(u"DefaultSaveDir", u"C:\\Out");
        config.settings.set(u"DefaultSaveFilename", u"");
        config.settings.set(row.key, row.value);
        std::u16string docName = row.key == u"DefaultSaveDir" ? u"x" : u"", path;
        name(3, docName, path);
        if (row.path == u"random") {
            EXPECT_TRUE(path.starts_with(u"C:\\Out\\") && path.ends_with(u".pdf")) << row.name;
            EXPECT_LT(path.size(), 20u) << row.name;
        } else {
            EXPECT_EQ(path, row.path) << row.name;
        }
    }
}

TEST_F(Naming, RandomNamesNeverTakeAnExistingFile) {
    config.settings.set(u"DefaultSaveDir", u"C:\\Out");
    std::vector<std::u16string> names;
    // Each run, seeded alike, meets the files of the runs before: eleven tries at most, the
    // last taken without looking.
    for (int run = 0; run < 12; ++run) {
        SetFilename::forgetRandomSeed();
        std::u16string docName, path;
        name(4, docName, path);
        EXPECT_TRUE(path.starts_with(u"C:\\Out\\") && path.ends_with(u".pdf")) << toUtf8(path);
        if (run < 11) {
            EXPECT_FALSE(fake.files().attributes(path).has_value()) << run;
            EXPECT_EQ(std::count(names.begin(), names.end(), path), 0);
        } else {
            EXPECT_EQ(path, names.back());
        }
        names.push_back(path);
        fake.files().writeFile(path, "taken");
    }
    EXPECT_EQ(fake.system().seeds, std::vector<std::uint32_t>(12, 77u * 1000u));
}

TEST_F(Naming, RandomNameFolderLimits) {
    struct Row {
        const char* name;
        std::u16string folder;
        std::u16string start;
    } rows[] = {
        {"NoFolderWhenOverTheLimit", dir700, u""},
        {"RootWhenNoRoom", u"C:\\" + std::u16string(500, u'f'), u"C:\\"},
        {"FolderWhenRoom", u"C:\\Out", u"C:\\Out\\"},
    };
    for (const auto& row : rows) {
        config.settings.set(u"DefaultSaveDir", row.folder);
        std::u16string docName, path;
        SetFilename naming(&config, 4);
        naming.setOutputFilename(docName, path,
                                 row.name == std::string("RootWhenNoRoom") ? 510 : 780, 4);
        EXPECT_TRUE(path.starts_with(row.start)) << row.name << " " << toUtf8(path);
        auto rest = path.substr(row.start.size());
        EXPECT_TRUE(rest.ends_with(u".pdf") && rest.find_first_of(u"\\/") == std::u16string::npos)
            << row.name << " " << toUtf8(path);
    }
}

TEST_F(Naming, HostileDocumentNamesStayInBounds) {
    config.settings.set(u"DefaultSaveDir", u"C:\\Out");
    std::u16string emoji;
    for (int i = 0; i < 300; ++i)
        emoji += u"\U0001F600";
    const std::u16string names[] = {
        std::u16string(2000, u'n'),
        emoji,
        u"x" + emoji,
        std::u16string(600, u'%'),
        std::u16string(259, u'+') + u"%",
        u"a - " + std::u16string(400, u'.'),
    };
    for (const auto& original : names) {
        for (std::uint32_t action : {1u, 3u}) {
            config.settings.set(u"DefaultSaveFilename", action == 1 ? u"{DOC_FULL}" : u"");
            auto docName = original.substr(0, cutLength(original, 259));
            std::u16string path;
            name(action, docName, path);
            EXPECT_LE(path.size(), 260u);
            EXPECT_LT(docName.size(), 260u);
            EXPECT_FALSE(hasLoneSurrogate(path)) << toUtf8(path);
            EXPECT_FALSE(hasLoneSurrogate(docName));
            EXPECT_TRUE(path.starts_with(u"C:\\")) << toUtf8(path);
        }
    }
}

TEST_F(Naming, LongPathsAreRepairedToTheLimit) {
    // The folder of 400 leaves no room: only the drive stays, and the name is cut. The
    // folder is then never made.
    config.settings.set(u"DefaultSaveDir", u"C:\\" + std::u16string(400, u'f'));
    std::u16string docName = std::u16string(259, u'n'), path;
    EXPECT_TRUE(name(3, docName, path));
    EXPECT_EQ(path, u"C:\\" + std::u16string(252, u'n') + u".pdf");
    EXPECT_FALSE(fake.files().attributes(u"C:\\" + std::u16string(400, u'f')).has_value());
}

TEST_F(Naming, NoFolderMakesOneOfTheName) {
    config.settings.set(u"DefaultSaveDir", u"");
    std::u16string docName = u"x", path;
    EXPECT_TRUE(name(3, docName, path));
    EXPECT_EQ(path, u"x.pdf");
    EXPECT_EQ(fake.files().attributes(u"C:\\work\\x.pdf"), platform::fileAttributeDirectory);
}

TEST_F(Naming, NetworkFolderIsRebuiltUnderTheCurrentDirectory) {
    config.settings.set(u"DefaultSaveDir", u"\\\\server\\share\\out");
    std::u16string docName = u"x", path;
    EXPECT_TRUE(name(3, docName, path));
    EXPECT_EQ(path, u"\\\\server\\share\\out\\x.pdf");
    EXPECT_EQ(fake.files().attributes(u"C:\\work\\server\\share\\out"),
              platform::fileAttributeDirectory);
}

struct RepairRow {
    const char* name;
    std::u16string in, out;
};

class Repair : public ::testing::TestWithParam<RepairRow> {};

TEST_P(Repair, CutsTo259) {
    EXPECT_EQ(repairLongPath(GetParam().in), GetParam().out);
}

const std::u16string folder251 = u"\\" + std::u16string(249, u'f') + u"\\";

INSTANTIATE_TEST_SUITE_P(
    Rows, Repair,
    ::testing::Values(
        RepairRow{"NameGivesWay", u"C:\\dir\\" + std::u16string(300, u'n') + u".pdf",
                  u"C:\\dir\\" + std::u16string(248, u'n') + u".pdf"},
        RepairRow{"FolderJustFits", u"C:" + folder251 + std::u16string(30, u'n') + u".pdf",
                  u"C:" + folder251 + std::u16string(2, u'n') + u".pdf"},
        RepairRow{"FolderAtTheLimitGoes",
                  u"C:\\" + std::u16string(250, u'f') + u"\\" + std::u16string(30, u'n') + u".pdf",
                  u"C:\\" + std::u16string(30, u'n') + u".pdf"},
        RepairRow{"NoDrive", u"\\\\srv\\" + std::u16string(300, u'n') + u".pdf",
                  u"\\\\srv\\" + std::u16string(249, u'n') + u".pdf"},
        RepairRow{"ExtensionCutLast", u"C:\\a." + std::u16string(300, u'e'),
                  u"C:\\." + std::u16string(255, u'e')},
        RepairRow{"PairNotParted",
                  u"C:\\" + std::u16string(251, u'n') + u"\U0001F600" + std::u16string(20, u'n') +
                      u".pdf",
                  u"C:\\" + std::u16string(251, u'n') + u".pdf"}),
    rowName);

// ---- folders

struct FolderRow {
    const char* name;
    std::u16string path;
    bool result;
    std::vector<std::u16string> made;
    int created;
    Call fails = Call::Count;
};

class Folders : public FakeOsTest, public ::testing::WithParamInterface<FolderRow> {};

TEST_P(Folders, AreMadeWithTheirParents) {
    const auto& row = GetParam();
    fake.files().writeFile(u"C:\\file", "x");
    if (row.fails != Call::Count) fake.fail(row.fails);
    EXPECT_EQ(createDirectoryPath(row.path), row.result);
    for (const auto& dir : row.made)
        EXPECT_EQ(fake.files().attributes(dir), platform::fileAttributeDirectory) << toUtf8(dir);
    EXPECT_EQ(fake.callCount(Call::CreateDirectory), row.created);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Folders,
    ::testing::Values(
        FolderRow{"Exists", u"C:\\work", true, {}, 0},
        FolderRow{"ExistingFileIsEnough", u"C:\\file", true, {}, 0},
        FolderRow{"WithParents", u"C:\\a\\b/c", true, {u"C:\\a", u"C:\\a\\b", u"C:\\a\\b\\c"}, 3},
        FolderRow{"ThroughAFile", u"C:\\file\\sub", false, {}, 0},
        FolderRow{"NetworkPathIsRelative",
                  u"\\\\server\\share\\x",
                  true,
                  {u"C:\\work\\server", u"C:\\work\\server\\share\\x"},
                  3},
        FolderRow{"Empty", u"", false, {}, 0}, FolderRow{"OnlySeparators", u"\\/\\", false, {}, 0},
        FolderRow{"FailedMakeIsNotChecked", u"C:\\a\\b", true, {}, 2, Call::CreateDirectory}),
    rowName);

} // namespace
