#include "umpd/ProcessRunner.h"
#include "umpd/FakeOs.h"

using namespace testing_support;
using platform::Call;
using platform::RegistryRoot;

namespace {

using RunProcess = FakeOsTest;

TEST_F(RunProcess, DetachedStartAndWait) {
    fake.processes().processExitCode = 3;
    std::uint32_t exitCode = 0;
    EXPECT_TRUE(runProcess(u"a.exe -x", u"C:\\work", true, &exitCode, 11));
    EXPECT_EQ(exitCode, 3u);
    ASSERT_EQ(fake.processes().started.size(), 1u);
    const auto& start = fake.processes().started[0];
    EXPECT_EQ(start.commandLine, u"a.exe -x");
    EXPECT_EQ(start.workingDirectory, u"C:\\work");
    EXPECT_EQ(start.creationFlags, 0x28u);
    EXPECT_EQ(start.showWindow, platform::swHide);

    EXPECT_TRUE(runProcess(u"b.exe", std::nullopt, false, nullptr, 0));
    EXPECT_FALSE(fake.processes().started[1].showWindow.has_value());
    EXPECT_TRUE(runProcess(u"c.exe", std::nullopt, false, nullptr, 5));
    EXPECT_EQ(fake.processes().started[2].showWindow, 5); // any other value as it is

    fake.fail(Call::GetExitCodeProcess);
    exitCode = 77;
    EXPECT_TRUE(runProcess(u"a.exe", std::nullopt, true, &exitCode, 0));
    EXPECT_EQ(exitCode, 77u); // nothing to store
}

TEST_F(RunProcess, FailureGoesToTheDebugger) {
    fake.fail(Call::CreateProcess, 2);
    EXPECT_FALSE(runProcess(u"missing.exe", std::nullopt, true, nullptr, 0));
    EXPECT_EQ(fake.reporter().debugLines(),
              std::vector<std::string>{"CreateProcess failed [2].  Cmd Line : missing.exe\n"});
}

const std::u16string runKey = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::u16string driverDir = u"C:\\windows\\system32\\spool\\drivers\\x64\\3\\";
const std::u16string otherEntry = u"D:\\old\\kelmsnd.exe";
const std::u16string version2Dir = u"C:\\windows\\system32\\spool\\drivers\\w32x86\\2\\";

struct AutostartRow {
    const char* name;
    std::u16string entry; // empty: none
    bool setup;           // kelsetup.exe started
    std::u16string directory = driverDir;
    std::u16string printer = u"My Printer";
    Call fails = Call::Count;
};

class Autostart : public FakeOsTest, public ::testing::WithParamInterface<AutostartRow> {};

TEST_P(Autostart, RepairsOnlyAnEntryOfAnotherDriver) {
    const auto& row = GetParam();
    if (!row.entry.empty())
        fake.registry().setRegistryValue(RegistryRoot::CurrentUser, runKey, u"kelmsnd.exe",
                                         platform::stringValue(row.entry));
    if (row.fails != Call::Count) fake.fail(row.fails);
    checkAutostart(row.printer, row.directory);
    EXPECT_EQ(fake.accessAsked[Call::RegCreateKey], std::set<std::uint32_t>{0x2001F});
    ASSERT_EQ(fake.processes().started.size(), row.setup ? 1u : 0u);
    if (!row.setup) return;
    // Only the setup name is checked to fit the path's buffer: the rest is cut to it.
    auto command =
        row.directory + u"kelsetup.exe -printer=\"" + row.printer + u"\" -installStartmenu";
    EXPECT_EQ(fake.processes().started[0].commandLine, command.substr(0, 259));
    EXPECT_EQ(fake.processes().started[0].creationFlags, 0x28u);
    EXPECT_FALSE(fake.processes().started[0].workingDirectory.has_value());
    EXPECT_FALSE(fake.processes().started[0].showWindow.has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Entries, Autostart,
    ::testing::Values(
        AutostartRow{"Missing", u"", false},
        AutostartRow{"Current", driverDir + u"kelmsnd.exe", false},
        AutostartRow{"OldDriverVersion2", version2Dir + u"kelmsnd.exe", true},
        // The old driver's mark wins over the current directory.
        AutostartRow{"OldDriverVersion2InTheCurrentDirectory", version2Dir + u"kelmsnd.exe", true,
                     version2Dir},
        AutostartRow{"OtherPath", otherEntry, true},
        // 400 bytes with its NUL: more than the 260 bytes the value is read into.
        AutostartRow{"TooLongForItsBuffer", std::u16string(199, u'x'), false},
        AutostartRow{"KeyCannotBeOpened", otherEntry, false, driverDir, u"P", Call::RegCreateKey},
        AutostartRow{"NoRoomForTheSetupName", otherEntry, false, std::u16string(248, u'd')},
        AutostartRow{"RoomForTheSetupName", otherEntry, true, std::u16string(247, u'd')},
        AutostartRow{"LongPrinterName", otherEntry, true, driverDir, std::u16string(300, u'n')}),
    rowName);

} // namespace
