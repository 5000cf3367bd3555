#include "umpd/UmDriver.h"

#include "pdf/PdfObjectList.h"
#include "platform/Platform.h"
#include "platform/WideText.h"
#include "umpd/Directories.h"
#include "umpd/JobRegistry.h"
#include "umpd/LauncherNames.h"
#include "umpd/LauncherProxy.h"
#include "umpd/MsgboxThread.h"
#include "umpd/NameMacros.h"
#include "umpd/ProcessRunner.h"
#include "umpd/SecurityAttributesHolder.h"
#include "umpd/SetFilename.h"
#include "umpd/SystemServices.h"

#include <string>

void OutFile::adopt(std::unique_ptr<platform::File> created) {
    file = std::move(created);
    open = true;
}

void OutFile::close() {
    file.reset();
    open = false;
}

bool OutFile::write(const void* bytes, std::uint32_t length, std::uint32_t& written) {
    written = 0;
    if (!file) {
        platform::current().system().setLastError(platform::error::invalidHandle);
        return false;
    }
    return file->write(bytes, length, written);
}

DriverMutex::DriverMutex(std::u16string mutexName) : name(std::move(mutexName)) {
    SecurityAttributesHolder holder;
    handle = platform::current().kernel().createMutex(makeSecurityAttributes(holder), false, name);
    if (!handle) platform::current().reporter().debugOutput("CreateMutex failed ");
}

bool DriverMutex::take() {
    if (!handle) handle = platform::current().kernel().openMutex(platform::mutexOpenAccess, name);
    if (!handle) return false;
    // An abandoned mutex is owned all the same.
    auto result = handle->wait(platform::infinite);
    return result == platform::WaitResult::Signalled || result == platform::WaitResult::Abandoned;
}

void DriverMutex::giveUp() {
    if (!handle) handle = platform::current().kernel().openMutex(platform::mutexOpenAccess, name);
    if (handle) handle->release();
}

namespace {
constexpr std::size_t documentNameCut = 260; // a longer name is cut at its first "?"

std::u16string cutText(std::u16string_view text, std::size_t chars) {
    auto untilEnd = untilNul(text);
    return std::u16string(untilEnd.substr(0, cutLength(untilEnd, chars - 1)));
}

void emptyProcessObjects() {
    PdfObjectList::process().emptyObjects();
}

std::u16string decimal(std::int64_t value) {
    return platform::fromUtf8(std::to_string(value));
}
} // namespace

UmDriver::UmDriver() {
    config.loadDefaultPrinterName();
    jobIds.growthHint = 200;
    magic = jobMagic;
    clearJob();
    emptyProcessObjects();
    mutexName =
        cutText(std::u16string(isNt5OrLater() ? u"Global\\" : u"") + u"umdriver", mutexNameChars);
    mutex = std::make_unique<DriverMutex>(mutexName);
    registerJob(this);
}

UmDriver::~UmDriver() {
    forgetJob(this);
    magic = 0;
    clearJob();
    emptyProcessObjects();
    outFile.close();
}

UmDriver2k::~UmDriver2k() = default;

void UmDriver::clearJob() {
    jobPrinter = nullptr;
    jobId = 0;
    state = 0;
    filename.clear();
    userName.clear();
    docName.clear();
    bytesWritten = 0;
    doPrint = 0;
}

void UmDriver::reset() {
    trace(u"> reset %x\n", this);
    magic = jobMagic;
    clearJob();
    emptyProcessObjects();
}

void UmDriver::borrowCallerPrinter(std::uintptr_t handle) {
    callerPrinter_ = handle ? platform::current().spooler().borrowPrinter(handle) : nullptr;
    jobPrinter = callerPrinter_.get();
}

void UmDriver::addJobId(std::uint32_t id) {
    if (!jobIds.contains(id)) jobIds.add(id);
}

void UmDriver::loadJobSettings() {
    config.applyOverrideFile();
    sessionId = config.readSessionId(1);
    config.loadSettings();
}

