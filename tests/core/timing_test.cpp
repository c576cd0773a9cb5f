#include "base/runtimeerror.h"
#include "editing/edittitle.h"
#include "editing/minutesecond.h"
#include "editing/numberstext.h"
#include "editing/shift.h"
#include "editing/spinrepeat.h"
#include "editing/stretch.h"
#include "model/numbers.h"
#include "model/times.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include <ostream>

namespace {

// Minutes and seconds.

struct TextRow {
    const char* text;
    const char* expected; ///< what the box must hold instead; empty: it stays
};

class Minutes : public testing::TestWithParam<TextRow> {};

TEST_P(Minutes, StayInRange) {
    EXPECT_EQ(MinutesInRange(GetParam().text).value_or(""), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, Minutes,
                         testing::Values(TextRow{"4000", "3600"}, TextRow{"-3", "0"},
                                         TextRow{"3600", ""}, TextRow{"0", ""}, TextRow{"", ""},
                                         TextRow{"abc", ""}, TextRow{"3600.6", "3600"},
                                         TextRow{"32767", "3600"}, TextRow{"9999x", ""},
                                         TextRow{"-5x", ""}));

TEST(MinuteSecond, MinutesOfAnySizeStayInRange) {
    for (const char* text : {"32768", "99999", "1e9", "999999999999999999999999"})
        EXPECT_EQ(MinutesInRange(text).value_or(""), *text == '1' ? "" : "3600") << text;
    EXPECT_EQ(MinutesInRange("-99999").value_or(""), "0");
    EXPECT_EQ(StepMinutes("99999", Spin::Up), std::nullopt);
    EXPECT_EQ(StepMinutes("-99999", Spin::Down), std::nullopt);
}

struct SecondsRow {
    SecondsRule rule;
    const char* minutes;
    const char* seconds;
    const char* expectedMinutes;
    const char* expectedSeconds; ///< empty: both stay
};

class Seconds : public testing::TestWithParam<SecondsRow> {};

TEST_P(Seconds, StayInRange) {
    const SecondsRow& row = GetParam();
    const std::optional<MinutesSeconds> result = SecondsInRange(row.minutes, row.seconds, row.rule);
    ASSERT_EQ(result.has_value(), *row.expectedSeconds != '\0');
    if (result) {
        EXPECT_EQ(result->minutes, row.expectedMinutes);
        EXPECT_EQ(result->seconds, row.expectedSeconds);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Seconds,
    testing::Values(SecondsRow{SecondsRule::CarryIntoMinutes, "2", "75", "3", "15.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "0", "150", "2", "30.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "", "60", "1", "0.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "0", "119.9996", "2", "0.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "3600", "61", "3600", "1.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "0", "6000030", "3600", "30.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "4", "-1", "4", "0.000"},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "4", "59.9999", "", ""},
                    SecondsRow{SecondsRule::CarryIntoMinutes, "1", "60,5", "2", "0.500"},
                    SecondsRow{SecondsRule::Clamp, "2", "75", "2", "59.999"},
                    SecondsRow{SecondsRule::Clamp, "2", "60", "2", "59.999"},
                    SecondsRow{SecondsRule::Clamp, "2", "-0.5", "2", "0.000"},
                    SecondsRow{SecondsRule::Clamp, "2", "59.999", "", ""}));

TEST(MinuteSecond, SecondsOfAnySizeAreCarried) {
    const auto carried = SecondsInRange("1", "1e300", SecondsRule::CarryIntoMinutes);
    ASSERT_TRUE(carried);
    EXPECT_EQ(carried->minutes, "3600");
    EXPECT_LT(Val(carried->seconds), 60);
}

TEST(MinuteSecond, SecondsThatAreNoNumberStay) {
    for (const char* text : {"", "abc", "-", "2,4x", "5..5"}) {
        EXPECT_FALSE(SecondsInRange("0", text, SecondsRule::Clamp)) << text;
        EXPECT_EQ(StepSeconds(text, Spin::Up), std::nullopt) << text;
        EXPECT_EQ(StepTime(text, Spin::Up), std::nullopt) << text;
    }
}

struct StepRow {
    const char* text;
    Spin step;
    const char* expected; ///< empty: the box stays
};

class MinuteSteps : public testing::TestWithParam<StepRow> {};

TEST_P(MinuteSteps, StayInRange) {
    EXPECT_EQ(StepMinutes(GetParam().text, GetParam().step).value_or(""), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, MinuteSteps,
                         testing::Values(StepRow{"3599", Spin::Up, ""},
                                         StepRow{"3598", Spin::Up, "3599"},
                                         StepRow{"0", Spin::Down, ""},
                                         StepRow{"1", Spin::Down, "0"}, StepRow{"", Spin::Up, "1"},
                                         StepRow{"3600", Spin::Down, "3599"}));

class SecondSteps : public testing::TestWithParam<StepRow> {};

TEST_P(SecondSteps, StayInRange) {
    EXPECT_EQ(StepSeconds(GetParam().text, GetParam().step).value_or(""), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SecondSteps,
    testing::Values(StepRow{"59.95", Spin::Up, ""}, StepRow{"59.9", Spin::Up, ""},
                    StepRow{"60", Spin::Up, ""}, StepRow{"60", Spin::Down, "59.900"},
                    StepRow{"59.8", Spin::Up, "59.900"}, StepRow{"0.05", Spin::Down, ""},
                    StepRow{"0.1", Spin::Down, "0.000"}, StepRow{"0.000", Spin::Up, "0.100"},
                    StepRow{"2,4", Spin::Up, "2.500"}));

class TimeSteps : public testing::TestWithParam<StepRow> {};

TEST_P(TimeSteps, StayAboveZero) {
    EXPECT_EQ(StepTime(GetParam().text, GetParam().step).value_or(""), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, TimeSteps,
                         testing::Values(StepRow{"00:00:01,000", Spin::Down, ""},
                                         StepRow{"00:00:01,001", Spin::Down, "00:00:00,001"},
                                         StepRow{"98:59:59,000", Spin::Up, "99:00:00,000"},
                                         StepRow{"99:59:59,500", Spin::Up, ""},
                                         StepRow{"1:30", Spin::Up, "00:01:31,000"},
                                         StepRow{"00:00:59,500", Spin::Up, "00:01:00,500"}));

TEST(MinuteSecond, AmountReadsBothAsNumbers) {
    EXPECT_EQ(AmountOf("2", "5.500"), 125.5);
    EXPECT_EQ(AmountOf("2", "5,5"), 125.5);
    EXPECT_EQ(AmountOf("", "5"), std::nullopt);
    EXPECT_EQ(AmountOf("2", "2x"), std::nullopt);
}

// The held spinner.

TEST(SpinRepeat, SpeedsUpWhileHeld) {
    SpinRepeat repeat;
    repeat.MouseDown(2, 2, 20);
    int time = 0;
    int steps = 0;
    for (; time < 4000; time += repeat.Interval(), ++steps) {
        const auto held = repeat.TimerStarts();
        ASSERT_TRUE(held);
        EXPECT_EQ(held->spinner, 2);
        EXPECT_EQ(held->step, Spin::Up);
        EXPECT_EQ(repeat.Interval(), steps < 10 ? 200 : steps < 30 ? 100 : 50);
        repeat.TimerDone();
    }
    repeat.MouseUp();
    EXPECT_EQ(repeat.Interval(), 200);
    EXPECT_FALSE(repeat.TimerStarts());
}

TEST(SpinRepeat, LowerHalfStepsDown) {
    SpinRepeat repeat;
    repeat.MouseDown(1, 11, 20);
    EXPECT_EQ(repeat.TimerStarts()->step, Spin::Down);
    repeat.MouseDown(1, 10, 20);
    EXPECT_EQ(repeat.TimerStarts()->step, Spin::Up);
}

TEST(SpinRepeat, AClickAfterATimerStepIsSwallowedOnce) {
    SpinRepeat repeat;
    EXPECT_TRUE(repeat.TakeClick());
    repeat.MouseDown(1, 0, 20);
    repeat.TimerStarts();
    EXPECT_TRUE(repeat.TakeClick()) << "the timer's own step is no click";
    repeat.TimerDone();
    repeat.MouseUp();
    EXPECT_FALSE(repeat.TakeClick());
    EXPECT_TRUE(repeat.TakeClick());
}

// Shift.

TEST(Shift, CutsTheAmountToTheFirstStart) {
    const auto limited = LimitToStart("3", "0.000", 125.5);
    ASSERT_TRUE(limited);
    EXPECT_EQ(limited->minutes, "2");
    EXPECT_EQ(limited->seconds, "5.500");
    EXPECT_FALSE(LimitToStart("2", "5.500", 125.5));
    EXPECT_FALSE(LimitToStart("0", "0.000", 125.5));
}

TEST(Shift, MovesTheGivenTitlesOnly) {
    SUBTITLES titles;
    for (int i = 1; i <= 5; ++i)
        titles.Add(i * 10, i * 10 + 2, "x");
    const std::vector<std::int32_t> numbers{3, 5};
    ShiftTitles(titles, numbers, -31);
    const std::vector<double> starts{10, 20, -1, 40, 19};
    for (int i = 1; i <= 5; ++i) {
        EXPECT_EQ(titles.StartTime(i), starts[static_cast<std::size_t>(i - 1)]);
        EXPECT_EQ(titles.EndTime(i), titles.StartTime(i) + 2);
    }
}

// Stretch.

TEST(Stretch, ByTitles) {
    const TimeMap map = MapByTitles(10, 110, 12, 122);
    EXPECT_DOUBLE_EQ(map.factor, 1.1);
    EXPECT_DOUBLE_EQ(map.offset, 1);
    EXPECT_DOUBLE_EQ(map(60), 67);
    EXPECT_NEAR(map(62), 69.2, 1e-9);
    EXPECT_THROW(MapByTitles(10, 10, 1, 2), RuntimeError);
}

TEST(Stretch, ByAmount) {
    EXPECT_DOUBLE_EQ(MapByAmount(100, 10).factor, 1.1);
    EXPECT_DOUBLE_EQ(MapByAmount(100, -10).factor, 0.9);
    EXPECT_EQ(MapByAmount(100, 10).offset, 0);
    EXPECT_EQ(MapByAmount(0, 10)(57), 0);
    EXPECT_EQ(MapByAmount(-5, 10)(57), 0);
}

TEST(Stretch, ByRates) {
    EXPECT_EQ(MapByRates(25, 25)(61.7), 61.7);
    EXPECT_DOUBLE_EQ(MapByRates(25, 23.976).factor, 25 / 23.976);
    EXPECT_THROW(MapByRates(25, 0), RuntimeError);
}

struct OddRow {
    TimeMap map;
    const char* odd;
};

class Odd : public testing::TestWithParam<OddRow> {};

TEST_P(Odd, IsSaid) {
    SUBTITLES titles;
    titles.Add(-1, 0.5, "before the film already");
    titles.Add(10, 12, "a");
    titles.Add(20, 22, "b");
    EXPECT_EQ(OddAbout(titles, AllTitles(titles), GetParam().map), GetParam().odd);
}

INSTANTIATE_TEST_SUITE_P(
    Maps, Odd,
    testing::Values(OddRow{{1, 5}, ""}, OddRow{{0.5, 0}, ""}, OddRow{{1, -10}, ""},
                    OddRow{{1, -10.0004}, ""},
                    OddRow{{1, -10.5}, "1 title would start before the film does."},
                    OddRow{{1, -20.5}, "2 titles would start before the film does."},
                    OddRow{{-1, 100}, "The titles would come in reverse order."},
                    OddRow{{0, 5}, "All these titles would start and end at the same moment."}));

TEST(Stretch, TellsWhatCannotBeShown) {
    SUBTITLES titles;
    titles.Add(1, 2, "a");
    titles.Add(100, 3600, "b");
    EXPECT_TRUE(CanBeShown(titles, AllTitles(titles), {32767, 0}));
    EXPECT_FALSE(CanBeShown(titles, AllTitles(titles), {32768, 0}));
    EXPECT_FALSE(CanBeShown(titles, AllTitles(titles), {-32768, 0}));
    EXPECT_FALSE(CanBeShown(titles, AllTitles(titles), {1, std::nan("")}));
    EXPECT_TRUE(CanBeShown(titles, std::vector<std::int32_t>{1}, {32768, 0}));
}

struct NumbersRow {
    std::vector<std::int32_t> numbers;
    std::int32_t count;
    const char* text;
};

class ChosenText : public testing::TestWithParam<NumbersRow> {};

TEST_P(ChosenText, NamesTheTitles) {
    EXPECT_EQ(NumbersText(GetParam().numbers, GetParam().count), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Rows, ChosenText,
                         testing::Values(NumbersRow{{4, 5, 6}, 14, "3 of 14 titles, 4 to 6"},
                                         NumbersRow{{4}, 14, "1 of 14 titles, 4"},
                                         NumbersRow{{1}, 1, "1 of 1 title, 1"},
                                         NumbersRow{{1, 2, 3}, 3, "3 of 3 titles, 1 to 3"},
                                         NumbersRow{{3, 5}, 9, "2 of 9 titles, 3, 5"},
                                         NumbersRow{{1, 3, 4, 7, 9, 11, 12},
                                                    20,
                                                    "7 of 20 titles, 1, 3 to 4, 7, 9 and more"}));

TEST(Stretch, MapsTheGivenTitlesOnly) {
    SUBTITLES titles;
    titles.Add(10, 12, "x");
    titles.Add(60, 62, "x");
    const std::vector<std::int32_t> second{2};
    MapTitles(titles, second, {1.1, 1});
    EXPECT_EQ(titles.StartTime(1), 10);
    EXPECT_DOUBLE_EQ(titles.StartTime(2), 67);
    EXPECT_DOUBLE_EQ(titles.EndTime(2), 69.2);
    EXPECT_EQ(AllTitles(titles), (std::vector<std::int32_t>{1, 2}));
}

// One title.

struct CaretRow {
    const char* text;
    std::size_t caret;
    bool bold;
    bool italic;
};

class Caret : public testing::TestWithParam<CaretRow> {};

TEST_P(Caret, TellsTheOpenMarks) {
    const OpenMarks open = MarksAtCaret(GetParam().text, GetParam().caret);
    EXPECT_EQ(open.bold, GetParam().bold);
    EXPECT_EQ(open.italic, GetParam().italic);
}

INSTANTIATE_TEST_SUITE_P(
    Places, Caret,
    testing::Values(CaretRow{"<b>x", 0, false, false}, CaretRow{"<b>x", 1, false, false},
                    CaretRow{"<b>x", 2, true, false}, CaretRow{"<b>x", 4, true, false},
                    CaretRow{"", 0, false, false}, CaretRow{"<b>x</b>", 6, true, false},
                    CaretRow{"<b>x</b>", 7, false, false}, CaretRow{"<b>x</b>", 8, false, false},
                    CaretRow{"<i><b>x", 7, true, true}, CaretRow{"<i>x</i><b>y", 12, true, false},
                    CaretRow{"<I>x", 4, false, false}));

class Closing : public testing::TestWithParam<TextRow> {};

TEST_P(Closing, OpenMarksAreClosed) {
    EXPECT_EQ(WithClosingMarks(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, Closing,
                         testing::Values(TextRow{"<b>x", "<b>x</b>"},
                                         TextRow{"<b>x</b> <b>", "<b>x</b> <b></b>"},
                                         TextRow{"<i>x</i>", "<i>x</i>"},
                                         TextRow{"<i>a<b>b", "<i>a<b>b</b></i>"}, TextRow{"", ""},
                                         TextRow{"</i>", "</i>"}));

struct CheckRow {
    std::int32_t index;
    double start;
    double end;
    const char* message;
};

constexpr const char* BeforePrevious =
    "This would start the title before the end of the previous one.";
constexpr const char* BeforeMedia = "The title cannot start before the start of the media.";
constexpr const char* IntoNext =
    "This would make the subtitle last until after the start of the next one.";
constexpr const char* Beyond = "The title would lie beyond what can be shown.";
constexpr const char* NoDuration = "The duration cannot be negative or zero.";

class Checks : public testing::TestWithParam<CheckRow> {};

TEST_P(Checks, Neighbours) {
    SUBTITLES titles;
    for (int i = 1; i <= 5; ++i)
        titles.Add(i * 10, i * 10 + 5, "x");
    const CheckRow& row = GetParam();
    EXPECT_EQ(WhyNot(titles, row.index, row.start, row.end), row.message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Checks,
    testing::Values(CheckRow{1, -1, 3, BeforeMedia}, CheckRow{1, 0, 3, ""}, CheckRow{1, 10, 10, ""},
                    CheckRow{3, 3, -2, NoDuration}, CheckRow{3, 0, 0, NoDuration},
                    CheckRow{3, 30, 42, ""}, CheckRow{3, 30, 45, ""},
                    CheckRow{3, 30, 45.001, IntoNext}, CheckRow{3, 25, 30, ""},
                    CheckRow{3, 24.999, 30, BeforePrevious}, CheckRow{5, 50, 1000, ""},
                    CheckRow{5, 60, 50, ""}, CheckRow{2, -1, 30, BeforePrevious},
                    CheckRow{3, 24.9996, 30, ""}, CheckRow{3, 24.9994, 30, BeforePrevious},
                    CheckRow{3, 30, 45.0004, ""}, CheckRow{1, -0.0004, 3, ""},
                    CheckRow{5, 50, 1e300, Beyond}, CheckRow{5, 117964800, 117964801, Beyond}));

TEST(EditTitle, TheEndIsTheRoundedDurationLater) {
    EXPECT_EQ(EndAfter(10, 0), 10);
    EXPECT_EQ(EndAfter(3, -5), -2);
    EXPECT_EQ(EndAfter(3, 2.5), 5.5);
    EXPECT_DOUBLE_EQ(EndAfter(1, 0.0006), 1.001);
}

TEST(EditTitle, StoresAsOneUndoStep) {
    SUBTITLES titles;
    titles.Add(1, 2, "old");
    titles.UndoEnabled(true);
    EXPECT_FALSE(StoreTitle(titles, 1, "old", 1, 2));
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_TRUE(StoreTitle(titles, 1, "new", 3, 4));
    EXPECT_EQ(titles.UndoCount(), 1);
    titles.Undo();
    EXPECT_EQ(titles.Text(1), "old");
    EXPECT_EQ(titles.StartTime(1), 1);
    EXPECT_EQ(titles.EndTime(1), 2);
}

TEST(EditTitle, WhatCountingLeavesBehindIsNoChange) {
    SUBTITLES titles;
    double start = 0;
    for (int i = 0; i < 103; ++i)
        start += 0.1;
    titles.Add(start, start + 1.2, "x");
    const double read = ParseTime(FormatTime(start));
    EXPECT_NE(read, start);
    EXPECT_FALSE(StoreTitle(titles, 1, "x", read, EndAfter(read, 1.2)));
}

} // namespace
