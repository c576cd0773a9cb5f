#include "sound/speechedge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <ostream>
#include <vector>

namespace {

/// The probability of speech (0 to 255) from one value of 10 ms up to another.
struct Spoken {
    int from;
    int to;
    int level = 255;
};

/// Of a page's length; what is not spoken is silent.
std::unique_ptr<SoundMap> MapOf(const std::vector<Spoken>& spoken) {
    auto map = std::make_unique<SoundMap>(SoundPage::Milliseconds / 1000.0);
    SpeechPage page{};
    for (const Spoken& one : spoken)
        std::fill(page.fine.begin() + one.from, page.fine.begin() + one.to,
                  static_cast<std::uint8_t>(one.level));
    map->Add(0, page);
    return map;
}

struct SnapCase {
    const char* what;
    std::vector<Spoken> spoken;
    SpeechSpan recorded;
    SpeechSpan snapped;
};

std::ostream& operator<<(std::ostream& out, const SnapCase& row) {
    return out << row.what;
}

class Snapping : public testing::TestWithParam<SnapCase> {};

TEST_P(Snapping, MovesToSpeechWhereThatIsSure) {
    const auto map = MapOf(GetParam().spoken);
    const SpeechSpan snapped = SnappedToSpeech(*map, GetParam().recorded);
    EXPECT_DOUBLE_EQ(snapped.start, GetParam().snapped.start);
    EXPECT_DOUBLE_EQ(snapped.end, GetParam().snapped.end);
}

INSTANTIATE_TEST_SUITE_P(
    Placements, Snapping,
    testing::Values(
        SnapCase{"both late", {{100, 200}}, {1.2, 2.1}, {1, 2}},
        SnapCase{"both early", {{100, 200}}, {0.8, 1.9}, {1, 2}},
        SnapCase{"a quarter of a second away", {{100, 200}}, {1.25, 1.75}, {1, 2}},
        SnapCase{"further away", {{100, 200}}, {1.26, 1.74}, {1.26, 1.74}},
        SnapCase{"exactly there", {{100, 200}}, {1, 2}, {1, 2}},
        SnapCase{"the start alone", {{100, 200}}, {1.1, 2.5}, {1, 2.5}},
        SnapCase{"the end alone", {{100, 200}}, {0.5, 1.9}, {0.5, 2}},
        SnapCase{"a start near an end of speech", {{20, 110}}, {1, 2}, {1, 2}},
        SnapCase{"an end near a start of speech", {{100, 200}}, {0.3, 0.9}, {0.3, 0.9}},
        SnapCase{"no speech", {}, {1, 2}, {1, 2}},
        SnapCase{"speech throughout", {{0, 512}}, {1, 2}, {1, 2}},
        SnapCase{"a word too short to be sure of", {{100, 110}}, {1.1, 2}, {1.1, 2}},
        SnapCase{"a pause too short to be sure of", {{50, 90}, {100, 200}}, {1.1, 2}, {1.1, 2}},
        SnapCase{"a doubtful voice", {{100, 200, 160}}, {1.1, 1.9}, {1.1, 1.9}},
        SnapCase{"murmur around it", {{0, 100, 100}, {100, 200}}, {1.1, 2}, {1.1, 2}},
        SnapCase{"faint murmur around it", {{0, 100, 40}, {100, 200}}, {1.1, 2}, {1, 2}},
        SnapCase{"the nearer of two", {{40, 80}, {105, 200}}, {0.9, 2}, {1.05, 2}},
        SnapCase{"a tap", {{100, 200}}, {1.1, 1.1}, {1, 1.1}},
        SnapCase{"end before start", {{100, 200}}, {1.9, 1.2}, {1.9, 1.2}},
        SnapCase{
            "what would end before it starts", {{50, 100}, {125, 200}}, {1.12, 1.13}, {1.12, 1.13}},
        SnapCase{"at the film's begin", {{10, 100}}, {0, 1}, {0, 1}},
        SnapCase{"behind the film", {{100, 200}}, {7, 8}, {7, 8}},
        SnapCase{"endless times",
                 {{100, 200}},
                 {1.1, std::numeric_limits<double>::infinity()},
                 {1, std::numeric_limits<double>::infinity()}}));

TEST(SureSpeechEdge, IsNoneWhereTheMapHasNotGrownTo) {
    const SoundMap map(60);
    EXPECT_FALSE(SureSpeechEdge(map, 1, SpeechEdge::Start, 0.25));
    EXPECT_FALSE(SureSpeechEdge(map, std::numeric_limits<double>::quiet_NaN(), SpeechEdge::End, 1));
}

} // namespace
