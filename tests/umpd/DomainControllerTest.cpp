#include "umpd/DomainController.h"
#include "umpd/FakeOs.h"
#include "umpd/SystemServices.h"

using namespace testing_support;
using platform::Call;

namespace {

const std::u16string recordName = u"Local\\DomainControllerData";

class DomainController : public FakeOsTest {
protected:
    // The record as another process of the machine sees it.
    DomainControllerData& shared() {
        if (!mapping_) {
            mapping_ =
                fake.kernel().createFileMapping(nullptr, sizeof(DomainControllerData), recordName);
            view_ = mapping_->mapView(platform::fileMapReadWrite);
        }
        return *reinterpret_cast<DomainControllerData*>(view_->data());
    }
    std::unique_ptr<platform::FileMapping> mapping_;
    std::unique_ptr<platform::MappedView> view_;
};

TEST_F(DomainController, FirstProcessLooksUpAndShares) {
    DomainControllerLookup lookup; // the process's holder is a static: its set-up is thread-safe
    EXPECT_EQ(fake.callCount(Call::CreateFileMapping), 1);
    EXPECT_EQ(fake.kernel().creationOf(recordName), (platform::FakeObjectCreation{.size = 522}));
    auto security = fake.kernel().securityOf(recordName);
    ASSERT_TRUE(security.has_value());
    EXPECT_TRUE(security->openToAll);
    EXPECT_EQ(lookup.lookup(), u"\\\\DC1");
    EXPECT_EQ(fake.callCount(Call::OpenFileMapping), 1); // set up with the holder, not at use
    EXPECT_EQ(shared().state, 'r');
    EXPECT_EQ(fieldText(shared().domainController), u"\\\\DC1");
    // 'w', the name cleared and written, then 'r': a reader that sees it ready sees the name.
    EXPECT_EQ(fake.kernel().viewWrites(recordName),
              (std::vector<platform::FakeViewWrite>{{0, 1}, {2, 2}, {2, 12}, {0, 1}}));
    // The next process takes the shared answer.
    DomainControllerLookup other;
    EXPECT_EQ(other.lookup(), u"\\\\DC1");
    EXPECT_EQ(fake.callCount(Call::NetGetDcName), 1);
}

// What a look-up makes of the record as it finds it, and of failures on the way.
struct RecordRow {
    const char* name;
    std::uint8_t state;      // as found
    std::u16string found;    // the name as found; 260 units leave no terminator
    Call fails;              // Call::Count: none
    std::u16string result;   // what the look-up gives
    std::uint8_t stateAfter; // left in the record
    int netApiLoads;         // Netapi32 loaded
};

class RecordFound : public DomainController, public ::testing::WithParamInterface<RecordRow> {};

TEST_P(RecordFound, GivesTheSharedNameOrNone) {
    const auto& row = GetParam();
    shared().state = row.state;
    row.found.copy(shared().domainController, 260);
    if (row.fails != Call::Count) fake.fail(row.fails);
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), row.result);
    EXPECT_EQ(shared().state, row.stateAfter);
    EXPECT_EQ(fake.callCount(Call::LoadNetApi), row.netApiLoads);
}

INSTANTIATE_TEST_SUITE_P(
    Records, RecordFound,
    ::testing::Values(RecordRow{"ReadyIsTakenAsItStands", 'r', u"\\\\ELSEWHERE", Call::Count,
                                u"\\\\ELSEWHERE", 'r', 0},
                      RecordRow{"UnterminatedIsCutToTheResult", 'r', std::u16string(260, u'y'),
                                Call::Count, std::u16string(259, u'y'), 'r', 0},
                      RecordRow{"NoNetapi32IsTriedAgainLater", 0, u"", Call::LoadNetApi, u"", 0, 1},
                      RecordRow{"FailedLookUpIsAnEmptyName", 0, u"\\\\OLD", Call::NetGetDcName, u"",
                                'r', 1}),
    rowName);

TEST_F(DomainController, ReaderWaitsForTheLookerUpToSixtySeconds) {
    shared().state = 'w';
    fake.system().ticks = 0xFFFFFF00; // the wait is measured across the tick count's wrap
    DomainControllerLookup dead;
    EXPECT_EQ(dead.lookup(), u""); // a looker that died left 'w' behind
    EXPECT_EQ(shared().state, 'w');
    EXPECT_EQ(fake.system().sleeps, std::vector<std::uint32_t>(69, 876)); // 69 * 876 >= 60000
    fake.system().sleeps.clear();
    fake.system().onSleep = [&](std::uint32_t) {
        if (fake.system().sleeps.size() < 3) return;
        copyField(shared().domainController, u"\\\\DC2");
        shared().state = 'r';
    };
    DomainControllerLookup waiting;
    EXPECT_EQ(waiting.lookup(), u"\\\\DC2");
    EXPECT_EQ(fake.system().sleeps.size(), 3u);
}

TEST_F(DomainController, UnmappableRecordGivesEmptyForGood) {
    for (auto call : {Call::CreateFileMapping, Call::MapViewOfFile}) {
        CurrentFake local;
        local.fail(call);
        DomainControllerLookup lookup;
        EXPECT_EQ(lookup.lookup(), u"");
        local.clearFailures();
        EXPECT_EQ(lookup.lookup(), u""); // set up once per process
        EXPECT_EQ(local.callCount(Call::LoadNetApi), 0);
        EXPECT_FALSE(local.kernel().exists(recordName));
    }
}

TEST_F(DomainController, LongNameIsCutAndOldSystemsUseTheBareName) {
    setVersion(4, 2);
    fake.system().domainController = std::u16string(300, u'x');
    DomainControllerLookup lookup;
    EXPECT_EQ(lookup.lookup(), std::u16string(259, u'x'));
    EXPECT_TRUE(fake.kernel().exists(u"DomainControllerData"));
    EXPECT_FALSE(fake.kernel().exists(recordName));
}

} // namespace
