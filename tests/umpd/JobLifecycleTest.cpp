// A print job from start to end over the in-memory system: every mode, every failure road,
// bad job pointers, names, collisions, and every platform call failing in turn.

#include "pdf/PdfObjectList.h"
#include "umpd/JobFixture.h"
#include "umpd/JobRegistry.h"
#include "umpd/SpoolerEntryPoints.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

using namespace testing_support;
using platform::Call;
using platform::toUtf8;

namespace {

const std::string wholeJob = jobBlocks[0] + jobBlocks[1] + jobBlocks[2];
const std::u16string driverDir = u"C:\\windows\\system32\\spool\\drivers\\x64\\3\\";

// "." and a drawn number, as a collision puts it into a name.
std::u16string dotted(int number) {
    std::u16string text = u".";
    text += platform::fromUtf8(std::to_string(number));
    return text;
}

// ---- the whole job in every mode

struct ModeRow {
    const char* name;
    std::uint32_t major, platformId;
    bool byName; // DocStart; else DocStart2K
    std::vector<std::pair<std::u16string, std::uint32_t>> settings;
    bool launcher;
    // What the job leaves:
    std::u16string file;           // the output file, empty for none
    std::vector<std::string> told; // the launcher's messages
    std::string printed;           // bytes handed back to the spooler
    std::optional<std::u16string> lastfile = {}, docNameSetting = {};
    bool eventSet = false;                    // Local\FinishPrintEv signalled
    std::optional<std::string> kelcfg = {};   // kelcfg.1 in the system folder
    std::optional<std::u16string> data4 = {}; // printerData4 in the registry
};

class Modes : public JobTest, public ::testing::WithParamInterface<ModeRow> {};

TEST_P(Modes, JobGoesFromStartToEnd) {
    const auto& row = GetParam();
    setVersion(row.major, row.platformId);
    for (const auto& [name, value] : row.settings)
        set(name, value);
    if (row.launcher) startLauncher();
    std::unique_ptr<platform::Event> finish;
    if (row.eventSet)
        finish = fake.kernel().createEvent(nullptr, false, false, u"Local\\FinishPrintEv");
    // The launcher is told under the job's lock, each time.
    std::vector<int> holdsWhileTold;
    if (launcher)
        launcher->onMessage = [&] {
            holdsWhileTold.push_back(fake.kernel().mutexHolds(mutexName()));
        };

    void* job = row.byName ? startByName() : start2k();
    ASSERT_NE(job, nullptr) << boxesShown();
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);

    if (!row.file.empty()) {

        EXPECT_EQ(file(row.file), wholeJob);
    }
    EXPECT_EQ(messages(), row.told);
    const auto& written = fake.spooler().printer(jobPrinterName)->written;
    EXPECT_EQ(std::string(written.begin(), written.end()), row.printed);
    EXPECT_EQ(setting(u"lastfile"), row.lastfile);
    EXPECT_EQ(setting(u"DocName"), row.docNameSetting);
    if (finish) {
        EXPECT_EQ(finish->wait(0), platform::WaitResult::Signalled);
    }
    EXPECT_EQ(fake.files().fileText(u"C:\\windows\\system32\\kelcfg.1"), row.kelcfg);
    EXPECT_EQ(setting(u"printerData4"), row.data4);
    EXPECT_EQ(holdsWhileTold, std::vector<int>(row.told.size(), 1));
    EXPECT_EQ(fake.kernel().mutexHolds(mutexName()), 0);
    EXPECT_TRUE(fake.processes().started.empty());
    EXPECT_EQ(boxesShown(), "");
    EXPECT_EQ(findJob(job), nullptr); // gone with DocEnd
}

const std::string startTold = "startprint|Foliograph PDF||";
const std::string stopTold = "stopprint|Foliograph PDF|C:\\out\\Report.pdf|Report.pdf";
using Settings = std::vector<std::pair<std::u16string, std::uint32_t>>;

