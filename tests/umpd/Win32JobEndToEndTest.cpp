// Print jobs through the DLL's exports on the real system, under Wine: a printer in the
// prefix, its settings in the registry, kelmsnd answering, and files on disk.

#ifdef _WIN32

#include "platform/TestPrinters.h"
#include "platform/WideText.h"
#include "platform/win32/Windows.h"
#include "umpd/LauncherProxy.h"
#include "umpd/Win32Launcher.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <set>
#include <thread>

using namespace testing_support;

namespace {

const std::u16string printer = u"Kel Job Printer";

// The DLL, and its exports found by their exact names.
struct JobFace {
    JobFace() {
        dll = LoadLibraryW((programFolder() + L"kelumpd64.dll").c_str());
        if (!dll) return;
        docStart2K =
            find<void*(void*, std::uint32_t, const wchar_t*, const wchar_t*)>("DocStart2K");
        docStart = find<void*(wchar_t*)>("?DocStart@@YAPEAXPEA_W@Z");
        docWrite = find<int(void*, const void*, std::uint32_t)>("DocWrite");
        docEnd = find<int(void*)>("DocEnd");
        printerCleanup = find<void(const wchar_t*)>("PrinterCleanup");
        getIntVal = find<int(void*, const wchar_t*, int)>("getIntVal");
        getStringVal =
            find<int(void*, const wchar_t*, wchar_t*, int, const wchar_t*)>("getStringVal");
        getStringMultibyte = find<int(void*, const char*, char*, int)>("getStringMultibyte");
    }
    ~JobFace() {
        if (dll) FreeLibrary(dll);
    }
    template <typename F> F* find(const char* name) {
        return reinterpret_cast<F*>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
    }
    bool complete() const {
        return docStart2K && docStart && docWrite && docEnd && printerCleanup && getIntVal &&
               getStringVal && getStringMultibyte;
    }

    HMODULE dll = nullptr;
    void* (*docStart2K)(void*, std::uint32_t, const wchar_t*, const wchar_t*) = nullptr;
    void* (*docStart)(wchar_t*) = nullptr;
    int (*docWrite)(void*, const void*, std::uint32_t) = nullptr;
    int (*docEnd)(void*) = nullptr;
    void (*printerCleanup)(const wchar_t*) = nullptr;
    int (*getIntVal)(void*, const wchar_t*, int) = nullptr;
    int (*getStringVal)(void*, const wchar_t*, wchar_t*, int, const wchar_t*) = nullptr;
    int (*getStringMultibyte)(void*, const char*, char*, int) = nullptr;
};

// The names in a loaded module's export table.
std::set<std::string> exportTable(HMODULE module) {
    auto* base = reinterpret_cast<const BYTE*>(module);
    auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    auto entry = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + entry.VirtualAddress);
    auto* names = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    std::set<std::string> out;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        out.insert(reinterpret_cast<const char*>(base + names[i]));
    return out;
}

TEST(Win32Exports, EveryExportIsFoundByItsExactNameAndNoOther) {
    JobFace face;
    ASSERT_NE(face.dll, nullptr);
    const std::set<std::string> all = {"PSOpen",
                                       "PSClose",
                                       "PSStartPage",
                                       "PSConvertToPdf",
                                       "PSExecuteReturnDoubles",
                                       "PSExecuteReturnStdOut",
                                       "PSGetErrorStr",
                                       "PSGetPdfObjects",
                                       "PSSetStepLimit",
                                       "DocStart2K",
                                       "DocWrite",
                                       "DocEnd",
                                       "PrinterCleanup",
                                       "getIntVal",
                                       "getStringVal",
                                       "getStringMultibyte",
                                       "?DocStart@@YAPEAXPEA_W@Z",
                                       "??4CUmpd@@QEAAAEAV0@AEBV0@@Z",
                                       "??4CUmpd@@QEAAAEAV0@$$QEAV0@@Z"};
    for (const auto& name : all)
        EXPECT_NE(GetProcAddress(face.dll, name.c_str()), nullptr) << name;
    EXPECT_EQ(exportTable(face.dll), all);
    // The assignment operators give back the object they were called on.
    char a = 0, b = 0;
    for (const char* name : {"??4CUmpd@@QEAAAEAV0@AEBV0@@Z", "??4CUmpd@@QEAAAEAV0@$$QEAV0@@Z"})
        EXPECT_EQ(face.find<void*(void*, const void*)>(name)(&a, &b), &a) << name;
}

