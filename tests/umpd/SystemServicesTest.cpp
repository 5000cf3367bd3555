#include "umpd/SystemServices.h"
#include "umpd/FakeOs.h"
#include "umpd/SecurityAttributesHolder.h"

using namespace testing_support;
using platform::Call;
using Failure = platform::SharedSecurityFailure;

namespace {

using SystemServices = FakeOsTest;

TEST_F(SystemServices, ToldApartByMajorVersionAndPlatformId) {
    struct Row {
        std::uint32_t major, platformId;
        bool nt4, nt5OrLater;
    } rows[] = {{4, 1, false, false}, {4, 2, true, false}, {5, 1, false, true},
                {5, 2, false, true},  {6, 2, false, true}, {10, 2, false, true}};
    for (auto row : rows) {
        setVersion(row.major, row.platformId);
        EXPECT_EQ(getOsMajorVersion(), row.major);
        EXPECT_EQ(getPlatformId(), row.platformId);
        EXPECT_EQ(isNt4(), row.nt4);
        EXPECT_EQ(isNt5OrLater(), row.nt5OrLater);
    }
    fake.fail(Call::GetVersionEx); // a failed query reads as no version
    EXPECT_EQ(getOsMajorVersion(), 0u);
    EXPECT_FALSE(isNt4() || isNt5OrLater());
}

TEST_F(SystemServices, ErrorBoxFormatsIntoAKilobyte) {
    errorBox("invalid parms %d [%s]", 7, "x");
    errorBox("%s", std::string(3000, 'a').c_str());
    EXPECT_EQ(boxesShown(),
              "Error|invalid parms 7 [x]|200000\nError|" + std::string(1023, 'a') + "|200000\n");
}

TEST_F(SystemServices, FailureBoxShowsTheSystemsTextOrAFixedOne) {
    fake.system().setLastError(2);
    failureBox(u"LoadLibrary spoolss.dll", 0x200010);
    fake.fail(Call::FormatMessage);
    failureBox(u"other", 0);
    EXPECT_EQ(
        boxesShown(),
        "LoadLibrary spoolss.dll|System error 2.\r\n|200010\nother|Error string not found|0\n");
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
    platform::SharedSecurityFailure failure;
    bool recordSet;
    const char* box;       // the box shown
    const char* debugText; // null: none
};

class SecurityFailures : public FakeOsTest,
                         public ::testing::WithParamInterface<SecurityFailureRow> {};

TEST_P(SecurityFailures, EachStepFailsInItsOwnWay) {
    auto row = GetParam();
    setVersion(10, 2);
    fake.security().failure = row.failure;
    SecurityAttributesHolder holder;
    auto* sa = makeSecurityAttributes(holder);
    ASSERT_EQ(sa, &holder.record);
    EXPECT_EQ(sa->length, row.recordSet ? 8u : 0u);
    EXPECT_EQ(sa->security != nullptr, row.recordSet);
    EXPECT_EQ(boxesShown(), row.box);
    EXPECT_EQ(fake.reporter().debugLines(),
              std::vector<std::string>(row.debugText ? 1 : 0, row.debugText ? row.debugText : ""));
}

INSTANTIATE_TEST_SUITE_P(
    Steps, SecurityFailures,
    ::testing::Values(
        SecurityFailureRow{"LocalAlloc", Failure::NoMemory, false, "", nullptr},
        SecurityFailureRow{"Initialize", Failure::Initialise, false,
                           "InitializeSecurityDescriptor failed|System error 5.\r\n|200000\n",
                           nullptr},
        SecurityFailureRow{"Dacl", Failure::OpenToAll, false,
                           "SetSecurityDescriptorDacl failed|System error 5.\r\n|200000\n",
                           nullptr},
        SecurityFailureRow{"Convert", Failure::LabelParse, true, "",
                           "ConvertStringSecurityDescriptorToSecurityDescriptor failed\n"},
        SecurityFailureRow{"GetSacl", Failure::LabelRead, true, "",
                           "GetSecurityDescriptorSacl failed\n"},
        SecurityFailureRow{"SetSacl", Failure::LabelApply, true, "",
                           "SetSecurityDescriptorSacl failed\n"}),
    rowName);

} // namespace