// kelcfg.1 of a printer whose settings hold one of the names it carries.
std::string kelcfgText(const char16_t* text) {
    std::string bytes;
    for (const char16_t* p = text; *p; ++p) {
        bytes += static_cast<char>(*p & 0xFF);
        bytes += static_cast<char>(*p >> 8);
    }
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Modes,
    ::testing::Values(
        ModeRow{"Normal", 10, 2, false, {}, true, jobOutput, {startTold, stopTold}, "", {}, {}},
        ModeRow{"ByName", 10, 2, true, {}, true, jobOutput, {startTold, stopTold}, "", {}, {}},
        ModeRow{"NoStatusWindow",
                10,
                2,
                false,
                {{u"showPrintStatusWin", 0}},
                true,
                jobOutput,
                {stopTold},
                "",
                {},
                {}},
        ModeRow{"FinishEvent",
                10,
                2,
                false,
                {{u"FinishPrintEv", 1}},
                false,
                jobOutput,
                {},
                "",
                jobOutput,
                u"Report.pdf",
                true},
        // Nobody waits on the event: the job ends quietly, the settings stand.
        ModeRow{"FinishEventUnheard",
                10,
                2,
                false,
                {{u"FinishPrintEv", 1}},
                false,
                jobOutput,
                {},
                "",
                jobOutput,
                u"Report.pdf"},
        ModeRow{"Passthrough", 10, 2, false, {{u"passthru", 1}}, false, u"", {}, wholeJob, {}, {}},
        // Passthrough by name: the config's own handle takes the bytes.
        ModeRow{
            "PassthroughByName", 10, 2, true, {{u"passthru", 1}}, false, u"", {}, wholeJob, {}, {}},
        ModeRow{"Nt4",
                4,
                2,
                true,
                {{u"imageDPI", 300}},
                true,
                jobOutput,
                {startTold, stopTold},
                "",
                {},
                {},
                false,
                kelcfgText(u"imageDPI=300&")},
        ModeRow{"Platform1",
                4,
                1,
                true,
                {},
                true,
                jobOutput,
                {startTold, stopTold},
                "",
                {},
                {},
                false,
                std::nullopt,
                u"1"}),
    rowName);

// ---- the launcher: found, started, or missed

struct LauncherRow {
    const char* name;
    std::uint32_t major;
    int appearsAfter; // processes started before it runs; -1: never
    bool finishEvent;
    std::size_t started;
    std::string box; // caption|style
    std::string writes;
};

class Launcher : public JobTest, public ::testing::WithParamInterface<LauncherRow> {};

TEST_P(Launcher, RunsBeforeTheFileIsMade) {
    const auto& row = GetParam();
    setVersion(row.major, 2);
    if (row.finishEvent) set(u"FinishPrintEv", 1u);
    if (row.appearsAfter == 0) startLauncher();
    // A launcher that was not there at first is looked for from then on in the job's session
    // (1 by default), from major version 6.
    auto lateBase = row.major >= 6 ? std::u16string(u"Session\\1\\kelsend_anna") : plainBase();
    fake.system().onSleep = [&](std::uint32_t ms) {
        if (ms == 540 && !launcher && row.appearsAfter > 0 &&
            fake.processes().started.size() >= static_cast<std::size_t>(row.appearsAfter))
            startLauncher(lateBase);
    };
    auto* job = start2k();
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(writeAll(job), row.writes);
    ASSERT_EQ(fake.processes().started.size(), row.started);
    for (const auto& start : fake.processes().started) {
        EXPECT_EQ(start.commandLine, u"\"" + driverDir + u"kelmsnd.exe\"");
        EXPECT_EQ(start.creationFlags, 0u);
        EXPECT_EQ(start.showWindow, platform::swHide);
        EXPECT_FALSE(start.workingDirectory.has_value());
    }
    EXPECT_EQ(boxCaptions(), row.box);
    EXPECT_EQ(fake.files().fileText(jobOutput).has_value(), row.writes == "111");
    if (row.finishEvent) {
        for (const auto& name : fake.kernel().openedMutexNames)
            EXPECT_EQ(name.find(u"kelsend"), std::u16string::npos); // never looked for
    }
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(fake.kernel().mutexHolds(mutexName()), 0);
}

const std::string gaveUp =
    "Error:kelmsnd.exe is not running - and attempt to start it failed.|200010\n";