// A printer of the product's driver with settings that send its files to a folder of this
// run; kelmsnd gone, no event left.
class Win32Job : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(face.complete());
        ASSERT_TRUE(addSystemPrinter(printer, productDriver, u"FILE:"));
        folder = tempFolder() + L"keljobs-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                 std::to_wstring(GetTickCount()) + L"\\";
        CreateDirectoryW(folder.c_str(), nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, key().c_str());
        setString(L"DefaultSaveDir", folder.substr(0, folder.size() - 1));
        setNumber(L"SaveFilenameAction", 0);
        ASSERT_TRUE(awaitLauncher(false));
    }

    static std::wstring key() { return L"Software\\Foliograph\\" + std::wstring(w(printer)); }
    void setString(const wchar_t* name, const std::wstring& value) {
        RegSetKeyValueW(HKEY_CURRENT_USER, key().c_str(), name, REG_SZ, value.c_str(),
                        static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    }
    void setNumber(const wchar_t* name, DWORD value) {
        RegSetKeyValueW(HKEY_CURRENT_USER, key().c_str(), name, REG_DWORD, &value, sizeof value);
    }
    std::wstring readString(const wchar_t* name) {
        wchar_t buffer[1024] = {};
        DWORD size = sizeof buffer;
        if (RegGetValueW(HKEY_CURRENT_USER, key().c_str(), name, RRF_RT_REG_SZ, nullptr, buffer,
                         &size) != ERROR_SUCCESS)
            return L"(none)";
        return buffer;
    }
    static std::string fileBytes(const std::wstring& path) {
        auto bytes = platform::current().files().readFile(std::u16string(path.begin(), path.end()));
        return bytes ? std::string(bytes->begin(), bytes->end()) : "(no file)";
    }

    // A job as the spooler starts it (the printer's handle with a document begun on it,
    // spooled to a file of its own), and the job face's job on it.
    struct SpoolerJob {
        std::uintptr_t handle = 0;
        std::uint32_t id = 0;
        std::wstring spooled;
        void* job = nullptr;
    };
    SpoolerJob start2k(const std::u16string& document) {
        SpoolerJob job;
        job.spooled = folder + L"spooled-" + std::to_wstring(++jobs) + L".prn";
        job.handle = startSystemJob(printer, document,
                                    std::u16string(job.spooled.begin(), job.spooled.end()), job.id);
        job.job =
            face.docStart2K(reinterpret_cast<void*>(job.handle), job.id, w(printer), w(document));
        return job;
    }
    std::string writeAll(void* job, const std::vector<std::string>& blocks) {
        std::string results;
        for (const auto& block : blocks)
            results += face.docWrite(job, block.data(), static_cast<std::uint32_t>(block.size()))
                           ? '1'
                           : '0';
        return results;
    }

    JobFace face;
    std::wstring folder;
    int jobs = 0;
};

const std::vector<std::string> blocks = {"%PDF-1.7\n", std::string(70000, 'x'),
                                         std::string("\0\1\2\3", 4), "%%EOF\n"};
std::string joined(const std::vector<std::string>& parts) {
    std::string out;
    for (const auto& part : parts)
        out += part;
    return out;
}

std::string narrow(const std::wstring& text) {
    return platform::toUtf8(std::u16string(text.begin(), text.end()));
}

TEST_F(Win32Job, SpoolersJobLandsByteForByteAndTheLauncherHearsOfIt) {
    LauncherPeerProcess launcher;
    ASSERT_TRUE(launcher.running);
    auto spooler = start2k(u"Writer - Quarterly report.docx");
    auto* job = spooler.job;
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(face.getIntVal(job, L"SaveFilenameAction", 9), 0);
    wchar_t saveDir[MAX_PATH] = {};
    EXPECT_EQ(face.getStringVal(job, L"defaultsavedir", saveDir, MAX_PATH, nullptr), 1);
    EXPECT_EQ(std::wstring(saveDir) + L"\\", folder);
    EXPECT_EQ(writeAll(job, blocks), "1111");
    EXPECT_EQ(face.docEnd(job), 1);
    EXPECT_TRUE(endSystemJob(spooler.handle));
    auto path = folder + L"Quarterly report.pdf";
    EXPECT_EQ(fileBytes(path), joined(blocks));
    EXPECT_EQ(LauncherPeerProcess::messages(launcher.logText()),
              (std::vector<std::string>{
                  "command=startprint|printerName=Kel Job Printer|filename=|docName=",
                  "command=stopprint|printerName=Kel Job Printer|filename=" + narrow(path) +
                      "|docName=Quarterly report.pdf"}));
}

