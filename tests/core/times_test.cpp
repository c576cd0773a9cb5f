#include "model/times.h"

#include "base/runtimeerror.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

struct FormatRow {
    double seconds;
    const char* text;
};

class Format : public testing::TestWithParam<FormatRow> {};

TEST_P(Format, Gives) {
    EXPECT_EQ(FormatTime(GetParam().seconds), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Times, Format,
    testing::Values(FormatRow{0, "00:00:00,000"}, FormatRow{-0.0, "00:00:00,000"},
                    FormatRow{-1.5, "-00:00:01,500"}, FormatRow{-0.0001, "-00:00:00,000"},
                    FormatRow{3723.004, "01:02:03,004"}, FormatRow{59.9994, "00:00:59,999"},
                    FormatRow{59.9996, "00:00:60,000"}, FormatRow{3599.9999, "00:59:60,000"},
                    FormatRow{359999.999, "99:59:59,999"}, FormatRow{360001, "100:00:0,.000"},
                    FormatRow{3600.0 * 1000 + 12, "1000:00:,2.000"},
                    FormatRow{1.0005, "00:00:01,001"},
                    FormatRow{3600.0 * 32767, "32767:00,00.000"}));

TEST(Times, FormatOverflowsAt32768Hours) {
    for (const double seconds :
         {3600.0 * 32768, -3600.0 * 32768, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        try {
            FormatTime(seconds);
            FAIL() << seconds;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), 6);
            EXPECT_EQ(error.text(), "Overflow");
        }
    }
}

struct ParseRow {
    const char* text;
    double seconds;
};

class Parse : public testing::TestWithParam<ParseRow> {};

TEST_P(Parse, Gives) {
    EXPECT_DOUBLE_EQ(ParseTime(GetParam().text), GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(
    Times, Parse,
    testing::Values(ParseRow{"", 0}, ParseRow{"abc", 0}, ParseRow{"-", 0}, ParseRow{":::", 0},
                    ParseRow{"-00:00:01,500", -1.5}, ParseRow{"00:00:01.500", 1.5},
                    ParseRow{"00:00:01,5", 1.005}, ParseRow{"00:00:01,50", 1.050},
                    ParseRow{"12,5", 0.005}, ParseRow{"12", 0.012}, ParseRow{"1:2:3,4", 3723.004},
                    ParseRow{"00:00:01", 0}, ParseRow{"00:00:01,", 1},
                    ParseRow{" 1 : 2 : 3 ,4", 3723.004}, ParseRow{"x:00:01,250", 0.25},
                    ParseRow{"00:00:01,2509", 1.25}, ParseRow{"1,2:3:4.5", 0},
                    ParseRow{"00:01.5", 0.005}, ParseRow{"00:00:inf,1", 0.001},
                    ParseRow{"00:00:01.5,250", 1.75}));

TEST(Times, ParseReadsBackWhatFormatWrites) {
    for (int i = 0; i < 49169; ++i) {
        const double t = i * 7.3217;
        const std::string text = FormatTime(t);
        if (text.substr(6, 2) == "60")
            continue;
        EXPECT_NEAR(ParseTime(text), t, 0.0005001) << text;
    }
}

TEST(Times, RoundsHalvesUpward) {
    EXPECT_EQ(RoundTime(0.0625), 0.063);
    EXPECT_EQ(RoundTime(-0.0625), -0.062);
    EXPECT_EQ(RoundTime(-0.0005), 0);
    EXPECT_EQ(RoundTime(23.976), 23.976);
}

} // namespace
