// Loads the shipped library by name, as a host does, finds every export of the
// conversion face, and converts through them.
#include "kelumpd64/conversion.h"
#include "kelumpd64/limits.h"

#include <gtest/gtest.h>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

class Library {
public:
    Library() {
#ifdef _WIN32
        handle_ = LoadLibraryW(L"kelumpd64.dll");
#else
        handle_ = dlopen(KEL_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
#endif
    }
    ~Library() {
#ifdef _WIN32
        if (handle_) FreeLibrary(handle_);
#else
        if (handle_) dlclose(handle_);
#endif
    }
    bool loaded() const {
        return handle_ != nullptr;
    }
    template <class F> F find(const char* name) const {
#ifdef _WIN32
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(handle_, name)));
#else
        return reinterpret_cast<F>(dlsym(handle_, name));
#endif
    }

private:
#ifdef _WIN32
    HMODULE handle_;
#else
    void* handle_;
#endif
};

TEST(SharedLibrary, ExportsTheConversionFaceByName) {
    Library library;
    ASSERT_TRUE(library.loaded());
    auto open = library.find<decltype(&PSOpen)>("PSOpen");
    auto close = library.find<decltype(&PSClose)>("PSClose");
    auto convert = library.find<decltype(&PSConvertToPdf)>("PSConvertToPdf");
    auto doubles = library.find<decltype(&PSExecuteReturnDoubles)>("PSExecuteReturnDoubles");
    auto stdOut = library.find<decltype(&PSExecuteReturnStdOut)>("PSExecuteReturnStdOut");
    auto error = library.find<decltype(&PSGetErrorStr)>("PSGetErrorStr");
    auto startPage = library.find<decltype(&PSStartPage)>("PSStartPage");
    auto objects = library.find<decltype(&PSGetPdfObjects)>("PSGetPdfObjects");
    auto stepLimit = library.find<decltype(&PSSetStepLimit)>("PSSetStepLimit");
    ASSERT_TRUE(open && close && convert && doubles && stdOut && error && startPage && objects &&
                stepLimit);

    const float identity[6] = {1, 0, 0, 1, 0, 0};
    PSHandle h = open(identity);
    ASSERT_NE(h, nullptr);
    const unsigned char program[] = "1 2.5 (text) { /x y } ";
    uint32_t length = sizeof program - 1;
    EXPECT_NE(convert(h, program, &length), nullptr);
    EXPECT_EQ(length, 0u);
    const char* out = stdOut(h, "3 stack ", 8);
    ASSERT_NE(out, nullptr);
    EXPECT_STREQ(out, "3\n[x y ]\n(text)\n2.500000\n1\n");
    // No getdoubles has run: a null array with count 0, which is no failure.
    uint32_t count = 5;
    EXPECT_EQ(doubles(h, "4 ", &count), nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_STREQ(error(h), "");

    // A failure reaches the host as text, and the handle goes on.
    length = 1;
    EXPECT_EQ(convert(h, reinterpret_cast<const unsigned char*>("}"), &length), nullptr);
    std::string text = error(h);
    EXPECT_EQ(text.rfind("Exception:[", 0), 0u);
    EXPECT_NE(text.find("] Expected ps_array at Mark execute\n"), std::string::npos);
    length = 2;
    EXPECT_NE(convert(h, reinterpret_cast<const unsigned char*>("5 "), &length), nullptr);

    // A page start keeps the language state; no record was made, and the
    // empty list still has an array.
    const char* listed = stdOut(h, "stack ", 6);
    ASSERT_NE(listed, nullptr);
    const std::string before = listed;
    const float page[6] = {0.5f, 0, 0, 0.5f, 0, 0};
    startPage(h, page);
    EXPECT_STREQ(stdOut(h, "stack ", 6), before.c_str());
    EXPECT_NE(before.find("(text)"), std::string::npos) << before;
    uint64_t records = 7;
    EXPECT_NE(objects(h, &records), nullptr);
    EXPECT_EQ(records, 0u);

    // A bound that a finite program stays within changes nothing; a runaway
    // under a bound is tested on the statically linked library.
    stepLimit(h, 1000);
    const unsigned char finite[] = "0 0 moveto 1 1 lineto ";
    length = sizeof finite - 1;
    const char* content = convert(h, finite, &length);
    ASSERT_NE(content, nullptr);
    EXPECT_EQ(std::string(content, length), "0 0 m\n1 1 l\n");
    close(h);
}

} // namespace
