// DocWrite throughput of a large job through the whole job face, against a plain WriteFile
// copy of the same blocks to the same folder, in the same run; Windows build, under Wine:
//   cmake/wine-run.sh $PWD/build/mingw/wineprefix build/mingw/docwrite_bench.exe [--mb N]
//       [--block BYTES] [--runs N]
// The job goes through the DLL's exports from DocStart2K to DocEnd, with kelmsnd answering
// startprint and stopprint; each run alternates the two, and the best of the runs counts.

#include "platform/TestPrinters.h"
#include "platform/win32/Windows.h"

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace testing_support;

namespace {

struct Options {
    std::uint64_t megabytes = 512;
    std::uint32_t block = 64 << 10;
    int runs = 3;
};

double seconds() {
    static LARGE_INTEGER frequency = [] {
        LARGE_INTEGER f;
        QueryPerformanceFrequency(&f);
        return f;
    }();
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

std::wstring folderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::wstring programFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return folderOf(path);
}

// The blocks of the job: noise, so that nothing on the way can shortcut it.
std::vector<std::uint8_t> noise(std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    std::uint64_t state = 0x243F6A8885A308D3ull;
    for (auto& b : bytes) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        b = static_cast<std::uint8_t>(state >> 32);
    }
    return bytes;
}

using DocStart2KFn = void* (*)(void*, std::uint32_t, const wchar_t*, const wchar_t*);
using DocWriteFn = int (*)(void*, const void*, std::uint32_t);
using DocEndFn = int (*)(void*);

} // namespace

int main(int argc, char** argv) {
    Options options;
    for (int i = 1; i + 1 < argc; i += 2) {
        std::string option = argv[i];
        auto value = std::strtoull(argv[i + 1], nullptr, 10);
        if (option == "--mb")
            options.megabytes = value;
        else if (option == "--block")
            options.block = static_cast<std::uint32_t>(value);
        else if (option == "--runs")
            options.runs = static_cast<int>(value);
        else {
            std::fprintf(stderr, "docwrite_bench: unknown option %s\n", option.c_str());
            return 2;
        }
    }
    if (options.block == 0 || options.megabytes == 0 || options.runs < 1) return 2;

    HMODULE dll = LoadLibraryW((programFolder() + L"kelumpd64.dll").c_str());
    if (!dll) {
        std::fprintf(stderr, "docwrite_bench: kelumpd64.dll not found beside the program\n");
        return 1;
    }
    auto docStart2K =
        reinterpret_cast<DocStart2KFn>(reinterpret_cast<void*>(GetProcAddress(dll, "DocStart2K")));
    auto docWrite =
        reinterpret_cast<DocWriteFn>(reinterpret_cast<void*>(GetProcAddress(dll, "DocWrite")));
    auto docEnd =
        reinterpret_cast<DocEndFn>(reinterpret_cast<void*>(GetProcAddress(dll, "DocEnd")));

    // A printer whose files go to a folder of this run, and the launcher beside it.
    const std::u16string printer = u"Kel Bench Printer";
    if (!addSystemPrinter(printer, productDriver, u"FILE:")) {
        std::fprintf(stderr, "docwrite_bench: cannot add the printer\n");
        return 1;
    }
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    std::wstring folder =
        std::wstring(temp) + L"kelbench-" + std::to_wstring(GetCurrentProcessId());
    CreateDirectoryW(folder.c_str(), nullptr);
    std::wstring key = L"Software\\Foliograph\\" + std::wstring(w(printer));
    RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"DefaultSaveDir", REG_SZ, folder.c_str(),
                    static_cast<DWORD>((folder.size() + 1) * sizeof(wchar_t)));
    DWORD zero = 0;
    RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"SaveFilenameAction", REG_DWORD, &zero, 4);
    RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"FinishPrintEv", REG_DWORD, &zero, 4);
    std::wstring command = L"\"" + programFolder() + L"kelmsnd.exe\"";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION launcher{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si,
                        &launcher)) {
        std::fprintf(stderr, "docwrite_bench: cannot start kelmsnd.exe\n");
        return 1;
    }
    Sleep(500); // it listens once its objects are made

    const auto block = noise(options.block);
    const std::uint64_t total = options.megabytes << 20;
    const auto blocks = (total + options.block - 1) / options.block;
    double bestJob = 1e30, bestCopy = 1e30;
    for (int run = 0; run < options.runs; ++run) {
        // Through the job face: a spooler's job on the printer, DocStart2K to DocEnd.
        std::u16string spooled = std::u16string(folder.begin(), folder.end()) + u"\\spooled.prn";
        std::uint32_t jobId = 0;
        auto handle = startSystemJob(printer, u"Writer - Bench.docx", spooled, jobId);
        double start = seconds();
        void* job =
            docStart2K(reinterpret_cast<void*>(handle), jobId, w(printer), L"Writer - Bench.docx");
        bool ok = job != nullptr;
        for (std::uint64_t i = 0; ok && i < blocks; ++i)
            ok = docWrite(job, block.data(), options.block) == 1;
        if (job) docEnd(job);
        bestJob = std::min(bestJob, seconds() - start);
        endSystemJob(handle);
        if (!ok) {
            std::fprintf(stderr, "docwrite_bench: the job failed\n");
            return 1;
        }
        auto jobFile = folder + L"\\Bench.pdf";
        DeleteFileW(jobFile.c_str());

        // The same blocks by WriteFile to the same folder.
        auto copyFile = folder + L"\\copy.bin";
        start = seconds();
        HANDLE file = CreateFileW(copyFile.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD written = 0;
        for (std::uint64_t i = 0; file != INVALID_HANDLE_VALUE && i < blocks; ++i)
            WriteFile(file, block.data(), options.block, &written, nullptr);
        CloseHandle(file);
        bestCopy = std::min(bestCopy, seconds() - start);
        DeleteFileW(copyFile.c_str());
    }
    // The lock every DocWrite takes and gives up, alone, once per block.
    HANDLE lock = CreateMutexW(nullptr, FALSE, L"Global\\umdriver");
    double lockStart = seconds();
    for (std::uint64_t i = 0; i < blocks; ++i) {
        WaitForSingleObject(lock, INFINITE);
        ReleaseMutex(lock);
    }
    double lockTime = seconds() - lockStart;
    CloseHandle(lock);

    TerminateProcess(launcher.hProcess, 0);
    CloseHandle(launcher.hProcess);
    CloseHandle(launcher.hThread);
    RemoveDirectoryW(folder.c_str());

    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    const double mb = static_cast<double>(blocks * options.block) / 1e6;
    std::printf("%.1f MB in blocks of %u bytes, best of %d runs by wall time:\n", mb, options.block,
                options.runs);
    std::printf("  job face   %8.3f s  %8.1f MB/s  (DocStart2K, DocWrite, DocEnd, kelmsnd told)\n",
                bestJob, mb / bestJob);
    std::printf("  WriteFile  %8.3f s  %8.1f MB/s\n", bestCopy, mb / bestCopy);
    std::printf("  ratio job face / WriteFile: %.3f\n", bestCopy / bestJob);
    std::printf("  the job lock alone, taken and given up %llu times: %.3f s (%.2f us a block)\n",
                static_cast<unsigned long long>(blocks), lockTime, lockTime * 1e6 / blocks);
    std::printf("  peak working set of the process: %.1f MiB\n",
                static_cast<double>(memory.PeakWorkingSetSize) / (1 << 20));
    FreeLibrary(dll);
    return 0;
}
