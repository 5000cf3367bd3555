#pragma once

// The job face over the in-memory system, and a launcher that lives in it.

#include "platform/WideText.h"
#include "support/fake/FakePlatform.h"
#include "tools/kelmsnd/LauncherPeer.h"
#include "umpd/Directories.h"
#include "umpd/SetFilename.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace testing_support {

// An in-memory system, current while it lives: a fixture's, or a fresh one for a row. What
// the job face keeps for the life of a process starts afresh with it.
class CurrentFake : public platform::FakePlatform {
public:
    CurrentFake() : previous_(platform::setCurrent(this)) {
        forgetDriverDirectory();
        SetFilename::forgetRandomSeed();
    }
    ~CurrentFake() override { platform::setCurrent(previous_); }

private:
    platform::Platform* previous_;
};

// Table rows are named by their first field.
inline const auto rowName = [](const auto& info) { return std::string(info.param.name); };

class FakeOsTest : public ::testing::Test {
protected:
    void setVersion(std::uint32_t major, std::uint32_t platformId) {
        fake.system().version = platform::OsVersion{major, 0, 0, platformId};
    }
    // Each box shown as a line "caption|text|style in hex", so that a row says it in one string.
    std::string boxesShown() {
        std::ostringstream out;
        for (const auto& box : fake.reporter().boxes())
            out << platform::toUtf8(box.caption) << '|' << platform::toUtf8(box.text) << '|'
                << std::hex << box.style << '\n';
        return out.str();
    }

    CurrentFake fake;
};

// kelmsnd's side under a base name. Nothing else runs in the fake, so it takes each
// request as the request event is set, keeps a copy and the writes that made it, and
// answers unless told not to.
class FakeLauncher {
public:
    FakeLauncher(platform::FakePlatform& fake, const std::u16string& base, bool answers = true)
        : peer_(base) {
        EXPECT_TRUE(peer_.start());
        auto& kernel = fake.kernel();
        writesSeen_ = kernel.viewWrites(base + u"_sm").size();
        kernel.onEventSet(base + u"_event", [this, &kernel, base, answers] {
            if (!peer_.next(message_, 0)) return;
            messages.push_back(message_);
            auto all = kernel.viewWrites(base + u"_sm");
            writes.emplace_back(all.begin() + static_cast<std::ptrdiff_t>(writesSeen_), all.end());
            writesSeen_ = all.size();
            if (onMessage) onMessage();
            if (answers) peer_.answer();
        });
    }

    LauncherStruct& record() { return peer_.record(); }
    std::vector<LauncherStruct> messages;
    std::function<void()> onMessage; // runs as each message arrives, before the answer
    // For each message, the writes to the record since the one before (or since the
    // launcher started), in order.
    std::vector<std::vector<platform::FakeViewWrite>> writes;

private:
    LauncherPeer peer_;
    LauncherStruct message_;
    std::size_t writesSeen_ = 0;
};

} // namespace testing_support