bool UmDriver::startPassthrough() {
    passthru = static_cast<std::uint8_t>(config.settings.getInt(u"passthru", 0));
    if (!passthru) return false;
    if (!jobPrinter) jobPrinter = config.printerHandle.get();
    state = jobState::ready;
    return true;
}

bool UmDriver::init(std::uintptr_t printerHandle, std::uint32_t id, const char16_t* printerName) {
    trace(u">init %x - printer = %d jobid = %d printerName = %s\n", this, printerHandle, id,
          printerName);
    DriverLock lock(mutex.get());
    config.setPrinterName(u"");
    borrowCallerPrinter(printerHandle);
    jobId = id;
    addJobId(id);
    userName = cutText(launcherUserName(), textChars);

    platform::Printer* printer = jobPrinter;
    if (!printerHandle) {
        if (!printerName || !*printerName) {
            errorBox("umpd - No printer handle or name");
            return false;
        }
        config.setPrinterName(printerName);
        if (!config.openPrinter(platform::printerAccessUse)) {
            errorBoxText(u"umpd - Could not open printer [" + std::u16string(printerName) + u"]");
            return false;
        }
        printer = config.printerHandle.get();
    }
    printerInfo.printer = printer;
    const auto* info = printerInfo.fetch();
    if (!info || !info->printerName || info->printerName->empty()) {
        auto handle = static_cast<std::int32_t>(printerHandle); // its low 32 bits, as %d shows it
        char shown[40];
        std::snprintf(shown, sizeof shown, "[%d](0x%x)", handle, static_cast<unsigned>(handle));
        errorBoxText(u"umpd - Could not retrieve printer info - handle " +
                     platform::fromUtf8(shown) + u", [" +
                     (printerName ? std::u16string(printerName) : u"(null)") + u"]");
        return false;
    }
    // The configured name stands; the spooler's is only a fallback.
    if (config.currentName().empty()) config.printerName = *info->printerName;
    loadJobSettings();

    if (isNt4()) {
        PrinterSelfScope self;
        if (!config.copyNameValuesToPrinterDriverConfigFile())
            failureBox(u"copyNameValuesToPrinterDriverConfigFile failed",
                       platform::mbServiceNotification);
    }
    if (getPlatformId() == platformWindows) config.setIntSetting(u"printerData4", 1);
    if (startPassthrough()) return true;

    platform::JobInfo2 job;
    if (jobPrinter && jobId) {
        if (jobPrinter->getJob(jobId, job) && job.document)
            docName = cutText(*job.document, textChars);
    } else {
        getCurrentPrintJobDocName(config, docName, jobId);
    }
    state = jobState::ready;
    return true;
}

bool UmDriver2k::init(std::uintptr_t printerHandle, std::uint32_t id, const char16_t* name) {
    trace(u"> UmDriver2k::init %x\n", this);
    DriverLock lock(mutex.get());
    borrowCallerPrinter(printerHandle);
    jobId = id;
    addJobId(id);

    printerInfo.printer = jobPrinter;
    const auto* info = printerInfo.fetch();
    auto printerName = info && info->printerName ? *info->printerName : std::u16string();
    printerName = cutText(printerName, textChars);
    if (printerName.empty()) {
        errorBox("umpd - Could not retrieve printer info");
        return false;
    }
    config.portName.clear();
    config.printerName = printerName;

    if (name) {
        std::u16string_view given = untilNul(name);
        if (given.size() >= documentNameCut) given = given.substr(0, given.find(u'?'));
        docName = cutText(given, textChars);
    }
    std::u16string driverDirectory;
    getDriverDirectory(driverDirectory, SetFilename::pathChars);
    checkAutostart(printerName, driverDirectory);
    loadJobSettings();
    if (!startPassthrough()) state = jobState::ready;
    trace(u"< UmDriver2k::init %x finishprintev = %d sessionId = %d\n", this,
          config.settings.getInt(u"FinishPrintEv", 0), sessionId);
    return true;
}

