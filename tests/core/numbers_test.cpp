#include "model/numbers.h"

#include "base/runtimeerror.h"
#include "model/times.h"

#include <gtest/gtest.h>

namespace {

TEST(Numbers, ValReadsTheLeadingNumber) {
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val("."), 0);
    EXPECT_EQ(Val("-"), 0);
    EXPECT_EQ(Val("  12abc"), 12);
    EXPECT_EQ(Val("-3.5}"), -3.5);
    EXPECT_EQ(Val("+7"), 7);
    EXPECT_EQ(Val(".5"), 0.5);
    EXPECT_EQ(Val("5."), 5);
    EXPECT_EQ(Val("1.2.3"), 1.2);
    EXPECT_EQ(Val("25,5"), 25);
    EXPECT_GT(Val(std::string(400, '9')), 1e300);
    EXPECT_LT(Val('-' + std::string(400, '9')), -1e300);
    EXPECT_EQ(Val("." + std::string(400, '0') + "1"), 0);
}

TEST(Numbers, NumberTakesTheWholeTextOnly) {
    EXPECT_EQ(Number(" 23.976 "), 23.976);
    EXPECT_EQ(Number("-5"), -5);
    EXPECT_EQ(Number("5."), 5);
    EXPECT_EQ(Number(".5"), 0.5);
    EXPECT_EQ(Number("5.e1"), 50);
    EXPECT_EQ(Number("1e2"), 100);
    for (const char* text :
         {"",    " ", "abc",   "1x",   "1,5",    "--1",     "inf",   "nan", "1e",  "0x10",
          "1 2", ".", "25.5.", "5..5", "1e-400", "-1e-400", "1e400", "1.e", "1..", ".5."})
        EXPECT_FALSE(Number(text)) << text;
    EXPECT_THROW(ToNumber("x"), RuntimeError);
}

TEST(Numbers, TextIsThePlainDecimalForm) {
    EXPECT_EQ(NumberText(0), "0");
    EXPECT_EQ(NumberText(-0.0), "0");
    EXPECT_EQ(NumberText(25), "25");
    EXPECT_EQ(NumberText(23.976), "23.976");
    EXPECT_EQ(NumberText(3003 * 0.001), "3.003");
    EXPECT_EQ(NumberText(RoundTime(2.95)), "2.95");
    EXPECT_EQ(NumberText(-0.5), "-0.5");
    EXPECT_EQ(NumberText(100), "100");
    EXPECT_EQ(NumberText(1e20), "100000000000000000000");
    EXPECT_EQ(NumberText(0.000001), "0.000001");
    EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
}

TEST(Numbers, ThousandthsHaveThreeDecimals) {
    EXPECT_EQ(ThousandthsText(0), "0.000");
    EXPECT_EQ(ThousandthsText(5.5), "5.500");
    EXPECT_EQ(ThousandthsText(1.0005), "1.001");
    EXPECT_EQ(ThousandthsText(9.9996), "10.000");
    EXPECT_EQ(ThousandthsText(-0.0001), "0.000");
    EXPECT_EQ(ThousandthsText(-2.25), "-2.250");
    EXPECT_EQ(ThousandthsText(60.05), "60.050");
}

TEST(Numbers, WholeNumbersRoundHalvesToEven) {
    EXPECT_EQ(RoundToLong(12.5), 12);
    EXPECT_EQ(RoundToLong(37.5), 38);
    EXPECT_EQ(RoundToLong(-0.5), 0);
    EXPECT_EQ(RoundToLong(-1.5), -2);
    EXPECT_EQ(RoundToLong(2147483647.0), 2147483647);
    EXPECT_THROW(RoundToLong(2147483648.0), RuntimeError);
    EXPECT_EQ(RoundToInteger(32767.4), 32767);
    EXPECT_THROW(RoundToInteger(32767.5), RuntimeError);
}

} // namespace
