#include "tests/windows/clickfilms.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class ClickIn : public testing::TestWithParam<ClickFilm> {};

/// The map's millisecond is half a millisecond wide to both sides of its middle; half of
/// another one is what time stamps of whole milliseconds leave open.
TEST_P(ClickIn, IsSeenWhereItIsHeard) {
    constexpr double Tolerance = 0.001;
    const QTemporaryDir folder;
    for (const double error : ClickErrors(GetParam(), 3.5, folder.path()))
        EXPECT_NEAR(error, 0, Tolerance);
}

INSTANTIATE_TEST_SUITE_P(Films, ClickIn, testing::ValuesIn(ClickFilms()),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
