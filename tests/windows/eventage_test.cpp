#include "platform/eventage.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using namespace std::chrono_literals;

std::uint64_t MonotonicMilliseconds() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

struct Key : QKeyEvent {
    explicit Key(std::uint64_t stamp)
        : QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier) {
        setTimestamp(stamp);
    }
};

struct Row {
    const char* name;
    std::int64_t before;
    bool trusted;
};

class Age : public testing::TestWithParam<Row> {};

TEST_P(Age, IsTakenFromAStampThatCanBeRight) {
    const auto [name, before, trusted] = GetParam();
    const std::uint64_t stamp = MonotonicMilliseconds() - static_cast<std::uint64_t>(before);
    const Key event(stamp);
    const auto least = std::chrono::milliseconds(trusted ? before : 0);
    const auto age = EventAge(event);
    EXPECT_GE(age, least);
    // What a busy machine takes from one line to the next.
    EXPECT_LT(age, least + 500ms);
    EXPECT_EQ(TrueStamp(event), trusted ? stamp : 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, Age,
                         testing::Values(Row{"JustNow", 0, true}, Row{"BusyWindow", 300, true},
                                         Row{"AlmostTooOld", 1400, true},
                                         Row{"TooOld", 2100, false},
                                         // Of another computer's clock, say.
                                         Row{"OfLastHour", 3'600'000, false},
                                         Row{"OfTheFuture", -60'000, false}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Age, OfAnEventWithoutAStampIsNone) {
    EXPECT_EQ(EventAge(Key(0)), 0ms);
    EXPECT_EQ(TrueStamp(Key(0)), 0U);
}

/// X11 counts in 32 bits: stamps begin anew every 49 days.
TEST(Age, OutlivesTheEndOfTheCount) {
    const std::uint64_t cut = (MonotonicMilliseconds() - 300) & 0xffffffffU;
    const auto age = EventAge(Key(cut));
    EXPECT_GE(age, 300ms);
    EXPECT_LT(age, 800ms);
}

} // namespace
