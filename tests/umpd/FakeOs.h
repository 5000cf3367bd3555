#pragma once

// The job face over the in-memory system, and a launcher that lives in it.

#include "platform/WideText.h"
#include "platform/fake/FakePlatform.h"
#include "umpd/LauncherStruct.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace testing_support {

class FakeOsTest : public ::testing::Test {
protected:
    FakeOsTest() { platform::setCurrent(&fake); }
    ~FakeOsTest() override { platform::setCurrent(nullptr); }

    void setVersion(std::uint32_t major, std::uint32_t platformId) {
        fake.version = platform::OsVersion{major, 0, 0, platformId};
    }
    std::vector<std::u16string> captions() const {
        std::vector<std::u16string> out;
        for (const auto& box : fake.boxes())
            out.push_back(box.caption);
        return out;
    }

    platform::FakePlatform fake;
};

// A launcher under a base name: it holds the mutex, the request event and the record,
// and answers each request by setting the answer event, keeping a copy of the record.
class FakeLauncher {
public:
    FakeLauncher(platform::FakePlatform& fake, std::u16string base, bool answers = true)
        : fake_(fake), base_(std::move(base)), answers_(answers) {
        auto& kernel = fake.kernel();
        alive_ = kernel.createMutex(nullptr, true, base_ + u"_mutex");
        request_ = kernel.createEvent(nullptr, false, false, base_ + u"_event");
        mapping_ = kernel.createFileMapping(nullptr, sizeof(LauncherStruct), base_ + u"_sm");
        view_ = mapping_->mapView(platform::fileMapReadWrite);
        fake.onEventSet(base_ + u"_event", [this] { onRequest(); });
    }

    LauncherStruct& record() { return *reinterpret_cast<LauncherStruct*>(view_->data()); }
    std::vector<LauncherStruct> messages;

private:
    void onRequest() {
        request_->wait(0); // take the request, as the launcher's wait would
        messages.push_back(record());
        if (!answers_) return;
        if (auto answer = fake_.kernel().openEvent(platform::eventAllAccess, base_ + u"_event_end"))
            answer->set();
    }
    platform::FakePlatform& fake_;
    std::u16string base_;
    bool answers_;
    std::unique_ptr<platform::Mutex> alive_;
    std::unique_ptr<platform::Event> request_;
    std::unique_ptr<platform::FileMapping> mapping_;
    std::unique_ptr<platform::MappedView> view_;
};

inline std::string text(const std::u16string& s) {
    return platform::toUtf8(s);
}

} // namespace testing_support
