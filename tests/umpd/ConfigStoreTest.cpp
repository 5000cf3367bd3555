// The printer configuration store over the in-memory system: the user's hive by every road,
// first-use defaults, kelconf.ini, kelcfg.1 and the folders the store names.

#include "umpd/Directories.h"
#include "umpd/DomainController.h"
#include "umpd/FakeOs.h"
#include "umpd/PrintJob.h"
#include "umpd/PrinterConfig.h"
#include "umpd/UserKey.h"

#include <gtest/gtest.h>

using namespace testing_support;
using platform::Call;
using platform::RegistryRoot;
using platform::toUtf8;

namespace {

const std::u16string annaSid = u"S-1-5-21-1004336348-1177238915-682003330-1001";
const std::u16string driverDir = u"C:\\windows\\system32\\spool\\drivers\\x64\\3\\";
const std::u16string iniPath = driverDir + u"kelconf.ini";

// The values of a key, in the order written, as "name=value" with dwords signed.
std::vector<std::string> valuesOf(platform::FakeRegistry& registry, RegistryRoot root,
                                  const std::u16string& path) {
    std::vector<std::string> out;
    auto key = registry.root(root);
    std::unique_ptr<platform::RegistryKey> sub;
    if (key->openSubKey(path, 0x20019, sub) != 0) return out;
    std::u16string name;
    platform::RegistryValue value;
    for (std::uint32_t i = 0; sub->enumValue(i, name, value) == 0; ++i) {
        std::string text = toUtf8(name) + "=";
        if (auto n = platform::valueDword(value))
            text += std::to_string(static_cast<std::int32_t>(*n));
        else if (auto t = platform::valueText(value))
            text.append("'").append(toUtf8(*t)).append("'");
        out.push_back(text);
    }
    return out;
}

std::u16string domainController() {
    return u"\\\\DC1";
}

// ---- the user's hive

struct HiveRow {
    const char* name;
    std::uint32_t platformId;
    bool advapi, openCurrentUser;
    int openFailures; // of RegOpenCurrentUser
    bool disableLookup;
    std::u16string user;
    std::optional<RegistryRoot> root; // where the key lands; none: no key
    std::set<std::uint32_t> accessAsked = {};
};

class Hive : public FakeOsTest, public ::testing::WithParamInterface<HiveRow> {
protected:
    Hive() { userKeyDomainController = domainController; }
    ~Hive() override { userKeyDomainController = lookupDomainController; }
};

TEST_P(Hive, IsFoundByTheRoadOfTheSystem) {
    const auto& row = GetParam();
    fake.system().version->platformId = row.platformId;
    fake.registry().advapiPresent = row.advapi;
    fake.registry().hasRegOpenCurrentUser = row.openCurrentUser;
    if (row.openFailures) fake.fail(Call::RegOpenCurrentUser, 5, row.openFailures);
    if (row.disableLookup)
        fake.registry().setRegistryValue(RegistryRoot::LocalMachine, u"Software\\Foliograph",
                                         u"DisableDomainControllerLookup", {3, {}});
    fake.system().user = row.user;
    fake.registry().setRegistryValue(RegistryRoot::Users, annaSid, u"hive", {});

    const std::u16string subkey = u"Software\\Foliograph\\P";
    auto key = openUserKey(0x20019, &subkey);
    ASSERT_EQ(bool(key), row.root.has_value());
    if (!key) return;
    EXPECT_TRUE(key.created());
    key.get()->setValue(u"probe", platform::dwordValue(1));
    auto path = *row.root == RegistryRoot::Users ? annaSid + u"\\" + subkey : subkey;
    EXPECT_TRUE(fake.registry().registryValue(*row.root, path, u"probe").has_value());
    EXPECT_EQ(fake.accessAsked[Call::RegOpenCurrentUser], row.accessAsked);
    if (*row.root == RegistryRoot::Users) {
        EXPECT_EQ(fake.security().accountLookupSystems, std::vector<std::u16string>{u"\\\\DC1"});
    }
}

INSTANTIATE_TEST_SUITE_P(
    Roads, Hive,
    ::testing::Values(
        HiveRow{"Platform1", 1, true, true, 0, false, u"anna", RegistryRoot::CurrentUser},
        HiveRow{"NoAdvapi", 2, false, true, 0, false, u"anna", RegistryRoot::CurrentUser},
        HiveRow{"OpenCurrentUser",
                2,
                true,
                true,
                0,
                false,
                u"anna",
                RegistryRoot::CurrentUser,
                {0x2001D}},
        HiveRow{"WithoutCreateRight",
                2,
                true,
                true,
                1,
                false,
                u"anna",
                RegistryRoot::CurrentUser,
                {0x2001D, 0x20019}},
        HiveRow{"OpenCurrentUserFails",
                2,
                true,
                true,
                2,
                false,
                u"anna",
                std::nullopt,
                {0x2001D, 0x20019}},
        HiveRow{"LookupDisabled", 2, true, false, 0, true, u"anna", RegistryRoot::CurrentUser},
        HiveRow{"UsersHiveBySid", 2, true, false, 0, false, u"anna", RegistryRoot::Users},
        HiveRow{"UnknownUser", 2, true, false, 0, false, u"bert", std::nullopt}),
    rowName);

TEST_F(FakeOsTest, TheDefaultPrinterNameComesFromTheUsersHive) {
    userKeyDomainController = domainController;
    fake.registry().hasRegOpenCurrentUser = false;
    fake.registry().setRegistryValue(RegistryRoot::Users, annaSid + u"\\Software\\Foliograph",
                                     u"printerName", platform::stringValue(u"Anna's"));
    fake.registry().setRegistryValue(RegistryRoot::CurrentUser, u"Software\\Foliograph",
                                     u"printerName", platform::stringValue(u"Service's"));
    PrinterConfig config;
    config.setPrinterName(u"");
    EXPECT_EQ(config.printerName, u"Anna's");
    fake.system().user.reset();
    fake.system().env.clear(); // no user: no SID, no key, the product's name
    config.setPrinterName(nullptr);
    EXPECT_EQ(config.printerName, u"Tamarisk Foliograph");
    userKeyDomainController = lookupDomainController;
}

platform::Sid makeSid(std::array<std::uint8_t, 6> authority, std::vector<std::uint32_t> parts) {
    platform::Sid sid;
    sid.revision = 1;
    sid.authority = authority;
    sid.subAuthorities = std::move(parts);
    return sid;
}

TEST_F(FakeOsTest, SidTextPrintsTheParts) {
    struct Row {
        const char* name;
        platform::Sid sid;
        std::optional<std::u16string> text;
    };
    const Row rows[] = {
        {"NtAuthority", makeSid({0, 0, 0, 0, 0, 5}, {21, 7}), u"S-1-5-21-7"},
        {"LowBytesBigEndian", makeSid({0, 0, 1, 2, 3, 4}, {}), u"S-1-16909060"},
        {"HighBytesInHex", makeSid({0, 1, 0xAB, 0, 0, 5}, {4294967295u}),
         u"S-1-0x0001ab000005-4294967295"},
        {"EightParts", makeSid({0, 0, 0, 0, 0, 5}, {1, 2, 3, 4, 5, 6, 7, 8}),
         u"S-1-5-1-2-3-4-5-6-7-8"},
        {"NineAreTooMany", makeSid({0, 0, 0, 0, 0, 5}, {1, 2, 3, 4, 5, 6, 7, 8, 9}), std::nullopt},
    };
    for (const auto& row : rows) {
        fake.system().setLastError(0);
        EXPECT_EQ(sidText(row.sid), row.text) << row.name;
        EXPECT_EQ(fake.system().lastError(), row.text ? 0u : 122u) << row.name;
    }
}

// ---- the printer's key and its first use

class Store : public FakeOsTest {
protected:
    Store() { config.setPrinterName(u"\\\\server\\queue"); }
    std::vector<std::string> printerValues() {
        return valuesOf(fake.registry(), RegistryRoot::CurrentUser,
                        u"Software\\Foliograph\\,,server,queue");
    }
    std::optional<platform::RegistryValue> printerValue(const std::u16string& name) {
        return fake.registry().registryValue(RegistryRoot::CurrentUser,
                                             u"Software\\Foliograph\\,,server,queue", name);
    }
    PrinterConfig config;
};

TEST_F(Store, FirstUseLaysTheDefaultsInOrderOnce) {
    EXPECT_TRUE(config.loadSettings());
    const std::vector<std::string> defaults = {
        "NextAction=3",
        "SaveFilenameAction=3",
        "DefaultSaveDir='C:\\users\\anna\\AppData\\Local\\Foliograph'",
        "LastDir='C:\\users\\anna\\Documents'",
        "ExecCmdLine='" + toUtf8(driverDir) + "kelview.exe -nav=\"%s\" -docname=\"%s\"'",
        "DefaultSaveFilename='{DOC}.pdf'",
        "resIndex=3",
        "jpegImageQuality=90",
        "imageDPI=600",
        "TrimNameChar=45",
        "showVelturnButton=0"};
    EXPECT_EQ(printerValues(), defaults);
    EXPECT_EQ(fake.registry().registryValue(RegistryRoot::CurrentUser, u"Software\\Foliograph",
                                            u"printerName"),
              platform::stringValue(u""));
    EXPECT_EQ(fake.files().attributes(u"C:\\users\\anna\\AppData\\Local\\Foliograph"),
              platform::fileAttributeDirectory);
    EXPECT_EQ(config.settings.size(), defaults.size());
    EXPECT_EQ(*config.settings.get(u"trimnamechar"), u"45");

    // A changed value stands: the defaults come once.
    EXPECT_TRUE(config.setIntSetting(u"TrimNameChar", 95));
    EXPECT_TRUE(config.loadSettings());
    EXPECT_EQ(*config.settings.get(u"TrimNameChar"), u"95");
    EXPECT_EQ(printerValues().size(), defaults.size());
}

TEST_F(FakeOsTest, FirstUseStoresThePrinterName) {
    PrinterConfig config;
    config.setPrinterName(u"Kel PDF");
    std::uint32_t value = 0;
    EXPECT_TRUE(config.readDwordSetting(u"resIndex", value, 9));
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(fake.registry().registryValue(RegistryRoot::CurrentUser, u"Software\\Foliograph",
                                            u"printerName"),
              platform::stringValue(u"Kel PDF"));
}

TEST_F(FakeOsTest, AnEmptyNameGetsNoDefaults) {
    PrinterConfig config;
    config.setPrinterName(u",noport"); // a port form that no printer uses: no printer name
    config.portName.clear();
    EXPECT_TRUE(config.loadSettings());
    EXPECT_EQ(valuesOf(fake.registry(), RegistryRoot::CurrentUser, u"Software\\Foliograph"),
              std::vector<std::string>{});
}

TEST_F(FakeOsTest, FirstUseFallbacksForFolders) {
    struct Row {
        const char* name;
        std::vector<platform::KnownFolder> missing;
        std::u16string driverDirectory;
        std::vector<std::string> folders; // DefaultSaveDir, LastDir, ExecCmdLine
    } rows[] = {
        {"NoDocuments",
         {platform::KnownFolder::Documents},
         u"D:\\drv",
         {"DefaultSaveDir='C:\\users\\anna\\AppData\\Local\\Foliograph'",
          "LastDir='C:\\users\\anna\\AppData\\Local\\Foliograph'",
          "ExecCmdLine='D:\\drv\\3\\kelview.exe -nav=\"%s\" -docname=\"%s\"'"}},
        {"RoamingOnly",
         {platform::KnownFolder::Documents, platform::KnownFolder::LocalAppData},
         u"D:\\drv",
         {"DefaultSaveDir='C:\\users\\anna\\AppData\\Roaming\\Foliograph'",
          "LastDir='C:\\users\\anna\\AppData\\Roaming\\Foliograph'",
          "ExecCmdLine='D:\\drv\\3\\kelview.exe -nav=\"%s\" -docname=\"%s\"'"}},
        {"NoFoldersAtAll",
         {platform::KnownFolder::Documents, platform::KnownFolder::LocalAppData,
          platform::KnownFolder::RoamingAppData},
         u"D:\\" + std::u16string(219, u'd'), // the command line is 260 long: not stored
         {"DefaultSaveDir='c:\\'", "LastDir='c:\\'"}},
        {"CommandLineJustFits",
         {},
         u"D:\\" + std::u16string(218, u'd'), // 259 long
         {"DefaultSaveDir='C:\\users\\anna\\AppData\\Local\\Foliograph'",
          "LastDir='C:\\users\\anna\\Documents'",
          "ExecCmdLine='D:\\" + std::string(218, 'd') +
              "\\3\\kelview.exe -nav=\"%s\" -docname=\"%s\"'"}},
    };
    for (const auto& row : rows) {
        CurrentFake os;
        for (auto folder : row.missing)
            os.system().folders.erase(folder);
        os.spooler().driverDir = row.driverDirectory;
        PrinterConfig config;
        config.setPrinterName(u"P");
        config.loadSettings();
        std::vector<std::string> folders;
        for (const auto& v :
             valuesOf(os.registry(), RegistryRoot::CurrentUser, u"Software\\Foliograph\\P"))
            if (v.starts_with("DefaultSaveDir") || v.starts_with("LastDir") ||
                v.starts_with("ExecCmdLine"))
                folders.push_back(v);
        EXPECT_EQ(folders, row.folders) << row.name;
    }
}

TEST_F(Store, NoKeyMeansReadDefaultsAndNoWrites) {
    fake.fail(Call::RegOpenCurrentUser);
    config.settings.set(u"kept", u"1");
    EXPECT_FALSE(config.loadSettings());
    EXPECT_EQ(*config.settings.get(u"kept"), u"1");
    EXPECT_FALSE(config.setIntSetting(u"a", 1));
    EXPECT_FALSE(config.setStringSetting(u"b", u"x"));
    EXPECT_EQ(config.settings.get(u"a"), nullptr);
    std::uint32_t value = 5;
    EXPECT_FALSE(config.readDwordSetting(u"a", value, 7));
    EXPECT_FALSE(config.readDoPrint(value));
    EXPECT_EQ(value, 0u);
}

TEST_F(Store, SettingsLoadAsText) {
    config.loadSettings(); // first use
    auto set = [&](const char16_t* name, const platform::RegistryValue& value) {
        fake.registry().setRegistryValue(RegistryRoot::CurrentUser,
                                         u"Software\\Foliograph\\,,server,queue", name, value);
    };
    set(u"passthru", platform::dwordValue(1));
    set(u"negative", platform::dwordValue(0xFFFFFFF9u));
    set(u"binary", {3, {1, 2, 3, 4}});
    set(u"expand", {2, {'a', 0, 0, 0}});
    set(u"", platform::stringValue(u"unnamed"));
    set(u"text", platform::stringValue(u"a\u00e9"));
    config.settings.set(u"stale", u"x");
    EXPECT_TRUE(config.loadSettings());
    EXPECT_EQ(*config.settings.get(u"PASSTHRU"), u"1");
    EXPECT_EQ(*config.settings.get(u"negative"), u"-7");
    EXPECT_EQ(*config.settings.get(u"text"), u"a\u00e9");
    for (auto absent : {u"binary", u"expand", u"", u"stale"})
        EXPECT_EQ(config.settings.get(absent), nullptr) << toUtf8(absent);

    fake.fail(Call::RegQueryInfoKey);
    config.settings.set(u"kept", u"1");
    EXPECT_FALSE(config.loadSettings());
    EXPECT_NE(config.settings.get(u"kept"), nullptr);
}

TEST_F(Store, WritesReachTheMapOnlyThroughTheRegistry) {
    config.loadSettings();
    EXPECT_TRUE(config.setStringSetting(u"DocName", u"a.pdf"));
    EXPECT_EQ(printerValue(u"DocName"), platform::stringValue(u"a.pdf"));
    EXPECT_EQ(*config.settings.get(u"docname"), u"a.pdf");
    EXPECT_TRUE(config.setIntSetting(u"AUTONUM", -2));
    EXPECT_EQ(printerValue(u"AUTONUM"), platform::dwordValue(0xFFFFFFFEu));
    EXPECT_EQ(*config.settings.get(u"AUTONUM"), u"-2");
    fake.fail(Call::RegSetValue);
    EXPECT_FALSE(config.setIntSetting(u"AUTONUM", 5));
    EXPECT_FALSE(config.setStringSetting(u"DocName", u"b.pdf"));
    EXPECT_EQ(*config.settings.get(u"AUTONUM"), u"-2");
    EXPECT_EQ(*config.settings.get(u"DocName"), u"a.pdf");
    // Keys are made for reads too, and opened with the rights asked.
    EXPECT_EQ(fake.accessAsked[Call::RegOpenCurrentUser], (std::set<std::uint32_t>{0x2001D, 6, 7}));
}

TEST_F(Store, DwordReads) {
    config.loadSettings();
    fake.registry().setRegistryValue(RegistryRoot::CurrentUser,
                                     u"Software\\Foliograph\\,,server,queue", u"DoPrint",
                                     platform::dwordValue(4));
    struct Row {
        const char16_t* name;
        bool result;
        std::uint32_t value;
    } rows[] = {{u"DoPrint", true, 4}, {u"missing", true, 77}, {u"ExecCmdLine", false, 77}};
    for (const auto& row : rows) {
        std::uint32_t value = 1;
        EXPECT_EQ(config.readDwordSetting(row.name, value, 77), row.result) << toUtf8(row.name);
        EXPECT_EQ(value, row.value) << toUtf8(row.name);
    }
    std::uint32_t doPrint = 9;
    EXPECT_TRUE(config.readDoPrint(doPrint));
    EXPECT_EQ(doPrint, 4u);
    fake.registry().setRegistryValue(RegistryRoot::CurrentUser,
                                     u"Software\\Foliograph\\,,server,queue", u"DoPrint",
                                     platform::dwordValue(0));
    EXPECT_FALSE(config.readDoPrint(doPrint));
}

// ---- kelconf.ini

TEST_F(Store, ConfigFileGivesTheSiteDefaultsAtFirstUse) {
    fake.files().writeFile(iniPath, "[init]\n"
                                    "jpegImageQuality=007\n"
                                    "DefaultExtension=.PDF\n"
                                    "watermark=7a\n"
                                    "TrimNameChar=-7\n"
                                    "resIndex=4\n"
                                    "imageDPI=\n"
                                    "noequals\n"
                                    "huge=99999999999\n"
                                    "[,,server,queue]\n"
                                    "resIndex=5\n");
    EXPECT_TRUE(config.loadSettings());
    EXPECT_EQ(printerValue(u"jpegImageQuality"), platform::dwordValue(7));
    EXPECT_EQ(printerValue(u"watermark"), platform::stringValue(u"7a"));
    EXPECT_EQ(printerValue(u"TrimNameChar"), platform::stringValue(u"-7"));
    EXPECT_EQ(printerValue(u"DefaultExtension"), platform::stringValue(u".PDF"));
    EXPECT_EQ(printerValue(u"imageDPI"), platform::dwordValue(600)); // the entry is skipped
    EXPECT_EQ(printerValue(u"resIndex"), platform::dwordValue(5));   // the printer's section wins
    EXPECT_EQ(printerValue(u"huge"), platform::dwordValue(0xFFFFFFFFu));
    EXPECT_EQ(printerValue(u"noequals"), std::nullopt);
    EXPECT_EQ(*config.settings.get(u"jpegImageQuality"), u"7");
    EXPECT_EQ(*config.settings.get(u"TrimNameChar"), u"-7");
}

TEST_F(Store, OverrideAppliesOnlyWhenTheFileSaysSo) {
    config.loadSettings();
    for (const char* flag : {"0", "1"}) {
        fake.files().writeFile(iniPath, std::string("[init]\noverrideUserSettings=") + flag +
                                            "\nimageDPI=1200\n[,,server,queue]\nresIndex=9\n");
        config.applyOverrideFile();
        config.loadSettings();
        bool applied = flag[0] == '1';
        EXPECT_EQ(*config.settings.get(u"imageDPI"), applied ? u"1200" : u"600");
        EXPECT_EQ(*config.settings.get(u"resIndex"), applied ? u"9" : u"3");
        EXPECT_EQ(printerValue(u"overrideUserSettings").has_value(), applied);
    }
}

TEST_F(Store, ConfigFileCases) {
    const std::u16string init = u"init", empty;
    EXPECT_FALSE(config.importConfigFile(false, &init)); // no file
    fake.files().writeFile(iniPath, "[init]\na=1\n[other]\nb=2\n");
    EXPECT_FALSE(config.importConfigFile(false, &empty));
    EXPECT_FALSE(config.importConfigFile(false, nullptr)); // no section of this printer
    EXPECT_TRUE(config.importConfigFile(false, &init));
    EXPECT_EQ(*config.settings.get(u"a"), u"1");
    EXPECT_EQ(printerValue(u"a"), std::nullopt); // the map only

    CurrentFake longDriver;
    longDriver.spooler().driverDir = u"C:\\" + std::u16string(243, u'd'); // 249 with "\3\"
    longDriver.files().writeFile(u"C:\\" + std::u16string(243, u'd') + u"\\3\\kelconf.ini",
                                 "[init]\na=1\n");
    PrinterConfig other;
    EXPECT_FALSE(other.importConfigFile(false, &init));
}

TEST_F(Store, ATableOf190) {
    std::string ini = "[init]\n";
    for (int i = 0; i < 200; ++i)
        ini.append("k")
            .append(std::to_string(i))
            .append("=")
            .append(std::to_string(i))
            .append("\n");
    ini += "k5=five\n";
    fake.files().writeFile(iniPath, ini);
    config.loadSettings(); // first use: 11 defaults, then 179 of the file's 200
    auto before = fake.reporter().debugLines().size();
    EXPECT_EQ(before, 21u);
    config.settings.clear();
    config.settings.set(u"old", u"x");
    const std::u16string init = u"init";
    EXPECT_TRUE(config.importConfigFile(true, &init));
    EXPECT_EQ(config.settings.size(), 190u);
    EXPECT_EQ(*config.settings.get(u"k5"), u"five");
    EXPECT_EQ(*config.settings.get(u"k188"), u"188");
    EXPECT_EQ(config.settings.get(u"k189"), nullptr);
    auto lines = fake.reporter().debugLines();
    EXPECT_EQ(lines.size() - before, 11u);
    EXPECT_EQ(lines.front(), "Help!! too many parms \n");
    EXPECT_EQ(printerValue(u"k199"), platform::dwordValue(199)); // the registry takes them all
}

// ---- kelcfg.1

TEST_F(FakeOsTest, DriverConfigFileBytes) {
    PrinterConfig config;
    config.settings.set(u"imageDPI", u"600");
    config.settings.set(u"Resolution", u"300"); // the names match with their case
    config.settings.set(u"watermark", u"");
    config.settings.set(u"PrinterData4", u"\u00e9&=");
    config.settings.set(u"other", u"1");
    config.settings.set(u"watermarkFontSize", u"12");
    EXPECT_TRUE(config.copyNameValuesToPrinterDriverConfigFile());
    std::u16string text = u"imageDPI=600&PrinterData4=\u00e9&=&watermarkFontSize=12&";
    std::string bytes;
    for (char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    EXPECT_EQ(fake.files().fileText(u"C:\\windows\\system32\\kelcfg.1"), bytes);

    for (auto call : {Call::CreateFile, Call::WriteFile, Call::GetSystemDirectory}) {
        CurrentFake os;
        os.fail(call);
        EXPECT_FALSE(config.copyNameValuesToPrinterDriverConfigFile());
    }
}

// ---- folders

TEST_F(FakeOsTest, DriverDirectoryByVersion) {
    struct Row {
        std::uint32_t major, platformId;
        const char16_t* tail;
    } rows[] = {{4, 2, u"\\2\\"}, {5, 2, u"\\3\\"}, {6, 1, u"\\3\\"}, {4, 1, u"\\"}, {3, 2, u"\\"}};
    for (const auto& row : rows) {
        setVersion(row.major, row.platformId);
        EXPECT_EQ(computeDriverDirectory(), fake.spooler().driverDir + row.tail) << row.major;
    }
    fake.fail(Call::GetPrinterDriverDirectory);
    EXPECT_EQ(computeDriverDirectory(), u"");
}

TEST_F(FakeOsTest, DriverDirectoryIsKeptForTheProcess) {
    std::u16string text;
    auto expected = fake.spooler().driverDir + u"\\3\\";
    EXPECT_FALSE(getDriverDirectory(text, expected.size()));
    EXPECT_TRUE(getDriverDirectory(text, expected.size() + 1));
    EXPECT_EQ(text, expected);
    fake.spooler().driverDir = u"D:\\moved";
    EXPECT_TRUE(getDriverDirectory(text, 260));
    EXPECT_EQ(text, expected);
    EXPECT_FALSE(getDriverFilePath(text, expected.size() + 11, u"kelconf.ini"));
    EXPECT_TRUE(getDriverFilePath(text, expected.size() + 12, u"kelconf.ini"));
    EXPECT_EQ(text, expected + u"kelconf.ini");
}

TEST_F(FakeOsTest, UserDataDirectory) {
    EXPECT_EQ(getUserDataDirectory(), u"C:\\users\\anna\\AppData\\Local\\Foliograph");
    fake.system().folders[platform::KnownFolder::LocalAppData] = u"";
    EXPECT_EQ(getUserDataDirectory(), u"C:\\users\\anna\\AppData\\Roaming\\Foliograph");
    fake.system().folders[platform::KnownFolder::RoamingAppData] =
        u"C:\\" + std::u16string(246, u'r');
    EXPECT_EQ(getUserDataDirectory(), u""); // 260 with the product's folder
    fake.system().folders.clear();
    EXPECT_EQ(getUserDataDirectory(), u"c:\\");
}

// ---- the job list

TEST_F(FakeOsTest, AJobArrivingBetweenTheTwoCallsIsListed) {
    auto& printer = fake.spooler().addPrinter(u"P", u"Tamarisk Foliograph", u"KELPORT1:");
    platform::JobInfo2 job;
    job.jobId = 1;
    job.document = u"first";
    printer.jobs = {job};
    auto late = job;
    late.jobId = 2;
    late.document = u"late";
    printer.afterJobsSized = [&] { printer.jobs.push_back(late); };
    PrinterConfig config;
    config.setPrinterName(u"P");
    ASSERT_TRUE(config.openPrinter(8));
    std::uint32_t count = 0;
    auto jobs = PrintJob::getAllJobs(*config.printerHandle, count);
    ASSERT_TRUE(jobs.has_value());
    EXPECT_EQ(count, 2u);
    auto needed = platform::jobRecordBytes(job);
    EXPECT_EQ(printer.jobEnumerations,
              (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{2, 0}, {3, needed + 320}}));

    // One whose texts take more than the room fails the second call, and gives no list.
    printer.jobs = {job};
    late.document = std::u16string(100, u'x');
    EXPECT_FALSE(PrintJob::getAllJobs(*config.printerHandle, count).has_value());
}

} // namespace
