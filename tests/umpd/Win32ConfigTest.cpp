// The configuration store and file naming on the real system, under Wine: the registry,
// kelconf.ini read by the profile functions, kelcfg.1's bytes and real folders.

#ifdef _WIN32

#include "platform/Platform.h"
#include "platform/TestPrinters.h"
#include "platform/WideText.h"
#include "platform/win32/Windows.h"
#include "umpd/Directories.h"
#include "umpd/DirectoryPath.h"
#include "umpd/NameMacros.h"
#include "umpd/PrinterConfig.h"
#include "umpd/SetFilename.h"

#include <gtest/gtest.h>

#include <string>

using namespace testing_support;

namespace {

// Names of this run: the prefix keeps the registry and the files between runs.
std::u16string unique(std::u16string_view what) {
    return u"Kel" + std::u16string(what) +
           platform::fromUtf8(std::to_string(GetCurrentProcessId()) + "_" +
                              std::to_string(GetTickCount()));
}

std::optional<platform::RegistryValue> userValue(const std::u16string& key,
                                                 const std::u16string& name) {
    std::unique_ptr<platform::RegistryKey> opened;
    auto root = platform::current().registry().root(platform::RegistryRoot::CurrentUser);
    if (root->openSubKey(key, KEY_READ, opened) != ERROR_SUCCESS) return std::nullopt;
    platform::RegistryValue value;
    if (opened->queryValue(name, value, 1024) != ERROR_SUCCESS) return std::nullopt;
    return value;
}

std::u16string tempDirectory() {
    wchar_t path[MAX_PATH];
    GetTempPathW(MAX_PATH, path);
    return reinterpret_cast<const char16_t*>(path);
}

void writeBytes(const std::u16string& path, const std::string& bytes) {
    auto file = platform::current().files().createFile(path);
    ASSERT_NE(file, nullptr);
    std::uint32_t written = 0;
    ASSERT_TRUE(file->write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), written));
}

TEST(Win32Config, FirstUseWritesTheDefaultsOnceUnderTheCommaName) {
    forgetDriverDirectory(); // tests over the fake ran in this process before
    auto name = unique(u"Cfg");
    PrinterConfig config;
    config.setPrinterName((u"\\\\kelsrv\\" + name).c_str()); // a port form no printer uses
    const auto key = u"Software\\Foliograph\\,,kelsrv," + name;

    std::u16string driverDirectory;
    ASSERT_TRUE(getDriverDirectory(driverDirectory, 260));
    auto ini = driverDirectory + u"kelconf.ini";
    writeBytes(ini, "[init]\r\nKelProbeInit=007\r\n[,,kelsrv," + platform::toUtf8(name) +
                        "]\r\nKelProbeText=7a\r\nKelProbeSigned=-7\r\nresIndex=\r\n");

    ASSERT_TRUE(config.loadSettings());
    EXPECT_EQ(userValue(key, u"SaveFilenameAction"), platform::dwordValue(3));
    EXPECT_EQ(userValue(key, u"DefaultSaveFilename"), platform::stringValue(u"{DOC}.pdf"));
    EXPECT_EQ(userValue(key, u"KelProbeInit"), platform::dwordValue(7));
    EXPECT_EQ(userValue(key, u"KelProbeText"), platform::stringValue(u"7a"));
    EXPECT_EQ(userValue(key, u"KelProbeSigned"), platform::stringValue(u"-7"));
    EXPECT_EQ(userValue(key, u"resIndex"), platform::dwordValue(3));
    auto saveDir = config.settings.get(u"DefaultSaveDir");
    ASSERT_NE(saveDir, nullptr);
    EXPECT_TRUE(saveDir->ends_with(u"\\Foliograph"));
    EXPECT_TRUE(platform::current().files().attributes(*saveDir).has_value());
    EXPECT_EQ(*config.settings.get(u"kelprobeinit"), u"7");

    // Once: a changed value stands at the next load.
    ASSERT_TRUE(config.setIntSetting(u"SaveFilenameAction", 4));
    ASSERT_TRUE(config.loadSettings());
    EXPECT_EQ(*config.settings.get(u"SaveFilenameAction"), u"4");

    // The override reaches the registry only when the file asks for it.
    writeBytes(ini, "[init]\r\noverrideUserSettings=1\r\nimageDPI=1200\r\n");
    config.applyOverrideFile();
    ASSERT_TRUE(config.loadSettings());
    EXPECT_EQ(*config.settings.get(u"imageDPI"), u"1200");
    DeleteFileW(w(ini));
}

TEST(Win32Config, DriverConfigFileIsUtf16WithoutMark) {
    PrinterConfig config;
    config.settings.set(u"imageDPI", u"600");
    config.settings.set(u"watermark", u"\u00e9t\u00e9");
    config.settings.set(u"other", u"x");
    ASSERT_TRUE(config.copyNameValuesToPrinterDriverConfigFile());
    auto directory = platform::current().system().systemDirectory();
    ASSERT_TRUE(directory.has_value());
    auto bytes = platform::current().files().readFile(*directory + u"\\kelcfg.1");
    ASSERT_TRUE(bytes.has_value());
    std::u16string text = u"imageDPI=600&watermark=\u00e9t\u00e9&";
    std::vector<std::uint8_t> expected;
    for (char16_t c : text) {
        expected.push_back(static_cast<std::uint8_t>(c & 0xFF));
        expected.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    EXPECT_EQ(*bytes, expected);
}

TEST(Win32Config, FoldersAndNamesOnTheRealFileSystem) {
    auto base = tempDirectory() + unique(u"Dir");
    EXPECT_TRUE(createDirectoryPath(base + u"\\a/b\\c"));
    EXPECT_EQ(GetFileAttributesW(w(base + u"\\a\\b\\c")) & FILE_ATTRIBUTE_DIRECTORY,
              static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY));
    writeBytes(base + u"\\file", "x");
    EXPECT_FALSE(createDirectoryPath(base + u"\\file\\sub"));

    SetEnvironmentVariableW(L"KEL_PROBE", L"probe");
    SYSTEMTIME now;
    GetLocalTime(&now);
    EXPECT_EQ(expandMacros(u"%Y {KEL_PROBE}", u"", 0, true),
              platform::fromUtf8(std::to_string(now.wYear)) + u" probe");

    PrinterConfig config;
    config.settings.set(u"DefaultSaveDir", base + u"\\out+dir");
    std::u16string docName = u"Writer - Report.docx", path;
    SetFilename naming(&config, 3);
    EXPECT_TRUE(naming.setOutputFilename(docName, path, 780, 3));
    EXPECT_EQ(path, base + u"\\out dir\\Report.pdf");
    EXPECT_EQ(docName, u"Report.pdf");
    EXPECT_EQ(GetFileAttributesW(w(base + u"\\out dir")) & FILE_ATTRIBUTE_DIRECTORY,
              static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY));
}

} // namespace

#endif
