#pragma once

// A print job over the in-memory system: a printer of the product's driver, its settings,
// a launcher that answers, and the job face's exports.

#include "kelumpd64/printjob.h"
#include "platform/TestPrinters.h"
#include "platform/WideText.h"
#include "umpd/FakeOs.h"
#include "umpd/SystemServices.h"
#include "umpd/UmDriver.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace testing_support {

inline const std::u16string jobPrinterName = u"Foliograph PDF";
inline const std::u16string jobPrinterKey = u"Software\\Foliograph\\Foliograph PDF";
inline const std::u16string jobDocument = u"Writer - Report.docx";
inline const std::u16string jobOutput = u"C:\\out\\Report.pdf";
inline const std::vector<std::string> jobBlocks = {"%PDF-1.4\n", std::string("b\0dy\n", 5),
                                                   "%%EOF\n"};

// A launcher message as one line: command|printer|file|document.
inline std::string messageLine(const LauncherStruct& m) {
    return platform::toUtf8(fieldText(m.command)) + "|" +
           platform::toUtf8(fieldText(m.printerName)) + "|" +
           platform::toUtf8(fieldText(m.filename)) + "|" + platform::toUtf8(fieldText(m.docName));
}

class JobTest : public FakeOsTest {
protected:
    JobTest() {
        fake.spooler().addPrinter(jobPrinterName, productDriver, u"FOLIO:");
        set(u"DefaultSaveDir", u"C:\\out");
        set(u"SaveFilenameAction", 0u);
    }

    void set(const std::u16string& name, const std::u16string& text) {
        fake.registry().setRegistryValue(platform::RegistryRoot::CurrentUser, jobPrinterKey, name,
                                         platform::stringValue(text));
    }
    void set(const std::u16string& name, std::uint32_t value) {
        fake.registry().setRegistryValue(platform::RegistryRoot::CurrentUser, jobPrinterKey, name,
                                         platform::dwordValue(value));
    }
    std::optional<std::u16string> setting(const std::u16string& name) {
        auto value =
            fake.registry().registryValue(platform::RegistryRoot::CurrentUser, jobPrinterKey, name);
        if (!value) return std::nullopt;
        if (auto n = platform::valueDword(*value)) return platform::fromUtf8(std::to_string(*n));
        return platform::valueText(*value);
    }

    // The launcher of this user, under the names of the system in use.
    FakeLauncher& startLauncher() { return startLauncher(plainBase()); }
    FakeLauncher& startLauncher(const std::u16string& base) {
        launcher = std::make_unique<FakeLauncher>(fake, base);
        return *launcher;
    }
    std::u16string plainBase() {
        return std::u16string(getOsMajorVersion() >= 5 ? u"Local\\" : u"") + u"kelsend_anna";
    }
    std::u16string mutexName() {
        return std::u16string(getOsMajorVersion() >= 5 ? u"Global\\" : u"") + u"umdriver";
    }
    std::vector<std::string> messages() {
        std::vector<std::string> lines;
        if (launcher)
            for (const auto& m : launcher->messages)
                lines.push_back(messageLine(m));
        return lines;
    }

    // A job of the spooler's, as DocStart2K gets it.
    void* start2k(const std::u16string& document = jobDocument) {
        std::uint32_t id = 0;
        auto handle = fake.spooler().callerHandle(jobPrinterName, document, id);
        auto name = platform::toWchar(jobPrinterName);
        auto doc = platform::toWchar(document);
        return DocStart2K(reinterpret_cast<void*>(handle), id, name.c_str(), doc.c_str());
    }
    // A job by printer name, as DocStart gets it; the spooler's queue holds the document.
    void* startByName(const std::u16string& document = jobDocument) {
        std::uint32_t id = 0;
        fake.spooler().callerHandle(jobPrinterName, document, id);
        auto name = platform::toWchar(jobPrinterName);
        return DocStart(name.data());
    }
    // Each block through DocWrite: the results as a string of 1s and 0s.
    std::string writeAll(void* job, const std::vector<std::string>& blocks = jobBlocks) {
        std::string results;
        for (const auto& block : blocks)
            results +=
                DocWrite(job, block.data(), static_cast<std::uint32_t>(block.size())) ? '1' : '0';
        return results;
    }
    std::string file(const std::u16string& path) {
        return fake.files().fileText(path).value_or("(no file)");
    }
    // Each box as "caption|style in hex", a line each.
    std::string boxCaptions() {
        std::string lines;
        char style[16];
        for (const auto& box : fake.reporter().boxes()) {
            std::snprintf(style, sizeof style, "%x", box.style);
            lines += platform::toUtf8(box.caption) + "|" + style + "\n";
        }
        return lines;
    }
    static UmDriver* driver(void* job) { return static_cast<UmDriver*>(job); }

    std::unique_ptr<FakeLauncher> launcher;
};

} // namespace testing_support
