#pragma once

#include "umpd/InterProcessComms.h"
#include "umpd/LauncherStruct.h"

#include <cstdint>
#include <memory>

using LauncherComms = InterProcessComms<LauncherStruct>;

// The launcher as this side sees it: is it running, and the stop message.
class LauncherProxy {
public:
    LauncherProxy();
    virtual ~LauncherProxy();
    LauncherProxy(const LauncherProxy&) = delete;
    LauncherProxy& operator=(const LauncherProxy&) = delete;

    virtual bool isRunning();
    virtual bool stopLauncher();

    LauncherComms& comms() { return *ipc; }

protected:
    std::unique_ptr<LauncherComms> ipc;
};

// The launcher of a user who may sit in another session: from major version 6 it is
// also looked for under the session's names.
class CitrixLauncherProxy : public LauncherProxy {
public:
    explicit CitrixLauncherProxy(std::uint32_t sessionId) : sessionId(sessionId) {}

    bool isRunning() override;
    virtual bool sendPrinterCleanup(const char16_t* printerName);

    std::uint32_t sessionId;
};

// The job's two messages; false when the record cannot be mapped or the send fails.
bool sendStartPrint(LauncherComms& ipc, std::u16string_view printerName);
bool sendStopPrint(LauncherComms& ipc, std::u16string_view printerName,
                   std::u16string_view filename, std::u16string_view docName);