TEST_F(Win32Job, JobByNameLandsWhereTheLauncherIsTold) {
    LauncherPeerProcess launcher;
    ASSERT_TRUE(launcher.running);
    std::wstring name(w(printer));
    void* job = face.docStart(name.data());
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(writeAll(job, blocks), "1111");
    EXPECT_EQ(face.docEnd(job), 1);
    auto told = LauncherPeerProcess::messages(launcher.logText());
    ASSERT_EQ(told.size(), 2u) << launcher.logText();
    const std::string filenameField = "|filename=";
    auto at = told[1].find(filenameField) + filenameField.size();
    auto path = told[1].substr(at, told[1].find("|docName=") - at);
    EXPECT_EQ(path.rfind(narrow(folder), 0), 0u) << path;
    auto widePath = platform::fromUtf8(path);
    EXPECT_EQ(fileBytes(std::wstring(widePath.begin(), widePath.end())), joined(blocks));
}

// Hundreds of megabytes in blocks of many sizes: the file is the job, byte for byte.
TEST_F(Win32Job, LargeJobInBlocksOfVaryingSizeLandsWhole) {
    LauncherPeerProcess launcher;
    ASSERT_TRUE(launcher.running);
    auto spooler = start2k(u"Writer - Large.docx");
    auto* job = spooler.job;
    ASSERT_NE(job, nullptr);
    const std::uint64_t total = 300ull << 20;
    const std::uint32_t sizes[] = {1, 4095, 65536, 7, 1 << 20, 333333, 4 << 20, 512, 2};
    std::vector<std::uint8_t> block(4 << 20);
    std::uint64_t state = 0x9E3779B97F4A7C15ull, hash = 1469598103934665603ull, sent = 0;
    for (std::size_t i = 0; sent < total; ++i) {
        auto size = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(sizes[i % std::size(sizes)], total - sent));
        for (std::uint32_t k = 0; k < size; ++k) {
            state ^= state << 13;
            state ^= state >> 7;
            state ^= state << 17;
            block[k] = static_cast<std::uint8_t>(state >> 24);
            hash = (hash ^ block[k]) * 1099511628211ull;
        }
        ASSERT_EQ(face.docWrite(job, block.data(), size), 1) << "block " << i;
        sent += size;
    }
    EXPECT_EQ(face.docEnd(job), 1);
    EXPECT_TRUE(endSystemJob(spooler.handle));
    auto path = folder + L"Large.pdf";
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    std::uint64_t read = 0, readHash = 1469598103934665603ull;
    DWORD n = 0;
    while (ReadFile(file, block.data(), static_cast<DWORD>(block.size()), &n, nullptr) && n > 0) {
        for (DWORD k = 0; k < n; ++k)
            readHash = (readHash ^ block[k]) * 1099511628211ull;
        read += n;
    }
    CloseHandle(file);
    DeleteFileW(path.c_str());
    EXPECT_EQ(read, total);
    EXPECT_EQ(readHash, hash);
    EXPECT_EQ(LauncherPeerProcess::messages(launcher.logText()).size(), 2u);
}

