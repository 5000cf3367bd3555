// The one number format of page content: fixed rows that hold on every
// system, and natively a differential run against the C library's printf.
#include "pdf/NumberFormat.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

struct NumberCase {
    double value;
    const char* text;
};

void PrintTo(const NumberCase& row, std::ostream* os) {
    char exact[64];
    std::snprintf(exact, sizeof exact, "%.17g", row.value);
    *os << exact << " -> \"" << row.text << "\"";
}

std::string formatted(double value) {
    char text[numberTextSize];
    const std::size_t length = formatNumber(value, text);
    EXPECT_EQ(length, std::strlen(text)) << "the length returned is the text's";
    return text;
}

class FormatNumber : public ::testing::TestWithParam<NumberCase> {};

TEST_P(FormatNumber, WritesTheExactText) {
    EXPECT_EQ(formatted(GetParam().value), GetParam().text);
}

const double nan = std::numeric_limits<double>::quiet_NaN();
const double inf = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Rows, FormatNumber,
    ::testing::Values(
        // The bands and their trimming.
        NumberCase{0, "0"}, NumberCase{1, "1"}, NumberCase{0.5, "0.5"},
        NumberCase{0.1234567, "0.12346"}, NumberCase{12.34567, "12.346"},
        NumberCase{123.4567, "123.457"}, NumberCase{1.234567, "1.2346"},
        NumberCase{1234.56, "1234.6"}, NumberCase{12345.6, "12346"}, NumberCase{1000000, "1000000"},
        NumberCase{100000, "100000"}, NumberCase{0.30000000000000004, "0.3"}, NumberCase{72, "72"},
        // Zeros of the integer part stay: trimming stops at the point.
        NumberCase{1000, "1000"}, NumberCase{100, "100"}, NumberCase{10, "10"},
        NumberCase{10000, "10000"}, NumberCase{20.5, "20.5"},
        // The band is chosen before rounding: just below a threshold the
        // finer template rounds up to it...
        NumberCase{9999.96, "10000"}, NumberCase{999.9996, "1000"}, NumberCase{99.9996, "100"},
        NumberCase{9.99996, "10"}, NumberCase{0.999996, "1"},
        // ...and a value that a coarser template would round up keeps its
        // decimals.
        NumberCase{9999.5, "9999.5"}, NumberCase{999.96, "999.96"}, NumberCase{9.99994, "9.9999"},
        NumberCase{0.999994, "0.99999"},
        // Exact binary ties round to even, as printf does.
        NumberCase{10000.5, "10000"}, NumberCase{10001.5, "10002"}, NumberCase{1000.25, "1000.2"},
        NumberCase{1000.75, "1000.8"}, NumberCase{100.0625, "100.062"},
        NumberCase{1.03125, "1.0312"}, NumberCase{0.015625, "0.01562"},
        // Decimal ties that the binary value misses by a hair: the exact
        // digits decide, whatever a scaled product says.
        NumberCase{2.00005, "2"}, NumberCase{2.00015, "2.0002"}, NumberCase{-3.00005, "-3"},
        NumberCase{12.0005, "12.001"}, NumberCase{1000.05, "1000"}, NumberCase{1000.15, "1000.1"},
        NumberCase{0.123455, "0.12345"}, NumberCase{-4.9999999999e-6, "0"},
        NumberCase{-5.0000000001e-6, "-0.00001"},
        // Tiny values, signs and negative zero.
        NumberCase{0.00001, "0.00001"}, NumberCase{0.000005, "0.00001"}, NumberCase{0.0000049, "0"},
        NumberCase{1.5e-5, "0.00002"}, NumberCase{-0.000001, "0"}, NumberCase{-0.0, "0"},
        NumberCase{5e-324, "0"}, NumberCase{-5e-324, "0"}, NumberCase{-0.000005, "-0.00001"},
        NumberCase{-0.5, "-0.5"}, NumberCase{-12345.6, "-12346"}, NumberCase{-9999.96, "-10000"},
        NumberCase{-1000, "-1000"}, NumberCase{-72.25, "-72.25"},
        // Huge values print every digit.
        NumberCase{123456789012.0, "123456789012"},
        NumberCase{1e300,
                   "1000000000000000052504760255204420248704468581108159154915854115511802457988908"
                   "1957863713750804478640437044438328838781769425232353604305756447921847867069828"
                   "4838720092657580373783023379478809005936895323497079994508111903896764088007465"
                   "2742780142494579258788820056842838115669472196386865459400540160"},
        NumberCase{-1e300,
                   "-100000000000000005250476025520442024870446858110815915491585411551180245798890"
                   "8195786371375080447864043704443832883878176942523235360430575644792184786706982"
                   "8483872009265758037378302337947880900593689532349707999450811190389676408800746"
                   "52742780142494579258788820056842838115669472196386865459400540160"},
        NumberCase{DBL_MAX,
                   "1797693134862315708145274237317043567980705675258449965989174768031572607800285"
                   "3876058955863276687817154045895351438246423432132688946418276846754670353751698"
                   "6049910576551282076245490090389328944075868508455133942304583236903222948165808"
                   "559332123348274797826204144723168738177180919299881250404026184124858368"},
        NumberCase{-DBL_MAX,
                   "-179769313486231570814527423731704356798070567525844996598917476803157260780028"
                   "5387605895586327668781715404589535143824642343213268894641827684675467035375169"
                   "8604991057655128207624549009038932894407586850845513394230458323690322294816580"
                   "8559332123348274797826204144723168738177180919299881250404026184124858368"},
        // What printf spells, the same on every C library.
        NumberCase{inf, "inf"}, NumberCase{-inf, "-inf"}, NumberCase{nan, "nan"},
        NumberCase{-nan, "-nan"}),
    [](const ::testing::TestParamInfo<NumberCase>& info) {
        return "row" + std::to_string(info.index);
    });