INSTANTIATE_TEST_SUITE_P(
    Rows, Launcher,
    ::testing::Values(LauncherRow{"Running", 10, 0, false, 0, "", "111"},
                      LauncherRow{"StartedInTheFirstRound", 10, 1, false, 1, "", "111"},
                      LauncherRow{"StartedInTheThirdRound", 10, 3, false, 3, "", "111"},
                      LauncherRow{"StartedInTheTenthRound", 10, 10, false, 10, "", "111"},
                      LauncherRow{"StartedOn5", 5, 2, false, 2, "", "111"},
                      LauncherRow{"NeverRuns", 10, -1, false, 10, gaveUp, "000"},
                      LauncherRow{"NeverRunsOn5", 5, -1, false, 10, gaveUp, "000"},
                      LauncherRow{
                          "NotStartedOnNt4", 4, -1, false, 0,
                          "Error:kelmsnd.exe is not running.  Please run it before printing to "
                          "Foliograph.|200010\n",
                          "000"},
                      LauncherRow{"NotNeededWithTheFinishEvent", 10, -1, true, 0, "", "111"}),
    rowName);

TEST_F(JobTest, LauncherThatCannotBeToldDoesNotStopTheJob) {
    startLauncher();
    fake.fail(Call::OpenEvent); // the request never reaches it
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(jobOutput), wholeJob);
    EXPECT_TRUE(launcher->messages.empty());
}

// ---- names

TEST_F(JobTest, LongDocumentNamesAreCutAtTheirFirstQuestionMarkOrAt259) {
    struct Row {
        std::u16string given;
        std::u16string kept;
    };
    auto questioned = std::u16string(120, u'a') + u"?" + std::u16string(179, u'b');
    auto shortQuestioned = std::u16string(200, u'a') + u"?b";
    auto plain = std::u16string(300, u'c');
    for (const auto& row :
         {Row{questioned, std::u16string(120, u'a')}, Row{plain, std::u16string(259, u'c')},
          Row{shortQuestioned, shortQuestioned}, // shorter than 260: kept whole
          Row{std::u16string(100, u'e') + u"?" + std::u16string(159, u'f'),
              std::u16string(100, u'e')},
          Row{std::u16string(259, u'd') + u"?", std::u16string(259, u'd')}}) {
        auto* job = start2k(row.given);
        ASSERT_NE(job, nullptr);
        EXPECT_EQ(driver(job)->docName, row.kept) << toUtf8(row.given);
        DrvSplClose(job);
    }
}

// The session of the user's launcher is the store's, under the product key.
TEST_F(JobTest, LauncherIsLookedForInTheStoresSession) {
    fake.registry().setRegistryValue(platform::RegistryRoot::CurrentUser, u"Software\\Foliograph\\",
                                     u"sessionId", platform::dwordValue(3));
    startLauncher(u"Session\\3\\kelsend_anna");
    auto* job = start2k();
    EXPECT_EQ(driver(job)->sessionId, 3u);
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(messages(), (std::vector<std::string>{startTold, stopTold}));
    EXPECT_TRUE(fake.processes().started.empty());
}

// A launcher entry that points to an older driver is repaired as the job starts.
TEST_F(JobTest, SpoolersJobRepairsAnOldAutostartEntry) {
    fake.registry().setRegistryValue(
        platform::RegistryRoot::CurrentUser, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run",
        u"kelmsnd.exe", platform::stringValue(u"C:\\old\\2\\kelmsnd.exe"));
    auto* job = start2k();
    ASSERT_NE(job, nullptr);
    ASSERT_EQ(fake.processes().started.size(), 1u);
    EXPECT_EQ(fake.processes().started[0].commandLine,
              driverDir + u"kelsetup.exe -printer=\"Foliograph PDF\" -installStartmenu");
    DrvSplClose(job);
}

TEST_F(JobTest, ByNameTheDocumentIsTheLastInTheQueue) {
    startLauncher();
    std::uint32_t id = 0;
    fake.spooler().callerHandle(jobPrinterName, u"Writer - Earlier.docx", id);
    auto* job = startByName(u"Writer - Latest.docx");
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(driver(job)->docName, u"Writer - Latest.docx");
    EXPECT_EQ(driver(job)->jobId, id + 1);
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(u"C:\\out\\Latest.pdf"), wholeJob);
}

TEST_F(JobTest, PercentsInTheNameAreDecodedForTheLauncher) {
    startLauncher();
    set(u"DefaultSaveFilename", u"{DOC}.pdf");
    auto* job = start2k(u"Report 100%25 sure+final");
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    ASSERT_EQ(launcher->messages.size(), 2u);
    EXPECT_EQ(messageLine(launcher->messages[1]),
              "stopprint|Foliograph PDF|C:\\out\\Report 100% sure final.pdf|"
              "Report 100% sure final.pdf");
}

