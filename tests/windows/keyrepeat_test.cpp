#include "platform/keyrepeat.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::chrono_literals;

constexpr KeyRepeat::Moment Start{1h};

/// What a key's owner hears: "+" for a press, "-" for a release.
class Listener {
  public:
    Listener& Press(std::uint64_t stamp, bool marked = false) {
        switch (keys.Pressed(stamp, marked)) {
        case KeyRepeat::Press::Real:
            heard += "+";
            break;
        case KeyRepeat::Press::AfterRelease:
            heard += "-+";
            break;
        case KeyRepeat::Press::Repeat:
            break;
        }
        return *this;
    }
    Listener& Release(std::uint64_t stamp, bool marked = false) {
        if (keys.Released(stamp, marked, now) == KeyRepeat::Release::Real)
            heard += "-";
        return *this;
    }
    Listener& Pass(std::chrono::milliseconds span) {
        now += span;
        if (keys.Expire(now))
            heard += "-";
        return *this;
    }

    KeyRepeat keys;
    KeyRepeat::Moment now = Start;
    std::string heard;
};

TEST(KeyRepeat, APressAndAReleaseAreHeardOnce) {
    Listener key;
    key.Press(1000);
    EXPECT_EQ(key.heard, "+");
    key.Release(1200);
    EXPECT_EQ(key.heard, "+");
    EXPECT_TRUE(key.keys.Waiting());
    key.Pass(4ms);
    EXPECT_EQ(key.heard, "+");
    key.Pass(1ms);
    EXPECT_EQ(key.heard, "+-");
    EXPECT_FALSE(key.keys.Waiting());
    EXPECT_EQ(key.Pass(10ms).heard, "+-");
}

TEST(KeyRepeat, AHeldKeyIsPressedOnceAndReleasedOnce) {
    Listener key;
    key.Press(1000);
    for (std::uint64_t stamp = 1500; stamp < 2500; stamp += 40)
        key.Release(stamp).Press(stamp).Pass(40ms);
    EXPECT_EQ(key.heard, "+");
    EXPECT_EQ(key.Release(2510).Pass(5ms).heard, "+-");
}

TEST(KeyRepeat, APairThatComesLateFromABusyWindowIsARepeatStill) {
    Listener key;
    key.Press(1000).Release(1500);
    key.now += 300ms;
    EXPECT_EQ(key.Press(1500).Pass(5ms).heard, "+");
}

TEST(KeyRepeat, AQuickSecondPressIsNoRepeat) {
    Listener key;
    EXPECT_EQ(key.Press(1000).Release(1100).Pass(1ms).Press(1101).heard, "+-+");
    EXPECT_EQ(key.Release(1200).Pass(5ms).heard, "+-+-");
}

TEST(KeyRepeat, MarkedRepeatsAreNotHeard) {
    Listener key;
    key.Press(1000);
    key.Release(1500, true).Press(1500, true);
    key.Press(1540, true);
    EXPECT_FALSE(key.keys.Waiting());
    EXPECT_EQ(key.heard, "+");
    EXPECT_EQ(key.Release(1600).Pass(5ms).heard, "+-");
}

TEST(KeyRepeat, AHalfMarkedPairIsARepeat) {
    Listener key;
    EXPECT_EQ(key.Press(1000).Release(1500).Press(1500, true).Pass(5ms).heard, "+");
    EXPECT_EQ(key.Release(1540, true).Press(1540).Pass(5ms).heard, "+");
}

TEST(KeyRepeat, WithoutStampsNothingWaits) {
    Listener key;
    EXPECT_EQ(key.Press(0).Release(0).heard, "+-");
    EXPECT_EQ(key.Press(0).Press(0, true).Release(0).heard, "+-+-");
}

TEST(KeyRepeat, AReleaseWithoutItsPressIsNotHeard) {
    Listener key;
    EXPECT_EQ(key.Release(1000).Release(0).Pass(5ms).heard, "");
}

TEST(KeyRepeat, ARepeatOfAKeyThatWasPressedElsewhereIsNotHeard) {
    Listener key;
    EXPECT_EQ(key.Press(1000, true).Release(1500).Pass(5ms).heard, "");
}

TEST(KeyRepeat, ForgetsAKeyWhenToldTo) {
    Listener key;
    key.Press(1000).Release(1100);
    key.keys.Reset();
    EXPECT_EQ(key.Pass(5ms).Press(1200).heard, "++");
}

} // namespace
