// kelmsnd: answers the driver's messages and logs each one.
//   kelmsnd [--base NAME] [--log FILE] [--count N] [--delay MS]
// NAME defaults to the plain name of this user's launcher, FILE to the environment's
// KELMSND_LOG (so that a kelmsnd the driver starts logs too). It answers each message MS
// milliseconds late, and stops after N messages or at the stop message (an empty command).
// The alive mutex shows that it listens.

#include "LauncherPeer.h"

#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/LauncherNames.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {
bool writeWhole(const std::u16string& path, const std::string& text) {
    auto file = platform::current().files().createFile(path);
    std::uint32_t written = 0;
    return file && file->write(text.data(), static_cast<std::uint32_t>(text.size()), written) &&
           written == text.size();
}
} // namespace

int main(int argc, char** argv) {
    std::u16string base = plainLauncherBase(launcherBaseWord);
    std::u16string logPath = platform::current().system().environment(u"KELMSND_LOG").value_or(u"");
    long count = -1;
    long delay = 0;
    if (argc % 2 == 0) {
        std::fprintf(stderr, "kelmsnd: every option takes a value\n");
        return 2;
    }
    for (int i = 1; i + 1 < argc; i += 2) {
        std::string option = argv[i];
        std::u16string value = platform::fromUtf8(argv[i + 1]);
        if (option == "--base")
            base = value;
        else if (option == "--log")
            logPath = value;
        else if (option == "--count")
            count = std::strtol(argv[i + 1], nullptr, 10);
        else if (option == "--delay")
            delay = std::strtol(argv[i + 1], nullptr, 10);
        else {
            std::fprintf(stderr, "kelmsnd: unknown option %s\n", option.c_str());
            return 2;
        }
    }
    LauncherPeer peer(base);
    if (!peer.start()) {
        std::fprintf(stderr, "kelmsnd: cannot create the launcher's objects\n");
        return 1;
    }
    std::string log;
    LauncherStruct message;
    for (long n = 0; count < 0 || n < count; ++n) {
        if (!peer.next(message, platform::infinite)) return 1;
        log += LauncherPeer::describe(message);
        if (!logPath.empty()) writeWhole(logPath, log);
        if (delay > 0) platform::current().system().sleep(static_cast<std::uint32_t>(delay));
        peer.answer();
        if (message.command[0] == u'\0') break; // the stop message
    }
    return 0;
}