TEST_F(Win32Job, FinishEventModeStoresTheNamesAndSignals) {
    setNumber(L"FinishPrintEv", 1);
    HANDLE event = CreateEventW(nullptr, FALSE, FALSE, L"Local\\FinishPrintEv");
    ASSERT_NE(event, nullptr);
    auto spooler = start2k(u"Writer - Finished.docx");
    auto* job = spooler.job;
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(writeAll(job, blocks), "1111");
    EXPECT_EQ(WaitForSingleObject(event, 0), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_EQ(face.docEnd(job), 1);
    EXPECT_TRUE(endSystemJob(spooler.handle));
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
    CloseHandle(event);
    EXPECT_EQ(readString(L"lastfile"), folder + L"Finished.pdf");
    EXPECT_EQ(readString(L"DocName"), L"Finished.pdf");
    EXPECT_EQ(fileBytes(folder + L"Finished.pdf"), joined(blocks));
    EXPECT_FALSE(launcherListens()); // nobody started one
}

TEST_F(Win32Job, PassthroughHandsTheBytesBackToTheSpooler) {
    setNumber(L"passthru", 1);
    auto spooler = start2k(u"Writer - Passed.docx");
    auto* job = spooler.job;
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(writeAll(job, blocks), "1111");
    EXPECT_EQ(face.docEnd(job), 1);
    EXPECT_TRUE(endSystemJob(spooler.handle));
    EXPECT_EQ(fileBytes(spooler.spooled), joined(blocks));
    EXPECT_EQ(fileBytes(folder + L"Passed.pdf"), "(no file)");
}

TEST_F(Win32Job, CleanupReachesTheLauncher) {
    LauncherPeerProcess launcher;
    ASSERT_TRUE(launcher.running);
    face.printerCleanup(w(printer));
    face.printerCleanup(nullptr); // a box, and nothing sent
    EXPECT_EQ(LauncherPeerProcess::messages(launcher.logText()),
              std::vector<std::string>{
                  "command=printercleanup|printerName=Kel Job Printer|filename=|docName="});
}

// No launcher runs: the job starts kelmsnd.exe from the printer driver folder and tells it.
TEST_F(Win32Job, JobStartsTheLauncherFromTheDriverFolder) {
    wchar_t drivers[MAX_PATH] = {};
    DWORD needed = 0;
    ASSERT_TRUE(GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(drivers),
                                           sizeof drivers, &needed));
    auto installed = std::wstring(drivers) + L"\\3\\kelmsnd.exe";
    CreateDirectoryW((std::wstring(drivers) + L"\\3").c_str(), nullptr);
    ASSERT_TRUE(CopyFileW((programFolder() + L"kelmsnd.exe").c_str(), installed.c_str(), FALSE));
    auto log = folder + L"started.log";
    SetEnvironmentVariableW(L"KELMSND_LOG", log.c_str()); // the started launcher inherits it
    auto spooler = start2k(u"Writer - Started.docx");
    auto* job = spooler.job;
    ASSERT_NE(job, nullptr);
    EXPECT_EQ(writeAll(job, blocks), "1111");
    EXPECT_EQ(face.docEnd(job), 1);
    EXPECT_TRUE(endSystemJob(spooler.handle));
    SetEnvironmentVariableW(L"KELMSND_LOG", nullptr);
    EXPECT_EQ(fileBytes(folder + L"Started.pdf"), joined(blocks));
    EXPECT_EQ(LauncherPeerProcess::messages(LauncherPeerProcess::readLog(log)),
              (std::vector<std::string>{
                  "command=startprint|printerName=Kel Job Printer|filename=|docName=",
                  "command=stopprint|printerName=Kel Job Printer|filename=" +
                      narrow(folder + L"Started.pdf") + "|docName=Started.pdf"}));
    // The empty command ends it.
    LauncherProxy().stopLauncher();
    EXPECT_TRUE(awaitLauncher(false));
    DeleteFileW(installed.c_str());
}

// Two jobs from two threads at once: each call waits its turn, the lock is held while the
// launcher takes its time to answer, and each file is whole.
TEST_F(Win32Job, TwoJobsAtOnceAreSerialisedAndEachFileIsWhole) {
    LauncherPeerProcess launcher(L"--delay 250");
    ASSERT_TRUE(launcher.running);
    std::atomic<bool> done{false};
    std::atomic<int> seenHeld{0}, seenFree{0};
    // Each time a message is logged its sender waits for the answer: the lock is held.
    std::thread watcher([&] {
        HANDLE lock = nullptr;
        std::size_t logged = 0;
        while (!done) {
            if (!lock)
                lock = OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, L"Global\\umdriver");
            auto count = LauncherPeerProcess::messages(launcher.logText()).size();
            if (lock && count > logged) {
                logged = count;
                if (WaitForSingleObject(lock, 0) == WAIT_TIMEOUT) {
                    ++seenHeld;
                } else {
                    ++seenFree;
                    ReleaseMutex(lock);
                }
            }
            Sleep(20);
        }
        if (lock) CloseHandle(lock);
    });
    auto run = [&](const std::u16string& document, char fill, std::string& results) {
        auto spooler = start2k(document);
        auto* job = spooler.job;
        if (!job) return;
        std::vector<std::string> parts;
        for (int i = 0; i < 40; ++i)
            parts.push_back(std::string(32768 + i, static_cast<char>(fill + i % 5)));
        results = writeAll(job, parts);
        results += face.docEnd(job) ? "E" : "-";
        endSystemJob(spooler.handle);
    };
    std::string first, second;
    {
        std::thread a(run, u"Writer - Alpha.docx", 'a', std::ref(first));
        std::thread b(run, u"Writer - Beta.docx", 'A', std::ref(second));
        a.join();
        b.join();
    }
    done = true;
    watcher.join();
    EXPECT_EQ(first, std::string(40, '1') + "E");
    EXPECT_EQ(second, std::string(40, '1') + "E");
    for (auto [name, fill] : {std::pair{L"Alpha.pdf", 'a'}, std::pair{L"Beta.pdf", 'A'}}) {
        std::string expected;
        for (int i = 0; i < 40; ++i)
            expected += std::string(32768 + i, static_cast<char>(fill + i % 5));
        EXPECT_EQ(fileBytes(folder + name), expected) << narrow(name);
    }
    auto told = LauncherPeerProcess::messages(launcher.logText());
    EXPECT_EQ(told.size(), 4u);
    EXPECT_GE(seenHeld.load(), 1);
    EXPECT_EQ(seenFree.load(), 0);
}

} // namespace

#endif
