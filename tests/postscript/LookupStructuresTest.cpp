// The structures behind look-up: a dictionary's hash index beside its ordered
// map, the table of name texts, and the scanner's one-pass number reading.
#include "support/TestSupport.h"

#include "core/DictionaryObject.h"
#include "core/NameObject.h"
#include "core/NumberUtils.h"
#include "core/ValueObjects.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

using testing_support::Session;

namespace {

std::string numbered(const char* stem, int i) {
    std::string text = stem;
    text += std::to_string(i);
    return text;
}

// Random puts, removals and clears against a plain ordered map: every key,
// present or not, must be found as the model has it, and the walk order stays
// the model's. Few keys and many removals make long probe runs and holes.
TEST(DictionaryIndex, FollowsEveryPutRemoveAndClear) {
    Session s;
    DictionaryData data;
    std::map<std::string, int> model;
    std::mt19937 random(7);
    std::vector<std::string> keys;
    for (int i = 0; i < 300; ++i)
        keys.push_back(numbered("k", i));
    for (int step = 0; step < 20000; ++step) {
        const std::string& key = keys[random() % keys.size()];
        const unsigned action = random() % 100;
        if (action < 55) {
            data.put(key, new IntegerObject(step));
            model[key] = step;
        } else if (action < 99) {
            data.remove(key);
            model.erase(key);
        } else {
            data.clear();
            model.clear();
        }
        if (step % 97 != 0) continue;
        ASSERT_EQ(data.size(), model.size()) << "step " << step;
        for (const std::string& probe : keys) {
            const PostscriptObject* found = data.find(probe);
            const auto expected = model.find(probe);
            if (expected == model.end()) {
                ASSERT_EQ(found, nullptr) << probe << " at step " << step;
            } else {
                ASSERT_NE(found, nullptr) << probe << " at step " << step;
                ASSERT_EQ(static_cast<const IntegerObject*>(found)->value, expected->second);
            }
        }
        auto walked = data.entries.begin();
        for (const auto& [key, value] : model) {
            ASSERT_EQ(walked->first, key);
            ++walked;
        }
    }
}

// Interned texts stay one entry each across growth and sweeps, while names
// use them; an entry no name uses may go and comes back as a fresh one.
TEST(NameTableEntries, OneEntryPerTextAcrossGrowthAndSweeps) {
    Session s;
    Interpreter& in = s.interpreter();
    std::vector<Popped<NameObject>> held;
    std::vector<const NameAtom*> atoms;
    for (int i = 0; i < 20000; ++i) {
        held.emplace_back(in.makeName(numbered("held", i)));
        atoms.push_back(held.back()->atom);
        // Names that nobody keeps, so that sweeps have work.
        Popped<NameObject> passing(in.makeName(numbered("passing", i)));
    }
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(in.intern(numbered("held", i)), atoms[i]) << i;
        ASSERT_EQ(atoms[i]->text, numbered("held", i));
    }
    EXPECT_LT(in.names.size(), 20000u + 10000u);
}

// The one-pass reading of plain numbers gives exactly what the full rules
// give, down to the sign of a zero, and leaves everything else to them.
TEST(QuickNumber, AgreesWithTheFullRules) {
    const char* tokens[] = {
        "0",
        "7",
        "-0",
        "+12",
        "123456789",
        "-123456789",
        "1234567890",
        "99999999999",
        "0.5",
        "-0.0",
        "5.",
        ".5",
        "-.5",
        "+.25",
        "0.1",
        "3.14159",
        "72.000001",
        "-612.25",
        "123456789012345.5",
        "12345678901234.5",
        "0.000000000000001",
        "1e5",
        "+",
        "-",
        ".",
        "1.5.2",
        "16#FF",
        "abc",
        "1-2",
        "00012",
        "-00.50",
        "999999999.5",
        "9007199254740993.5",
        "0.30000000000000004",
        "1.7976931348623157",
        "4503599627370497.5",
        "123456789.123456789",
    };
    for (const char* token : tokens) {
        int32_t integer = 0;
        double real = 0;
        const numbers::QuickNumber kind = numbers::quickNumber(token, integer, real);
        int32_t fullInteger = 0;
        double fullReal = 0;
        if (numbers::parseIntegerToken(token, fullInteger)) {
            if (kind == numbers::QuickNumber::unknown) continue;
            ASSERT_EQ(kind, numbers::QuickNumber::integer) << token;
            EXPECT_EQ(integer, fullInteger) << token;
        } else if (numbers::isRealToken(token) && numbers::parseReal(token, fullReal)) {
            if (kind == numbers::QuickNumber::unknown) continue;
            ASSERT_EQ(kind, numbers::QuickNumber::real) << token;
            EXPECT_EQ(std::memcmp(&real, &fullReal, sizeof real), 0)
                << token << ": " << real << " against " << fullReal;
        } else {
            EXPECT_EQ(kind, numbers::QuickNumber::unknown) << token;
        }
    }
    // The common forms take the quick way.
    int32_t integer = 0;
    double real = 0;
    EXPECT_EQ(numbers::quickNumber("-612", integer, real), numbers::QuickNumber::integer);
    EXPECT_EQ(integer, -612);
    EXPECT_EQ(numbers::quickNumber("72.25", integer, real), numbers::QuickNumber::real);
    EXPECT_EQ(real, 72.25);
}

} // namespace