#ifndef _WIN32
// The format as glibc's printf gives it: the template by the value before
// rounding, then the trimming.
std::string byPrintf(double value) {
    const double a = std::fabs(value);
    const char* format = a >= 10000  ? "%.0f"
                         : a >= 1000 ? "%.1f"
                         : a >= 100  ? "%.3f"
                         : a >= 10   ? "%.3f"
                         : a >= 1    ? "%.4f"
                                     : "%.5f";
    char text[400];
    std::snprintf(text, sizeof text, format, value);
    std::string s = text;
    if (a >= 10000) return s;
    while (s.size() > 1 && s.back() == '0')
        s.pop_back();
    if (s.back() == '.') s.pop_back();
    return s == "-0" ? "0" : s;
}
#endif

// A million values against glibc's printf: every band, the thresholds and
// what lies just below them, exact binary ties and values a few ulps from a
// decimal tie, tiny, huge and any bit pattern.
// Under Wine the C library's printf is another, so only the rows above run.
TEST(FormatNumberProperty, MatchesPrintfOnAMillionValues) {
#ifdef _WIN32
    GTEST_SKIP() << "the reference is glibc's printf";
#else
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> unit(0, 1);
    const double thresholds[] = {1, 10, 100, 1000, 10000};
    // The decimals of the band below each threshold.
    const int decimalsBelow[] = {5, 4, 3, 3, 1};
    auto value = [&](int kind) -> double {
        const double sign = random() & 1 ? -1 : 1;
        const int t = static_cast<int>(random() % 5);
        switch (kind) {
        case 0: // uniform within a band, bands from [0, 1) to [10000, 1e7)
        {
            const double bounds[] = {0, 1, 10, 100, 1000, 10000, 1e7};
            const int band = static_cast<int>(random() % 6);
            return sign * (bounds[band] + unit(random) * (bounds[band + 1] - bounds[band]));
        }
        case 1: // log-uniform from 1e-12 to 1e20
            return sign * std::pow(10.0, -12 + 32 * unit(random));
        case 2: // just below a threshold, where the finer template rounds up
            return sign * (thresholds[t] - unit(random) * 2 * std::pow(10.0, -decimalsBelow[t]));
        case 3: // a few ulps around a threshold
            return sign *
                   (thresholds[t] + static_cast<double>(static_cast<int>(random() % 41) - 20) *
                                        std::numeric_limits<double>::epsilon() * thresholds[t]);
        case 4: // exact binary ties at every precision: odd / 2^(p+1)
        {
            const int precision = static_cast<int>(random() % 6);
            const double odd = static_cast<double>(2 * (random() % 2000000) + 1);
            return sign * std::ldexp(odd, -(precision + 1));
        }
        case 5: // a few ulps from a decimal tie of the value's band
        {
            const double low = t == 0 ? 0 : thresholds[t - 1];
            const double scale = std::pow(10.0, decimalsBelow[t]);
            const double k = std::floor((low + unit(random) * (thresholds[t] - low)) * scale);
            double tie = (k + 0.5) / scale;
            for (int steps = static_cast<int>(random() % 7) - 3; steps != 0;
                 steps += steps > 0 ? -1 : 1)
                tie = std::nextafter(tie, steps > 0 ? 1e300 : -1e300);
            return sign * tie;
        }
        default: // any bit pattern: denormals, huge values, infinities, NaNs
        {
            const uint64_t bits = random();
            double any;
            std::memcpy(&any, &bits, sizeof any);
            return any;
        }
        }
    };
    int mismatches = 0;
    for (int i = 0; i < 1200000 && mismatches < 10; ++i) {
        const double v = value(i % 7);
        const std::string expected = byPrintf(v);
        const std::string actual = formatted(v);
        if (actual != expected) {
            ++mismatches;
            ADD_FAILURE() << "value " << std::hexfloat << v << ": \"" << actual << "\", printf \""
                          << expected << "\"";
        }
    }
    for (double v :
         {0.0, -0.0, 1e300, -1e300, DBL_MAX, DBL_MIN, -DBL_MIN, 5e-324, nan, -nan, inf, -inf})
        EXPECT_EQ(formatted(v), byPrintf(v)) << v;
#endif
}

} // namespace
