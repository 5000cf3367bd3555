#include "OutputFile.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#define KEL_GETPID _getpid
#else
#include <unistd.h>
#define KEL_GETPID getpid
#endif
#ifndef O_BINARY
#define O_BINARY 0
#endif

namespace kelps2pdf {

namespace {

// The file to remove when a signal ends the run; a fixed buffer, since the
// handler may only touch what is already there.
char pendingRemoval[4096];

extern "C" void removeAndExit(int signal) {
    if (pendingRemoval[0]) std::remove(pendingRemoval);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void guard(const std::string& path) {
    if (path.size() >= sizeof pendingRemoval) return;
    std::memcpy(pendingRemoval, path.c_str(), path.size() + 1);
    std::signal(SIGINT, removeAndExit);
    std::signal(SIGTERM, removeAndExit);
#ifdef SIGHUP
    std::signal(SIGHUP, removeAndExit);
#endif
}

void unguard() {
    pendingRemoval[0] = 0;
}

} // namespace

std::string lastErrorText() {
    return std::strerror(errno);
}

void useBinaryStandardStreams() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

OutputFile::~OutputFile() {
    discard();
}

bool OutputFile::open(const std::string& path, std::string& error) {
    namespace fs = std::filesystem;
    path_ = path;
    std::string base;
    if (path == "-") {
        std::error_code code;
        const fs::path folder = fs::temp_directory_path(code);
        base = (code ? fs::path(".") : folder).string() + "/kelps2pdf";
    } else {
        base = path;
    }
    static unsigned counter = 0;
    const auto tick = std::chrono::steady_clock::now().time_since_epoch().count();
    for (int attempt = 0; attempt < 100; ++attempt) {
        temporary_ = base + ".part-" + std::to_string(KEL_GETPID()) + '-' +
                     std::to_string((tick + counter++) % 1000000);
        const int fd = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_BINARY, 0666);
        if (fd < 0 && errno == EEXIST) continue;
        if (fd < 0) break;
        file_ = fdopen(fd, "wb");
        if (!file_) {
            error = lastErrorText();
            ::close(fd);
            std::remove(temporary_.c_str());
            return false;
        }
        guard(temporary_);
        static char buffer[1 << 16];
        std::setvbuf(file_, buffer, _IOFBF, sizeof buffer);
        return true;
    }
    error = lastErrorText();
    temporary_.clear();
    return false;
}

bool OutputFile::commit(std::string& error) {
    if (!file_) {
        error = "no file";
        return false;
    }
    const bool written = std::fflush(file_) == 0 && !std::ferror(file_);
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!written || !closed) {
        error = lastErrorText();
        discard();
        return false;
    }
    if (path_ == "-") {
        std::FILE* in = std::fopen(temporary_.c_str(), "rb");
        bool copied = in != nullptr;
        char block[1 << 16];
        while (copied) {
            const std::size_t got = std::fread(block, 1, sizeof block, in);
            if (got == 0) break;
            copied = std::fwrite(block, 1, got, stdout) == got;
        }
        copied = copied && std::fflush(stdout) == 0 && !std::ferror(in);
        if (!copied) error = lastErrorText();
        if (in) std::fclose(in);
        discard();
        return copied;
    }
    std::error_code code;
    std::filesystem::rename(temporary_, path_, code);
    if (code) {
        error = code.message();
        discard();
        return false;
    }
    temporary_.clear();
    unguard();
    return true;
}

void OutputFile::discard() {
    if (file_) std::fclose(file_);
    file_ = nullptr;
    if (!temporary_.empty()) std::remove(temporary_.c_str());
    temporary_.clear();
    unguard();
}

} // namespace kelps2pdf
