#include "formattesting.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr const char* Failure = "One or more errors occurred while saving.\r\n"
                                "The file may be invalid.";

SaveResult Save(const std::filesystem::path& file, const std::vector<TestTitle>& titles,
                const SaveHooks& hooks = {}) {
    return SaveTitles(file, "", ListOf(titles), {}, hooks);
}

TEST(Save, IsRefusedWhenTheFirstTitleStartsBeforeZero) {
    EXPECT_EQ(SaveRefusal(ListOf({{-0.5, 1, "A"}, {3, 4, "B"}})),
              "Cannot save: all starting times must be positive.");
    EXPECT_EQ(SaveRefusal(ListOf({{3, 4, "A"}, {-0.5, 1, "B"}})), "");
    EXPECT_EQ(SaveRefusal(ListOf({{0, -4, "A"}})), "");
    EXPECT_EQ(SaveRefusal({}), "");
}

TEST(Save, ChoosesTheFormatByTheExtensionInAnyCase) {
    const TestFolder folder;
    const SaveResult result = Save(folder / "out.SRT", {{1, 2, "A"}});
    EXPECT_TRUE(result.written);
    EXPECT_STREQ(result.format->name, "SubRip");
    EXPECT_EQ(FileText(folder / "out.SRT"), "1\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n\r\n");
}

TEST(Save, UnderANameWithoutExtensionLeavesAnEmptyFile) {
    const TestFolder folder;
    PutFile(folder / "out", "old");
    for (const char* name : {"out", "out.txt"}) {
        const SaveResult result = Save(folder / name, {{1, 2, "A"}});
        EXPECT_TRUE(result.written);
        EXPECT_EQ(result.format, nullptr);
        EXPECT_EQ(result.message, "");
        ASSERT_TRUE(exists(folder / name));
        EXPECT_EQ(FileText(folder / name), "");
    }
}

TEST(Save, EmptiesTheFileOnlyWhenAllIsComposed) {
    const TestFolder folder;
    PutFile(folder / "x.sub", "a longer text than what is written to it");
    std::string order;
    SaveHooks hooks;
    hooks.askFrameRate = [&order] {
        order += "rate ";
        return 25;
    };
    hooks.beforeWriting = [&] {
        order += FileText(folder / "x.sub").substr(0, 8);
    };
    EXPECT_TRUE(Save(folder / "x.sub", {{1, 2, "A"}}, hooks).written);
    EXPECT_EQ(order, "rate a longer");
    EXPECT_EQ(FileText(folder / "x.sub"), "{25}{50}A\r\n");
}

struct FaultRow {
    const char* name;
    double time;
};

class SaveFault : public testing::TestWithParam<FaultRow> {};

TEST_P(SaveFault, InATimeLeavesTheFileAsItWas) {
    const TestFolder folder;
    PutFile(folder / GetParam().name, "old");
    SaveHooks hooks;
    hooks.beforeWriting = [] {
        FAIL() << "nothing was composed";
    };
    const SaveResult result =
        Save(folder / GetParam().name, {{1, 2, "A"}, {3, GetParam().time, "B"}}, hooks);
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.message, Failure);
    EXPECT_EQ(FileText(folder / GetParam().name), "old");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SaveFault,
    testing::Values(FaultRow{"x.srt", 32768 * 3600.0}, FaultRow{"x.sub", 86'000'000.0},
                    FaultRow{"x.smi", 2'147'484.0},
                    FaultRow{"x.srt", std::numeric_limits<double>::infinity()},
                    FaultRow{"x.smi", std::numeric_limits<double>::quiet_NaN()}));

TEST(Save, ThatCannotWriteSaysSo) {
    const TestFolder folder;
    std::filesystem::create_directory(folder / "folder.srt");
    for (const char* name : {"folder.srt", "missing/x.srt", "missing/x"}) {
        const SaveResult result = Save(folder / name, {{1, 2, "A"}});
        EXPECT_FALSE(result.written) << name;
        EXPECT_EQ(result.message, Failure) << name;
    }
}

#ifdef __linux__
TEST(Save, OntoAFullDiskSaysSo) {
    const TestFolder folder;
    std::filesystem::create_symlink("/dev/full", folder / "x.srt");
    const SaveResult result = Save(folder / "x.srt", {{1, 2, "A"}});
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.message, Failure);
}
#endif

} // namespace