bool UmDriver::write(const void* buffer, std::uint32_t length) {
    trace(u"> write %x - %d bytes, out [%s]\n", this, length, filename);
    DriverLock lock(mutex.get());
    if (passthru == 1 && jobPrinter) {
        bytesWritten = 0;
        jobPrinter->writePrinter(buffer, length, bytesWritten);
        return bytesWritten == length;
    }
    if (!outFile.isOpen() && !startOutput()) return false;
    return writeToFile(buffer, length);
}

bool UmDriver::writeToFile(const void* buffer, std::uint32_t length) {
    if (!buffer || length == 0) return false;
    std::uint32_t written = 0;
    if (!outFile.write(buffer, length, written) || written != length) {
        trace(u"Error writing to %s\n", filename);
        return false;
    }
    bytesWritten += written;
    return true;
}

bool UmDriver::ensureLauncher(CitrixLauncherProxy& proxy) {
    if (proxy.isRunning()) return true;
    if (isNt4()) {
        MsgboxThread::show(
            lastErrorText(),
            u"Error:kelmsnd.exe is not running.  Please run it before printing to Foliograph.",
            jobPathBoxStyle);
        return false;
    }
    auto& os = platform::current();
    for (int round = 0; round < 10; ++round) {
        if (proxy.isRunning()) return true;
        std::u16string path;
        if (getDriverFilePath(path, SetFilename::pathChars, u"kelmsnd.exe")) {
            platform::ProcessStart start;
            start.commandLine = u"\"" + path + u"\"";
            start.showWindow = platform::swHide;
            os.processes().createProcess(start); // both handles closed at once
        }
        os.system().sleep(540);
        if (proxy.isRunning()) return true;
    }
    MsgboxThread::show(lastErrorText(),
                       u"Error:kelmsnd.exe is not running - and attempt to start it failed.",
                       jobPathBoxStyle);
    return false;
}

// The first block: the launcher told, the file named and made.
bool UmDriver::startOutput() {
    auto showStatus = config.settings.getInt(u"showPrintStatusWin", 1);
    auto finishEvent = config.settings.getInt(u"FinishPrintEv", 0);
    if (finishEvent == 0) {
        CitrixLauncherProxy proxy(sessionId);
        if (!ensureLauncher(proxy)) return false;
        if (showStatus) sendStartPrint(proxy.comms(), config.currentName());
    }
    auto action = static_cast<std::uint32_t>(config.settings.getInt(u"SaveFilenameAction", 0));
    SetFilename(&config, action).setOutputFilename(docName, filename, filenameChars, action);
    if (!pickFreeName()) return false;
    createOutputFile();
    return true;
}

namespace {
// Whether a file may stand at path. The file is made with CREATE_ALWAYS, so a name whose
// existence cannot be told (access denied, say) counts as taken.
bool mayExist(const std::u16string& path) {
    auto& os = platform::current();
    if (os.files().attributes(path)) return true;
    switch (os.system().lastError()) {
    case platform::error::fileNotFound:
    case platform::error::pathNotFound:
    case platform::error::invalidName:
    case platform::error::badPathname:
        return false;
    default:
        return true;
    }
}
} // namespace

// An existing file is never written over: a number goes before a final ".pdf" until the
// name is free. Each collision adds one, so the name grows, and the loop ends at the latest
// when it no longer fits.
bool UmDriver::pickFreeName() {
    auto& system = platform::current().system();
    system.seedRandom(system.currentThreadId() * system.tickCount());
    while (mayExist(filename)) {
        auto dot = filename.rfind(u'.');
        auto keep = dot == std::u16string::npos ? filename.size() : dot;
        std::u16string suffix = u".";
        suffix += decimal(system.random());
        suffix += u".pdf";
        if (keep + suffix.size() >= filenameChars) {
            MsgboxThread::show(lastErrorText(), u"setOutputFilename failed.", jobPathBoxStyle);
            return false;
        }
        filename = filename.substr(0, keep) + suffix;
    }
    return true;
}

