#include "umpd/SystemServices.h"
#include "umpd/FakeOs.h"
#include "umpd/SecurityAttributesHolder.h"

using namespace testing_support;
using platform::Call;

namespace {

struct VersionRow {
    std::uint32_t major, platformId;
    bool nt4, nt5OrLater;
};

class VersionTests : public FakeOsTest, public ::testing::WithParamInterface<VersionRow> {};

TEST_P(VersionTests, ToldApartByMajorVersionAndPlatformId) {
    auto row = GetParam();
    setVersion(row.major, row.platformId);
    EXPECT_EQ(getOsMajorVersion(), row.major);
    EXPECT_EQ(getPlatformId(), row.platformId);
    EXPECT_EQ(isNt4(), row.nt4);
    EXPECT_EQ(isNt5OrLater(), row.nt5OrLater);
}

INSTANTIATE_TEST_SUITE_P(
    Systems, VersionTests,
    ::testing::Values(VersionRow{4, 1, false, false}, VersionRow{4, 2, true, false},
                      VersionRow{5, 1, false, true}, VersionRow{5, 2, false, true},
                      VersionRow{6, 2, false, true}, VersionRow{10, 2, false, true}));

using SystemServices = FakeOsTest;

TEST_F(SystemServices, FailedVersionQueryReadsAsNoVersion) {
    fake.fail(Call::GetVersionEx);
    EXPECT_EQ(getOsMajorVersion(), 0u);
    EXPECT_FALSE(isNt4());
    EXPECT_FALSE(isNt5OrLater());
}

TEST_F(SystemServices, ErrorBoxFormatsIntoAKilobyte) {
    errorBox("invalid parms %d [%s]", 7, "x");
    errorBox("%s", std::string(3000, 'a').c_str());
    auto boxes = fake.boxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text, u"invalid parms 7 [x]");
    EXPECT_EQ(boxes[0].caption, u"Error");
    EXPECT_EQ(boxes[0].style, 0x200000u);
    EXPECT_EQ(boxes[1].text, std::u16string(1023, u'a'));
}

TEST_F(SystemServices, FailureBoxShowsTheSystemsTextOrAFixedOne) {
    fake.system().setLastError(2);
    failureBox(u"LoadLibrary spoolss.dll", 0x200010);
    fake.fail(Call::FormatMessage);
    failureBox(u"other", 0);
    auto boxes = fake.boxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text, u"System error 2.\r\n");
    EXPECT_EQ(boxes[0].caption, u"LoadLibrary spoolss.dll");
    EXPECT_EQ(boxes[0].style, 0x200010u);
    EXPECT_EQ(boxes[1].text, u"Error string not found");
}

TEST_F(SystemServices, FieldCopiesAreCutToFit) {
    char16_t field[5];
    copyField(field, u"abcdefgh");
    EXPECT_EQ(fieldText(field), u"abcd");
    copyField(field, u"ab");
    EXPECT_EQ(fieldText(field), u"ab");
    char16_t unterminated[3] = {u'x', u'y', u'z'};
    EXPECT_EQ(fieldText(unterminated), u"xyz");
}

// Each failing step: what the record holds, the box, the debug text.
struct SecurityFailureRow {
    const char* name;
    Call call;
    bool recordSet;
    const char16_t* boxCaption; // null: no box
    const char* debugText;      // null: none
};

class SecurityFailures : public FakeOsTest,
                         public ::testing::WithParamInterface<SecurityFailureRow> {};

TEST_P(SecurityFailures, EachStepFailsInItsOwnWay) {
    auto row = GetParam();
    setVersion(10, 2);
    fake.fail(row.call);
    SecurityAttributesHolder holder;
    auto* sa = makeSecurityAttributes(holder);
    ASSERT_EQ(sa, &holder.record);
    EXPECT_EQ(sa->length, row.recordSet ? 8u : 0u);
    EXPECT_EQ(sa->descriptor != nullptr, row.recordSet);
    auto boxes = fake.boxes();
    if (row.boxCaption) {
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0].caption, row.boxCaption);
        EXPECT_EQ(boxes[0].text, u"System error 5.\r\n");
        EXPECT_EQ(boxes[0].style, 0x200000u);
    } else {
        EXPECT_TRUE(boxes.empty());
    }
    auto lines = fake.debugLines();
    if (row.debugText)
        EXPECT_EQ(lines, std::vector<std::string>{row.debugText});
    else
        EXPECT_TRUE(lines.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Steps, SecurityFailures,
    ::testing::Values(SecurityFailureRow{"LocalAlloc", Call::LocalAlloc, false, nullptr, nullptr},
                      SecurityFailureRow{"Initialize", Call::InitializeSecurityDescriptor, false,
                                         u"InitializeSecurityDescriptor failed", nullptr},
                      SecurityFailureRow{"Dacl", Call::SetSecurityDescriptorDacl, false,
                                         u"SetSecurityDescriptorDacl failed", nullptr},
                      SecurityFailureRow{
                          "Convert", Call::ConvertStringSecurityDescriptor, true, nullptr,
                          "ConvertStringSecurityDescriptorToSecurityDescriptor failed\n"},
                      SecurityFailureRow{"GetSacl", Call::GetSecurityDescriptorSacl, true, nullptr,
                                         "GetSecurityDescriptorSacl failed\n"},
                      SecurityFailureRow{"SetSacl", Call::SetSecurityDescriptorSacl, true, nullptr,
                                         "SetSecurityDescriptorSacl failed\n"}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
