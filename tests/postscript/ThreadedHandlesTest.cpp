// Handles on threads: each handle's objects come from its own pool, current on
// the thread that works for it, so two handles may convert at the same time on
// two threads and a handle may change threads between calls.
#include "support/TestSupport.h"

#include "core/DictionarySet.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using testing_support::Handle;
using testing_support::Session;

namespace {

// Makes and frees objects of every size class: numbers, names, strings,
// arrays, procedures, dictionaries, loop contexts, and fails on purpose
// half-way through a buffer, which unwinds with objects in flight.
std::string workload(int seed) {
    std::string text = "/n " + std::to_string(seed) + " def /acc 0 dict def\n";
    for (int i = 0; i < 40; ++i) {
        text += "0 1 30 { /i exch def i 3 mod 0 eq { /n n i add 65536 mod def } "
                "{ [ i (s) /nm { i } ] pop } ifelse acc /k" +
                std::to_string(i % 7) + " n put } for\n";
        text += "acc begin k" + std::to_string(i % 7) + " pop end (text) length pop\n";
    }
    return text;
}

bool convert(PSHandle h, std::string_view text) {
    uint32_t length = static_cast<uint32_t>(text.size());
    return PSConvertToPdf(h, reinterpret_cast<const unsigned char*>(text.data()), &length);
}

// The handle's answer after the workload, run line by line with a failing
// call after each: the counter and the dictionary's size.
std::string runWorkload(PSHandle h, int seed) {
    const std::string text = workload(seed);
    for (std::size_t at = 0, next; at < text.size(); at = next) {
        next = text.find('\n', at) + 1;
        if (!convert(h, std::string_view(text).substr(at, next - at)))
            return std::string("failed: ") + PSGetErrorStr(h);
        // Fails with objects popped and made; the next call goes on.
        if (convert(h, "[ 1 2 (x) ] 3 4 5 (a) add ")) return "the failing run did not fail";
        convert(h, "clear ");
    }
    const char* out = PSExecuteReturnStdOut(h, "n = acc length = ", static_cast<uint32_t>(-1));
    return out ? out : "no output";
}

std::string referenceFor(int seed) {
    Handle handle;
    return runWorkload(handle.h, seed);
}

TEST(ThreadedHandles, TwoHandlesConvertAtTheSameTimeOnTwoThreads) {
    const std::string expected[2] = {referenceFor(1), referenceFor(2)};
    ASSERT_EQ(expected[0].find("fail"), std::string::npos) << expected[0];
    ASSERT_NE(expected[0], expected[1]);
    for (int round = 0; round < 8; ++round) {
        std::atomic<int> ready{0};
        std::string got[2];
        std::vector<std::thread> threads;
        for (int t = 0; t < 2; ++t)
            threads.emplace_back([&, t] {
                Handle handle;
                // Both threads start converting together.
                ++ready;
                while (ready.load() < 2) {
                }
                got[t] = runWorkload(handle.h, t + 1);
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(got[0], expected[0]);
        EXPECT_EQ(got[1], expected[1]);
    }
}

TEST(ThreadedHandles, AHandleMovesBetweenThreadsFromCallToCall) {
    Handle handle;
    const char* calls[] = {
        "/keep [ 1 2 3 ] def /d 5 dict def d /x (abc) put ",
        "/p { keep length d /x get length add } def ",
        "1 2 (a) add ",
        "/keep [ keep { 10 mul } forall ] def ",
        "p keep 2 get d /x get ",
    };
    for (const char* text : calls) {
        std::thread([&] {
            uint32_t length = static_cast<uint32_t>(std::string(text).size());
            PSConvertToPdf(handle.h, reinterpret_cast<const unsigned char*>(text), &length);
        }).join();
    }
    const char* out = nullptr;
    std::thread([&] {
        out = PSExecuteReturnStdOut(handle.h, "== == == == ", static_cast<uint32_t>(-1));
    }).join();
    ASSERT_NE(out, nullptr);
    // The failed add left its first operand.
    EXPECT_STREQ(out, "(abc)\n30\n6\n1\n");
}

// An object that a host part keeps past its interpreter stays valid, and its
// memory goes back when it is released.
TEST(ThreadedHandles, AnObjectOutlivesItsInterpreterOnAnotherThread) {
    PostscriptObject* kept = nullptr;
    {
        Session s;
        ASSERT_TRUE(s.run("/kept 12345 def "));
        kept = s.interpreter().dictionaries->userData->find("kept");
        ASSERT_NE(kept, nullptr);
        addReference(kept);
    }
    std::thread([&] {
        EXPECT_EQ(kept->describe(), "ps_integer 12345");
        releaseReference(kept);
    }).join();
}

} // namespace