// ---- collisions: an existing file is never written over

struct CollisionRow {
    const char* name;
    std::vector<std::u16string> existing;
    std::vector<std::pair<std::u16string, std::u16string>> settings;
    int numbers;               // numbers put in before the name was free
    std::u16string stem, tail; // the path is stem, the numbers each after ".", then tail
};

class Collisions : public JobTest, public ::testing::WithParamInterface<CollisionRow> {};

TEST_P(Collisions, PutANumberBeforeTheFinalSuffix) {
    const auto& row = GetParam();
    startLauncher();
    for (const auto& [name, value] : row.settings)
        set(name, value);
    for (const auto& path : row.existing)
        fake.files().writeFile(path, "earlier " + toUtf8(path));
    // The numbers the job will draw: the generator seeded with thread id times ticks.
    auto& system = fake.system();
    system.seedRandom(system.threadId * system.ticks);
    std::u16string expected = row.stem;
    for (int i = 0; i < row.numbers; ++i)
        expected += dotted(system.random());
    expected += row.tail;
    // Each existing name the job will meet is there.
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(driver(job)->filename, expected);
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(system.seeds.back(), system.threadId * system.ticks);
    EXPECT_EQ(file(expected), wholeJob);
    for (const auto& path : row.existing)
        EXPECT_EQ(file(path), "earlier " + toUtf8(path));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Collisions,
    ::testing::Values(
        CollisionRow{"None", {}, {}, 0, u"C:\\out\\Report.pdf", u""},
        CollisionRow{"Once", {u"C:\\out\\Report.pdf"}, {}, 1, u"C:\\out\\Report", u".pdf"},
        CollisionRow{"NoDotInTheName",
                     {u"C:\\out\\Reportxps"},
                     {{u"DefaultExtension", u"xps"}},
                     1,
                     u"C:\\out\\Reportxps",
                     u".pdf"},
        // The last "." may be the folder's: the name moves up a folder, still new.
        CollisionRow{"DotInTheFolderOnly",
                     {u"C:\\my.out\\Reportxps"},
                     {{u"DefaultExtension", u"xps"}, {u"DefaultSaveDir", u"C:\\my.out"}},
                     1,
                     u"C:\\my",
                     u".pdf"}),
    rowName);

// "Twice" needs the drawn number in the name of the second file: made here.
TEST_F(JobTest, EachCollisionAddsANumber) {
    startLauncher();
    auto& system = fake.system();
    system.seedRandom(system.threadId * system.ticks);
    auto first = u"C:\\out\\Report" + dotted(system.random());
    auto second = first + dotted(system.random());
    fake.files().writeFile(jobOutput, "one");
    fake.files().writeFile(first + u".pdf", "two");
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(second + u".pdf"), wholeJob);
    EXPECT_EQ(file(jobOutput), "one");
    EXPECT_EQ(file(first + u".pdf"), "two");
}

TEST_F(JobTest, NameThatCanGrowNoMoreFailsWithABox) {
    startLauncher();
    auto folder = u"C:\\" + std::u16string(200, u'd');
    set(u"DefaultSaveDir", folder);
    // Every name the job will draw exists, as long as it fits in the path's 780 characters
    // with its terminator: the drawn numbers are the generator's, seeded as the job seeds it.
    auto& system = fake.system();
    system.seedRandom(system.threadId * system.ticks);
    std::u16string name = folder + u"\\Report";
    std::vector<std::u16string> existing{name + u".pdf"};
    while (true) {
        auto next = name + dotted(system.random());
        if (next.size() + 4 >= UmDriver::filenameChars) break;
        name = next;
        existing.push_back(name + u".pdf");
    }
    for (const auto& path : existing)
        fake.files().writeFile(path, "kept");
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "000");
    EXPECT_EQ(boxCaptions(), "setOutputFilename failed.|200010\n");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_GT(existing.size(), 50u);
    for (const auto& path : existing)
        EXPECT_EQ(file(path), "kept");
    EXPECT_EQ(messages(), std::vector<std::string>{startTold}); // no file: no stop message
}

// ---- the file: where it goes when it cannot be made, and failed writes

