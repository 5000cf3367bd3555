// The job face's exports over the in-memory system: bad pointers, the settings and the
// packet handed out, the spooler's entry points, printer cleanup, the failures of init, and
// every platform call failing in turn.

#include "kelumpd64/conversion.h"
#include "pdf/PdfObjectList.h"
#include "umpd/JobFixture.h"
#include "umpd/JobRegistry.h"
#include "umpd/SpoolerEntryPoints.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <cwchar>
#include <functional>

using namespace testing_support;
using platform::Call;
using platform::toUtf8;

namespace {

const std::string wholeJob = jobBlocks[0] + jobBlocks[1] + jobBlocks[2];

// ---- a job pointer is trusted only when it is a live job

struct ExportCall {
    const char* name;
    std::function<int(void*)> call; // the export's result, as an int
    int badResult;
    const char* box; // the text of the box a bad pointer shows
};

const std::vector<ExportCall>& exportCalls() {
    static const std::vector<ExportCall> calls = {
        {"DocWrite", [](void* j) { return DocWrite(j, "x", 1); }, 0, "DocWrite invalid parms"},
        {"DocEnd", [](void* j) { return DocEnd(j); }, 0, "DocEnd invalid parms"},
        {"getIntVal", [](void* j) { return getIntVal(j, L"passthru", -7); }, -7,
         "getPrinterName invalid parms"},
        {"getStringVal",
         [](void* j) {
             wchar_t out[8] = L"keep";
             int r = getStringVal(j, L"x", out, 8, L"d");
             return std::wcscmp(out, L"keep") == 0 ? r : 99;
         },
         0, "getStringVal invalid parms"},
        {"getStringMultibyte",
         [](void* j) {
             char out[8] = "keep";
             int r = getStringMultibyte(j, "pdfaXML", out, 8);
             return std::strcmp(out, "keep") == 0 ? r : 99;
         },
         0, "getStringMultibyte invalid parms"},
        {"DrvSplWritePrinter",
         [](void* j) {
             std::uint32_t written = 0;
             int r = DrvSplWritePrinter(j, "xyz", 3, &written);
             return written == 3 ? r : 99; // the length is stored whatever follows
         },
         0, "DrvSplWritePrinter - invalid parms"},
        {"DrvSplStartPage", [](void* j) { return DrvSplStartPage(j); }, 0,
         "DrvSplStartPage invalid parms"},
        {"DrvSplEndPage", [](void* j) { return DrvSplEndPage(j); }, 0,
         "DrvSplEndPage invalid parms"},
        {"DrvSplEndDoc",
         [](void* j) {
             DrvSplEndDoc(j);
             return 0;
         },
         0, "DrvSplEndDoc - invalid parms"},
        {"DrvSplAbort",
         [](void* j) {
             DrvSplAbort(j);
             return 0;
         },
         0, "DrvSplAbort invalid parms"},
        {"DrvSplClose",
         [](void* j) {
             DrvSplClose(j);
             return 0;
         },
         0, "DrvSplClose - invalid parms"},
    };
    return calls;
}

TEST_F(JobTest, BadPointersAreRefusedAtEveryExportWithoutBeingRead) {
    startLauncher();
    auto* ended = start2k();
    ASSERT_EQ(DocEnd(ended), 1);                                            // freed
    auto converter = PSOpen(std::array<float, 6>{1, 0, 0, 1, 0, 0}.data()); // another object
    std::string text = "not a job";
    // Bytes that carry the magic everywhere: a check of the magic alone would take them.
    alignas(16) std::uint32_t lookalike[256];
    for (auto& word : lookalike)
        word = jobMagic;
    const std::vector<std::pair<const char*, void*>> pointers = {
        {"null", nullptr},
        {"freed", ended},
        {"garbage", reinterpret_cast<void*>(std::uintptr_t{0x10})},
        {"converter", converter},
        {"string", &text},
        {"lookalike", lookalike}};
    for (const auto& call : exportCalls()) {
        for (const auto& [kind, pointer] : pointers) {
            CurrentFake local; // a fresh record of boxes
            EXPECT_EQ(call.call(pointer), call.badResult) << call.name << " " << kind;
            ASSERT_EQ(local.reporter().boxes().size(), 1u) << call.name << " " << kind;
            EXPECT_EQ(toUtf8(local.reporter().boxes()[0].text), call.box);
            EXPECT_EQ(toUtf8(local.reporter().boxes()[0].caption), "Error");
            EXPECT_EQ(local.reporter().boxes()[0].style, platform::mbServiceNotification);
        }
    }
    PSClose(converter);
}

// After the spooler's end a job is no longer ready: only the magic-only calls take it.
TEST_F(JobTest, EndedJobIsNotReady) {
    startLauncher();
    auto* job = start2k();
    ASSERT_EQ(writeAll(job), "111");
    DrvSplEndDoc(job);
    EXPECT_EQ(driver(job)->state, jobState::ended);
    EXPECT_EQ(messages().size(), 2u);
    for (const auto& call : exportCalls()) {
        if (std::string(call.name) == "DrvSplWritePrinter" ||
            std::string(call.name) == "DrvSplClose")
            continue;
        CurrentFake local;
        EXPECT_EQ(call.call(job), call.badResult) << call.name;
        EXPECT_EQ(local.reporter().boxes().size(), 1u) << call.name;
    }
    EXPECT_NE(findJob(job), nullptr); // nothing freed it
    DrvSplClose(job);
    EXPECT_EQ(findJob(job), nullptr);
    EXPECT_EQ(file(jobOutput), wholeJob);
}

// ---- the spooler's entry points

// The spooler's handle names no printer here: the store's default name stands, and with it
// that printer's settings.
TEST_F(JobTest, SpoolerEntryPointsRunTheSameJob) {
    startLauncher();
    fake.registry().setRegistryValue(platform::RegistryRoot::CurrentUser, u"Software\\Foliograph\\",
                                     u"printerName", platform::stringValue(jobPrinterName));
    std::uint32_t id = 0;
    auto handle = fake.spooler().callerHandle(jobPrinterName, jobDocument, id);
    auto* job = DrvSplStartDoc(handle, id);
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(driver(job)->docName, jobDocument); // the spooler's job record
    EXPECT_EQ(DrvSplStartPage(job), 1);
    std::uint32_t written = 0;
    for (const auto& block : jobBlocks)
        EXPECT_EQ(DrvSplWritePrinter(job, block.data(), static_cast<std::uint32_t>(block.size()),
                                     &written),
                  1);
    EXPECT_EQ(DrvSplEndPage(job), 1);
    DrvSplAbort(job);
    EXPECT_EQ(driver(job)->state, jobState::ready | jobState::aborted);
    DrvSplEndDoc(job);
    EXPECT_EQ(file(jobOutput), wholeJob);
    EXPECT_EQ(messages().back(), "stopprint|Foliograph PDF|C:\\out\\Report.pdf|Report.pdf");
    DrvSplClose(job);
    EXPECT_TRUE(fake.reporter().boxes().empty());
}

// Without a stored default the product's own name stands, not the spooler's printer: its
// settings, its name in the messages.
TEST_F(JobTest, SpoolersHandleDoesNotNameThePrinter) {
    startLauncher();
    std::uint32_t id = 0;
    auto handle = fake.spooler().callerHandle(jobPrinterName, jobDocument, id);
    auto* job = DrvSplStartDoc(handle, id);
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(driver(job)->config.currentName(), u"Tamarisk Foliograph");
    std::uint32_t written = 0;
    EXPECT_EQ(DrvSplWritePrinter(job, "x", 1, &written), 1);
    DrvSplEndDoc(job);
    DrvSplClose(job);
    EXPECT_EQ(messages().back(), "stopprint|Tamarisk Foliograph|C:\\users\\anna\\AppData\\Local\\"
                                 "Foliograph\\Report.pdf|Report.pdf");
}

TEST_F(JobTest, ClosedWithoutAnEndTheFileIsClosedAndNobodyTold) {
    startLauncher();
    auto* job = start2k();
    ASSERT_EQ(writeAll(job), "111");
    DrvSplClose(job);
    EXPECT_EQ(file(jobOutput), wholeJob);
    EXPECT_EQ(messages(), std::vector<std::string>{"startprint|Foliograph PDF||"});
    EXPECT_EQ(findJob(job), nullptr);
}

TEST_F(JobTest, FailedWriteThroughTheSpoolerEntryEndsTheWriting) {
    startLauncher();
    auto* job = start2k();
    fake.fail(Call::WriteFile, 112, 1, 1);
    std::uint32_t written = 0;
    std::string results;
    for (const auto& block : jobBlocks)
        results += DrvSplWritePrinter(job, block.data(), static_cast<std::uint32_t>(block.size()),
                                      &written)
                       ? '1'
                       : '0';
    EXPECT_EQ(results, "100");
    EXPECT_EQ(written, jobBlocks[2].size());
    EXPECT_EQ(fake.callCount(Call::WriteFile), 2);
    DrvSplClose(job);
    EXPECT_EQ(file(jobOutput), jobBlocks[0]);
}

// ---- settings and the packet handed out

struct StringRow {
    const char* name;
    const wchar_t* key;
    std::optional<std::u16string> stored; // under "Stored"
    int length;
    const wchar_t* fallback;
    std::wstring result; // the buffer after the call ("####..." before)
};

class Strings : public JobTest, public ::testing::WithParamInterface<StringRow> {};

TEST_P(Strings, AreCopiedWhenTheyFitElseTheFallback) {
    const auto& row = GetParam();
    if (row.stored) set(u"Stored", *row.stored);
    auto* job = start2k();
    wchar_t buffer[16];
    std::wmemset(buffer, L'#', 15);
    buffer[15] = L'\0';
    EXPECT_EQ(getStringVal(job, row.key, buffer, row.length, row.fallback), 1);
    EXPECT_EQ(std::wstring(buffer), row.result);
    EXPECT_EQ(boxesShown(), "");
    DrvSplClose(job);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Strings,
    ::testing::Values(
        StringRow{"Found", L"Stored", u"abc", 8, L"dflt", L"abc"},
        StringRow{"FoundWithoutCase", L"STORED", u"abc", 8, nullptr, L"abc"},
        StringRow{"JustFits", L"Stored", u"abcdefg", 8, L"d", L"abcdefg"},
        StringRow{"TooLongTakesTheFallback", L"Stored", u"abcdefgh", 8, L"d", L"d"},
        StringRow{"EmptyTakesTheFallback", L"Stored", u"", 8, L"d", L"d"},
        StringRow{"AbsentTakesTheFallback", L"Missing", std::nullopt, 8, L"d", L"d"},
        StringRow{"NoFallbackLeavesTheBuffer", L"Missing", std::nullopt, 8, nullptr,
                  L"###############"},
        // The fallback's length was never checked against the buffer: it is cut to fit.
        StringRow{"LongFallbackIsCut", L"Missing", std::nullopt, 4, L"fallback", L"fal"},
        StringRow{"NoRoomAtAll", L"Stored", u"abc", 0, L"d", L"###############"},
        StringRow{"NegativeLength", L"Stored", u"abc", -5, L"d", L"###############"},
        StringRow{"NullName", nullptr, u"abc", 8, L"d", L"d"},
        StringRow{"IntegerSetting", L"SaveFilenameAction", std::nullopt, 8, nullptr, L"0"}),
    rowName);

TEST_F(JobTest, IntegersAreReadAsTheSystemReadsThemOrTheFallback) {
    set(u"Number", u"  -42x");
    set(u"Word", 7u);
    auto* job = start2k();
    EXPECT_EQ(getIntVal(job, L"number", 5), -42);
    EXPECT_EQ(getIntVal(job, L"Word", 5), 7);
    EXPECT_EQ(getIntVal(job, L"Missing", 5), 5);
    EXPECT_EQ(getIntVal(job, nullptr, 5), 5);
    DrvSplClose(job);
}

TEST_F(JobTest, PacketIsHandedOutWholeOrNotAtAll) {
    auto* job = start2k();
    std::wstring packet(65536, L'#');
    ASSERT_EQ(getStringVal(job, L"pdfaXML", packet.data(), 65536, L"unused"), 1);
    auto length = std::wcslen(packet.c_str());
    ASSERT_GT(length, 100u);
    EXPECT_EQ(packet.substr(0, 9), L"<?xpacket");
    // One unit short of room for the terminator: an empty text.
    std::wstring tight(length + 8, L'#');
    ASSERT_EQ(getStringVal(job, L"pdfaXML", tight.data(), static_cast<int>(length), L"x"), 1);
    EXPECT_EQ(tight[0], L'\0');
    EXPECT_EQ(tight[1], L'#');
    // "pdfaxml" is another name: a setting, absent here.
    wchar_t other[8] = L"####";
    ASSERT_EQ(getStringVal(job, L"pdfaxml", other, 8, L"d"), 1);
    EXPECT_EQ(std::wstring(other), L"d");
    DrvSplClose(job);
}

// A packet with its document id, which each call draws anew, blanked.
std::string withoutId(std::string packet) {
    auto at = packet.find("uuid:");
    if (at != std::string::npos) packet.replace(at + 5, 36, 36, '-');
    return packet;
}

TEST_F(JobTest, PacketAsUtf8LeavesWhatFitsUnterminated) {
    auto* job = start2k(u"Writer - Caf\u00e9.docx");
    std::string whole(65536, '#');
    ASSERT_EQ(getStringMultibyte(job, "pdfaXML", whole.data(), 65536), 1);
    auto length = std::strlen(whole.c_str());
    ASSERT_GT(length, 100u);
    std::wstring wide(65536, L'#');
    getStringVal(job, L"pdfaXML", wide.data(), 65536, nullptr);
    EXPECT_EQ(withoutId(whole.substr(0, length)),
              withoutId(toUtf8(platform::fromWchar(wide.c_str()))));
    std::string tight(length + 8, '#');
    ASSERT_EQ(getStringMultibyte(job, "pdfaXML", tight.data(), static_cast<int>(length)), 1);
    // All but the terminator.
    EXPECT_EQ(withoutId(tight.substr(0, length)), withoutId(whole.substr(0, length)));
    EXPECT_EQ(tight[length], '#');
    char other[8] = "keep";
    ASSERT_EQ(getStringMultibyte(job, "passthru", other, 8), 1);
    ASSERT_EQ(getStringMultibyte(job, nullptr, other, 8), 1);
    EXPECT_STREQ(other, "keep");
    DrvSplClose(job);
}

// ---- init's failures: a box, no job, the lock given up

struct InitRow {
    const char* name;
    bool byName;
    const wchar_t* printer; // for DocStart
    Call fails;
    std::string box;
};

class InitFailures : public JobTest, public ::testing::WithParamInterface<InitRow> {};

TEST_P(InitFailures, GiveNoJob) {
    const auto& row = GetParam();
    fake.fail(row.fails, 5);
    void* job = nullptr;
    if (row.byName) {
        std::wstring name = row.printer ? row.printer : L"";
        job = DocStart(row.printer ? name.data() : nullptr);
    } else {
        job = start2k();
    }
    EXPECT_EQ(job, nullptr);
    EXPECT_EQ(boxesShown(), row.box);
    EXPECT_EQ(fake.kernel().mutexHolds(mutexName()), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, InitFailures,
    ::testing::Values(
        InitRow{"NoName", true, nullptr, Call::Count,
                "Error|umpd - No printer handle or name|200000\n"},
        InitRow{"EmptyName", true, L"", Call::Count,
                "Error|umpd - No printer handle or name|200000\n"},
        InitRow{"UnknownPrinter", true, L"Nobody's \u00e9", Call::Count,
                "Error|umpd - Could not open printer [Nobody's \u00e9]|200000\n"},
        InitRow{"OpenFails", true, L"Foliograph PDF", Call::OpenPrinter,
                "Error|umpd - Could not open printer [Foliograph PDF]|200000\n"},
        InitRow{"NoRecordByName", true, L"Foliograph PDF", Call::GetPrinter,
                "Error|umpd - Could not retrieve printer info - handle [0](0x0), [Foliograph "
                "PDF]|200000\n"},
        InitRow{"NoRecord", false, nullptr, Call::GetPrinter,
                "Error|umpd - Could not retrieve printer info|200000\n"}),
    rowName);

TEST_F(JobTest, SpoolerHandleThatIsNoPrinterGivesNoJob) {
    EXPECT_EQ(DocStart2K(reinterpret_cast<void*>(std::uintptr_t{0x77}), 1, L"x", L"y"), nullptr);
    EXPECT_EQ(DocStart2K(nullptr, 1, nullptr, nullptr), nullptr);
    EXPECT_EQ(boxesShown(), "Error|umpd - Could not retrieve printer info|200000\n"
                            "Error|umpd - Could not retrieve printer info|200000\n");
}

// The job runs unlocked when the lock cannot be made, and takes the lock by name when
// another job made it meanwhile.
TEST_F(JobTest, LockThatCannotBeMadeIsOpenedByNameOrDoneWithout) {
    startLauncher();
    fake.fail(Call::CreateMutex, 5, 1);
    auto* job = start2k();
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(driver(job)->mutex->handle, nullptr);
    EXPECT_EQ(fake.reporter().debugLines(), std::vector<std::string>{"CreateMutex failed "});
    auto other = fake.kernel().createMutex(nullptr, false, mutexName());
    int holds = -1;
    launcher->onMessage = [&] { holds = fake.kernel().mutexHolds(mutexName()); };
    EXPECT_EQ(writeAll(job), "111");
    EXPECT_EQ(holds, 1);
    EXPECT_NE(driver(job)->mutex->handle, nullptr);
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(fake.kernel().mutexHolds(mutexName()), 0);
    EXPECT_EQ(file(jobOutput), wholeJob);
}

// ---- what a job leaves in the process

TEST_F(JobTest, ObjectListIsEmptiedWhenAJobIsMadeResetAndDestroyed) {
    auto& list = PdfObjectList::process();
    list.addObject(imageObjectKind, "/PSI");
    auto* job = start2k();
    EXPECT_EQ(list.size(), 0u);
    list.addObject(imageObjectKind, "/PSI");
    driver(job)->reset();
    EXPECT_EQ(list.size(), 0u);
    list.addObject(imageObjectKind, "/PSI");
    DrvSplClose(job);
    EXPECT_EQ(list.size(), 0u);
}

TEST_F(JobTest, PassthroughOtherThanOneWritesAFileButEndsAsPassthrough) {
    startLauncher();
    set(u"passthru", 2u); // on for init and the end, off for the writes
    auto* job = start2k();
    EXPECT_EQ(writeAll(job), "111");
    auto name = driver(job)->filename;
    EXPECT_EQ(DocEnd(job), 1);
    EXPECT_EQ(file(name), wholeJob);  // closed when the job went
    EXPECT_EQ(messages().size(), 1u); // started, and never told of the end
    EXPECT_TRUE(fake.spooler().printer(jobPrinterName)->written.empty());
}

TEST_F(JobTest, PassthroughWriteIsWholeOrFailed) {
    set(u"passthru", 1u);
    auto* job = start2k();
    fake.fail(Call::WritePrinter, 5, 1, 1);
    EXPECT_EQ(writeAll(job), "100");
    EXPECT_EQ(DocEnd(job), 1);
    const auto& written = fake.spooler().printer(jobPrinterName)->written;
    EXPECT_EQ(std::string(written.begin(), written.end()), jobBlocks[0]);
}

TEST_F(JobTest, CompletedJobsAreRemovedFromTheJobsPrinterOrTheConfigs) {
    auto& queue = fake.spooler().printer(jobPrinterName)->jobs;
    // The spooler's handle is this printer's; the config names the product's default.
    std::uint32_t id = 0;
    auto* job = DrvSplStartDoc(fake.spooler().callerHandle(jobPrinterName, jobDocument, id), id);
    ASSERT_NE(job, nullptr);
    platform::JobInfo2 done;
    done.jobId = 500;
    done.status = 0x1000;
    queue.push_back(done);
    driver(job)->deleteCompletedJobs();
    EXPECT_EQ(fake.spooler().printer(jobPrinterName)->jobControls,
              (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{500, 5}}));
    DrvSplClose(job);

    // Without the caller's handle the config's printer is opened for it.
    setVersion(4, 1); // where completed jobs are cancelled instead
    done.jobId = 501;
    queue.push_back(done);
    auto name = platform::toWchar(jobPrinterName);
    fake.spooler().callerHandle(jobPrinterName, jobDocument, id);
    auto* byName = DocStart(name.data());
    ASSERT_NE(byName, nullptr);
    EXPECT_EQ(driver(byName)->jobPrinter, nullptr);
    driver(byName)->deleteCompletedJobs();
    EXPECT_EQ(fake.spooler().printer(jobPrinterName)->jobControls.back(),
              (std::pair<std::uint32_t, std::uint32_t>{501, 3}));
    DrvSplClose(byName);
}

TEST(JobIds, GrowByTwoHundredThenByAQuarterAndZeroTheTail) {
    Vector<std::uint32_t> ids;
    std::vector<std::uint32_t> capacities;
    for (std::uint32_t i = 1; i <= 2000; ++i) {
        ASSERT_TRUE(ids.add(i));
        if (capacities.empty() || capacities.back() != ids.capacity)
            capacities.push_back(ids.capacity);
    }
    EXPECT_EQ(capacities,
              (std::vector<std::uint32_t>{200, 400, 600, 800, 1000, 1250, 1562, 1952, 2440}));
    for (std::uint32_t i = ids.size; i < ids.capacity; ++i)
        ASSERT_EQ(ids.data[i], 0u);
    EXPECT_TRUE(ids.contains(1999));
    EXPECT_FALSE(ids.contains(2001));
    EXPECT_EQ(ids[41], 42u);
}

TEST_F(JobTest, EachJobIdIsKeptOnce) {
    auto* job = start2k();
    auto* d = driver(job);
    EXPECT_EQ(d->jobIds.size, 1u);
    d->init(0, 0, u"Foliograph PDF"); // the same job started again by name
    d->init(0, 0, u"Foliograph PDF");
    EXPECT_EQ(d->jobIds.size, 2u);
    EXPECT_TRUE(d->jobIds.contains(0));
    DrvSplClose(job);
}

// ---- printer cleanup

struct CleanupRow {
    const char* name;
    std::uint32_t major;
    std::optional<std::string> sessionFile;
    const char16_t* launcherBase;
    std::vector<std::string> told;
};

class Cleanup : public JobTest, public ::testing::WithParamInterface<CleanupRow> {};

TEST_P(Cleanup, ReachesTheLauncherOfTheSessionInTheFile) {
    const auto& row = GetParam();
    setVersion(row.major, 2);
    if (row.sessionFile)
        fake.files().writeFile(u"C:\\users\\anna\\AppData\\Local\\Foliograph\\_sessionid",
                               *row.sessionFile);
    if (row.launcherBase) startLauncher(row.launcherBase);
    PrinterCleanup(L"Old Printer");
    EXPECT_EQ(messages(), row.told);
    EXPECT_EQ(boxesShown(), "");
}

const std::string cleaned = "printercleanup|Old Printer||";

INSTANTIATE_TEST_SUITE_P(
    Rows, Cleanup,
    ::testing::Values(
        CleanupRow{"Plain", 10, std::nullopt, u"Local\\kelsend_anna", {cleaned}},
        CleanupRow{"SessionFromTheFile", 10, "3\r\n", u"Session\\3\\kelsend_anna", {cleaned}},
        CleanupRow{"NoFileIsSessionOne", 10, std::nullopt, u"Session\\1\\kelsend_anna", {cleaned}},
        CleanupRow{"EmptyFileIsSessionOne", 10, "", u"Session\\1\\kelsend_anna", {cleaned}},
        CleanupRow{"OtherSessionMissed", 10, "4", u"Session\\3\\kelsend_anna", {}},
        CleanupRow{"NoSessionsBefore6", 5, "3", u"Session\\3\\kelsend_anna", {}},
        CleanupRow{"NoLauncher", 10, "3", nullptr, {}}),
    rowName);

TEST_F(JobTest, CleanupWithoutANameSaysSo) {
    startLauncher();
    PrinterCleanup(nullptr);
    EXPECT_EQ(boxesShown(), "Error|PrinterCleanup - invalid printer name (null)\n|200000\n");
    EXPECT_TRUE(launcher->messages.empty());
}

// ---- every platform call failing in turn

struct Outcome {
    std::string writes;
    std::u16string file; // the job's file, as it stood before DocEnd
};

// A whole job, beside an existing output it must not touch, with one kind of call failing
// after `skip` good ones. Whatever fails: nothing crashes, the lock is given up, the
// existing file stands, and every block reported written is in the file, in order.
class EveryCall : public JobTest, public ::testing::WithParamInterface<int> {};

TEST_P(EveryCall, FailingLosesNothingWritten) {
    for (int skip : {0, 1, 2, 5}) {
        for (bool passthrough : {false, true}) {
            CurrentFake local;
            local.spooler().addPrinter(jobPrinterName, productDriver, u"FOLIO:");
            local.registry().setRegistryValue(platform::RegistryRoot::CurrentUser, jobPrinterKey,
                                              u"DefaultSaveDir", platform::stringValue(u"C:\\out"));
            local.registry().setRegistryValue(platform::RegistryRoot::CurrentUser, jobPrinterKey,
                                              u"passthru", platform::dwordValue(passthrough));
            local.files().writeFile(jobOutput, "earlier");
            FakeLauncher peer(local, u"Local\\kelsend_anna");
            auto call = static_cast<Call>(GetParam());
            local.fail(call, 5, -1, skip);
            std::uint32_t id = 0;
            auto handle = local.spooler().callerHandle(jobPrinterName, jobDocument, id);
            void* job = DocStart2K(reinterpret_cast<void*>(handle), id, L"Foliograph PDF",
                                   L"Writer - Report.docx");
            std::string where = "call " + std::to_string(GetParam()) + " after " +
                                std::to_string(skip) + (passthrough ? " passthrough" : "");
            std::string written;
            std::u16string path;
            bool handedBack = false; // the settings may not say passthrough when reads fail
            if (job) {
                for (const auto& block : jobBlocks)
                    if (DocWrite(job, block.data(), static_cast<std::uint32_t>(block.size())))
                        written += block;
                path = driver(job)->filename;
                handedBack = driver(job)->passthru == 1;
                getIntVal(job, L"passthru", 0);
                EXPECT_EQ(DocEnd(job), 1) << where;
            }
            EXPECT_EQ(local.kernel().mutexHolds(u"Global\\umdriver"), 0) << where;
            EXPECT_EQ(local.files().fileText(jobOutput), "earlier") << where;
            if (handedBack) {
                const auto& printed = local.spooler().printer(jobPrinterName)->written;
                EXPECT_EQ(std::string(printed.begin(), printed.end()), written) << where;
            } else if (!written.empty()) {
                EXPECT_EQ(local.files().fileText(path), written) << where;
            }
            EXPECT_EQ(local.system().librariesHeld, 0) << where;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Calls, EveryCall, ::testing::Range(0, static_cast<int>(Call::Count)));

} // namespace
