#include "umpd/DomainController.h"
#include "umpd/FakeOs.h"
#include "umpd/SystemServices.h"

using namespace testing_support;
using platform::Call;

namespace {

class DomainController : public FakeOsTest {
protected:
    // The record as another process of the machine sees it.
    DomainControllerData& shared(const std::u16string& name = u"Local\\DomainControllerData") {
        if (!mapping_) {
            mapping_ = fake.kernel().createFileMapping(nullptr, sizeof(DomainControllerData), name);
            view_ = mapping_->mapView(platform::fileMapReadWrite);
        }
        return *reinterpret_cast<DomainControllerData*>(view_->data());
    }
    std::unique_ptr<platform::FileMapping> mapping_;
    std::unique_ptr<platform::MappedView> view_;
};

TEST_F(DomainController, FirstProcessLooksUpAndShares) {
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), u"\\\\DC1");
    EXPECT_EQ(shared().state, 'r');
    EXPECT_EQ(fieldText(shared().domainController), u"\\\\DC1");
    EXPECT_EQ(fake.callCount(Call::NetGetDcName), 1);
    // The next process takes the shared answer.
    DomainControllerLookup other;
    EXPECT_EQ(other.lookup(), u"\\\\DC1");
    EXPECT_EQ(fake.callCount(Call::NetGetDcName), 1);
}

TEST_F(DomainController, ReadyRecordIsTakenAsItStands) {
    shared().state = 'r';
    copyField(shared().domainController, u"\\\\ELSEWHERE");
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), u"\\\\ELSEWHERE");
    EXPECT_EQ(fake.callCount(Call::LoadNetApi), 0);
}

TEST_F(DomainController, DeadLookerDelaysEachReaderBySixtySeconds) {
    shared().state = 'w';
    DomainControllerLookup lookup;
    auto before = fake.ticks;
    EXPECT_EQ(lookup.lookup(), u"");
    EXPECT_EQ(shared().state, 'w');
    EXPECT_GE(fake.ticks - before, 60000u);
    EXPECT_LT(fake.ticks - before, 60000u + 876u);
    for (auto ms : fake.sleeps)
        EXPECT_EQ(ms, 876u);
}

TEST_F(DomainController, ReaderWaitsForTheLookerToFinish) {
    shared().state = 'w';
    fake.onSleep = [&](std::uint32_t) {
        if (fake.sleeps.size() == 3) {
            copyField(shared().domainController, u"\\\\DC2");
            shared().state = 'r';
        }
    };
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), u"\\\\DC2");
    EXPECT_EQ(fake.sleeps.size(), 3u);
}

TEST_F(DomainController, FailuresLeaveAnEmptyName) {
    struct Row {
        const char* name;
        Call call;
        std::uint8_t state; // left in the record
    } rows[] = {{"no Netapi32", Call::LoadNetApi, 0},
                {"NetGetDCName fails", Call::NetGetDcName, 'r'}};
    for (auto row : rows) {
        SCOPED_TRACE(row.name);
        platform::FakePlatform local;
        platform::setCurrent(&local);
        local.fail(row.call);
        DomainControllerLookup lookup;
        EXPECT_EQ(lookup.lookup(), u"");
        auto mapping = local.kernel().openFileMapping(platform::fileMapAllAccess,
                                                      u"Local\\DomainControllerData");
        ASSERT_NE(mapping, nullptr);
        EXPECT_EQ(mapping->mapView(6)->data()[0], row.state);
        platform::setCurrent(&fake);
    }
}

TEST_F(DomainController, UnmappableRecordGivesEmptyForGood) {
    for (auto call : {Call::CreateFileMapping, Call::MapViewOfFile}) {
        platform::FakePlatform local;
        platform::setCurrent(&local);
        local.fail(call);
        DomainControllerLookup lookup;
        EXPECT_EQ(lookup.lookup(), u"");
        local.clearFailures();
        EXPECT_EQ(lookup.lookup(), u""); // set up once per process
        EXPECT_EQ(local.callCount(Call::LoadNetApi), 0);
        EXPECT_FALSE(local.exists(u"Local\\DomainControllerData"));
        platform::setCurrent(&fake);
    }
}

TEST_F(DomainController, RecordIsSetUpWithTheHolderNotAtFirstUse) {
    DomainControllerLookup lookup; // the process's holder is a static: its set-up is thread-safe
    EXPECT_EQ(fake.callCount(Call::OpenFileMapping), 1);
    EXPECT_EQ(fake.callCount(Call::CreateFileMapping), 1);
    auto security = fake.securityOf(u"Local\\DomainControllerData");
    ASSERT_TRUE(security.has_value());
    EXPECT_TRUE(security->nullDacl);
    EXPECT_EQ(lookup.lookup(), u"\\\\DC1");
    EXPECT_EQ(fake.callCount(Call::OpenFileMapping), 1);
}

TEST_F(DomainController, UnterminatedSharedNameIsCutToTheResultBuffer) {
    shared().state = 'r';
    for (auto& c : shared().domainController)
        c = u'y'; // another process left no terminator
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), std::u16string(259, u'y'));
}

TEST_F(DomainController, LongNameIsCutAndOldSystemsUseTheBareName) {
    setVersion(4, 2);
    fake.domainController = std::u16string(300, u'x');
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), std::u16string(259, u'x'));
    EXPECT_TRUE(fake.exists(u"DomainControllerData"));
    EXPECT_FALSE(fake.exists(u"Local\\DomainControllerData"));
}

} // namespace