const std::u16string virtualized =
    u"C:\\users\\anna\\AppData\\Local\\Microsoft\\Windows\\Temporary Internet "
    u"Files\\Virtualized\\C\\Report.pdf";

TEST_F(JobTest, FileThatCannotBeMadeGoesToTheVirtualisedStore) {
    startLauncher();
    fake.files().writeFile(virtualized + u".marker", ""); // its folder exists
    fake.fail(Call::CreateFile, platform::error::accessDenied, 1);
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(virtualized), wholeJob);
    EXPECT_EQ(fake.system().loadedLibraries, std::vector<std::u16string>{u"ieframe.dll"});
    EXPECT_EQ(fake.system().librariesHeld, 0);
    EXPECT_EQ(messages().back(), "stopprint|Foliograph PDF|" + toUtf8(virtualized) + "|Report.pdf");
}

TEST_F(JobTest, FallbackFolderIsTheRoamingOneWithoutALocalOne) {
    startLauncher();
    fake.system().folders.erase(platform::KnownFolder::LocalAppData);
    auto roaming = u"C:\\users\\anna\\AppData\\Roaming\\Microsoft\\Windows\\Temporary Internet "
                   u"Files\\Virtualized\\C\\Report.pdf";
    fake.files().writeFile(std::u16string(roaming) + u".marker", "");
    fake.fail(Call::CreateFile, platform::error::accessDenied, 1);
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(roaming), wholeJob);
}

// A failed second try shows no box: the first write fails instead, and the launcher still
// hears of the path.
TEST_F(JobTest, FileThatCannotBeMadeAnywhereFailsTheFirstWrite) {
    startLauncher();
    fake.fail(Call::CreateFile);
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "000");
    EXPECT_EQ(fake.callCount(Call::WriteFile), 0);
    EXPECT_EQ(boxesShown(), "");
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(messages(),
              (std::vector<std::string>{startTold, "stopprint|Foliograph PDF|" +
                                                       toUtf8(virtualized) + "|Report.pdf"}));
}

struct WriteFailureRow {
    const char* name;
    std::vector<std::string> blocks; // "null" stands for a null buffer of length 4
    int failingWrite;                // WriteFile call that fails (1-based), 0 for none
    std::string results;
    std::string kept; // what the file holds
    int writeCalls;
};

class WriteFailures : public JobTest, public ::testing::WithParamInterface<WriteFailureRow> {};

TEST_P(WriteFailures, OneBadBlockEndsTheWritingAndKeepsWhatWasWritten) {
    const auto& row = GetParam();
    startLauncher();
    auto* job = start2k();
    if (row.failingWrite) fake.fail(Call::WriteFile, 112, 1, row.failingWrite - 1);
    std::string results;
    for (const auto& block : row.blocks)
        results += DocWrite(job, block == "null" ? nullptr : block.data(),
                            static_cast<std::uint32_t>(block.size()))
                       ? '1'
                       : '0';
    EXPECT_EQ(results, row.results);
    EXPECT_EQ(fake.callCount(Call::WriteFile), row.writeCalls);
    EXPECT_EQ(driver(job)->state & jobState::writeFailed,
              row.results.find('0') == std::string::npos ? 0u : jobState::writeFailed);
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(jobOutput), row.kept);
    EXPECT_EQ(messages().size(), 2u); // the file is there: the launcher hears of it
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WriteFailures,
    ::testing::Values(WriteFailureRow{"None", {"a", "b", "c"}, 0, "111", "abc", 3},
                      WriteFailureRow{"Second", {"a", "b", "c"}, 2, "100", "a", 2},
                      WriteFailureRow{"First", {"a", "b"}, 1, "00", "", 1},
                      WriteFailureRow{"EmptyBlock", {"a", "", "c"}, 0, "100", "a", 1},
                      WriteFailureRow{"NullBlock", {"a", "null", "c"}, 0, "100", "a", 1}),
    rowName);

TEST_F(JobTest, JobWithoutWritesMakesNoFileAndTellsNobody) {
    startLauncher();
    auto* job = start2k();
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(fake.files().fileText(jobOutput), std::nullopt);
    EXPECT_TRUE(launcher->messages.empty());
    EXPECT_EQ(fake.kernel().mutexHolds(mutexName()), 0);
}

} // namespace
