#include "editing/typed.h"

#include "model/times.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct TypedRow {
    const char* text;
    std::optional<double> value;
};

class TypedNumbers : public testing::TestWithParam<TypedRow> {};

TEST_P(TypedNumbers, AreReadAsAWhole) {
    EXPECT_EQ(TypedNumber(GetParam().text), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TypedNumbers,
    testing::Values(TypedRow{"5", 5}, TypedRow{".5", 0.5}, TypedRow{"5.", 5}, TypedRow{"2,5", 2.5},
                    TypedRow{",5", 0.5}, TypedRow{" 2.4 ", 2.4}, TypedRow{"-3", -3},
                    TypedRow{"1e2", 100}, TypedRow{"", {}}, TypedRow{" ", {}}, TypedRow{"x", {}},
                    TypedRow{"2,4x", {}}, TypedRow{"25.5.", {}}, TypedRow{"25,5,", {}},
                    TypedRow{"5..5", {}}, TypedRow{"1,234.5", {}}, TypedRow{"1.234,5", {}},
                    TypedRow{"1e-400", {}}, TypedRow{"1e400", {}}, TypedRow{"inf", {}},
                    TypedRow{"nan", {}}, TypedRow{".", {}}, TypedRow{",", {}}, TypedRow{"-", {}}));

class TypedTimes : public testing::TestWithParam<TypedRow> {};

TEST_P(TypedTimes, AreReadAsAWhole) {
    EXPECT_EQ(TypedTime(GetParam().text), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TypedTimes,
    testing::Values(TypedRow{"00:00:07,9", 7.9}, TypedRow{"00:00:07.900", 7.9},
                    TypedRow{"1:02:03,004", 3723.004}, TypedRow{"01:02:03", 3723},
                    TypedRow{"5:30", 330}, TypedRow{"5:30.25", 330.25}, TypedRow{"12.5", 12.5},
                    TypedRow{"12,5", 12.5}, TypedRow{"12", 12}, TypedRow{".5", 0.5},
                    TypedRow{"5.", 5}, TypedRow{" 00:00:01,000 ", 1},
                    TypedRow{"-00:00:01,500", -1.5}, TypedRow{"00:00:07,9996", 8},
                    TypedRow{"00:90:00,000", 5400}, TypedRow{"120:00:00,000", 432000},
                    TypedRow{"", {}}, TypedRow{"abc", {}}, TypedRow{":", {}}, TypedRow{"1:", {}},
                    TypedRow{":30", {}}, TypedRow{"1:2:3:4", {}}, TypedRow{"1::3", {}},
                    TypedRow{"00:00:01,5x", {}}, TypedRow{"00:00:01,5,5", {}},
                    TypedRow{"00:-1:00", {}}, TypedRow{"1e3", {}}, TypedRow{"--1", {}},
                    TypedRow{"1.5:00", {}}, TypedRow{"32768:00:00", {}},
                    TypedRow{"99999999999999999999:00:00", {}}));

TEST(TypedTime, ReadsWhatFormatTimeWritesAsParseTimeDoes) {
    for (const double time : {0.0, 0.001, 1.005, 59.999, 3599.123, 3723.004, 86399.999, 359999.877})
        EXPECT_EQ(TypedTime(FormatTime(time)), ParseTime(FormatTime(time))) << time;
}

TEST(TypedTime, TakesTextsOfAnyLength) {
    EXPECT_EQ(TypedTime(std::string(100000, '9')), std::nullopt);
    EXPECT_EQ(TypedTime("0." + std::string(100000, '0')), 0);
    EXPECT_EQ(TypedNumber(std::string(100000, '9')), std::nullopt);
}

} // namespace