// Where the file cannot be made, it goes to the browser's virtualised store instead; what
// the second try gives is kept, so a failure there shows in the first write.
void UmDriver::createOutputFile() {
    auto& os = platform::current();
    auto file = os.files().createFile(filename);
    if (!file) {
        trace(u"UMPD failed to open %s\n", filename);
        auto ieframe = os.system().loadLibrary(u"ieframe.dll");
        auto folder = os.system().knownFolder(platform::KnownFolder::LocalAppData);
        if (!folder || folder->empty())
            folder = os.system().knownFolder(platform::KnownFolder::RoamingAppData);
        auto base = folder.value_or(u"");
        auto path = base + u"\\Microsoft\\Windows\\Temporary Internet Files\\Virtualized\\" +
                    base.substr(0, 1);
        if (path.back() != u'\\') path += u'\\';
        auto slash = filename.find_last_of(u"\\/");
        path += slash == std::u16string::npos ? filename : filename.substr(slash + 1);
        filename = cutText(path, SetFilename::pathChars);
        file = os.files().createFile(filename);
    }
    trace(file ? u"UMPD %s created ok\n" : u"Error creating %s\n", filename);
    outFile.adopt(std::move(file));
}

bool UmDriver::endDoc() {
    trace(u"> UmDriver::endDoc() %x\n", this);
    DriverLock lock(mutex.get());
    trace(u"> UmDriver::inside mutex %x\n", this);
    if (doPrint) config.setIntSetting(u"DoPrint", 0);
    auto finishEvent = config.settings.getInt(u"FinishPrintEv", 0);
    if (!passthru && outFile.isOpen()) {
        outFile.close();
        tellLauncherOfEnd(finishEvent != 0);
        std::uint32_t count = 0;
        auto* printer = jobPrinter ? jobPrinter : config.printerHandle.get();
        if (auto jobs = printer ? PrintJob::getAllJobs(*printer, count) : std::nullopt)
            for (const auto& job : *jobs)
                trace(u"Printer job %d, Status %x pStatus %s\n", job.jobId, job.status,
                      job.statusText);
    }
    reset();
    state |= jobState::ended;
    trace(u"< UmDriver::endDoc() %x \n", this);
    return true;
}

void UmDriver::tellLauncherOfEnd(bool finishEvent) {
    auto decoded = urlDecode(docName);
    if (finishEvent) {
        config.setStringSetting(u"DocName", decoded);
        config.setStringSetting(u"lastfile", filename);
        auto name = std::u16string(isNt5OrLater() ? u"Local\\" : u"") + u"FinishPrintEv";
        if (auto event = platform::current().kernel().openEvent(platform::eventAllAccess, name))
            event->set();
        else
            trace(u"Open KelEvent [%s] failed.\n", name);
        return;
    }
    CitrixLauncherProxy proxy(sessionId);
    if (proxy.isRunning()) sendStopPrint(proxy.comms(), config.currentName(), filename, decoded);
}

void UmDriver::deleteCompletedJobs() {
    if (jobPrinter)
        PrintJob::deleteCompletedJobs(*jobPrinter);
    else
        config.deleteCompletedJobs();
}

void printerCleanup(const char16_t* printerName) {
    trace(u">PrinterCleanup printerName = %s \n", printerName);
    if (!printerName) {
        errorBox("PrinterCleanup - invalid printer name %s\n", "(null)");
        return;
    }
    std::uint32_t sessionId = 1;
    auto& files = platform::current().files();
    auto path = getUserDataDirectory() + u"\\_sessionid";
    if (files.attributes(path)) {
        if (auto bytes = files.readFile(path); bytes && !bytes->empty()) {
            std::u16string text(bytes->begin(), bytes->end()); // digits read as atoi reads them
            sessionId = static_cast<std::uint32_t>(intValue(untilNul(text)));
        }
    }
    CitrixLauncherProxy proxy(sessionId);
    if (proxy.isRunning()) proxy.sendPrinterCleanup(printerName);
}
