#pragma once

#include <cstdint>
#include <string>
#include <utility>

/// What changed in a document, and which titles it concerns.
struct Change {
    enum class Kind : std::uint8_t {
        /// Titles `first` to `last` may have other times; their texts are the same.
        Times,
        /// Titles `first` to `last` may have other texts and other times.
        Text,
        /// Titles `first` to `last` are new; those that were there from `first` on moved up.
        Inserted,
        /// The titles that were `first` to `last` are gone; those behind them moved down.
        Deleted,
        /// From `first` to `last`, the last title that there is, all titles may be others,
        /// and so may their number: another document, or changes of several kinds.
        Replaced,
        /// One of the two marked times, or both. `first` and `last` are 0.
        Marks,
        /// The titles are those of a file now: read, written or begun. `first` and `last` are 0.
        Saved,
    };

    Kind kind = Kind::Replaced;
    std::int32_t first = 0;
    std::int32_t last = 0;

    bool operator==(const Change&) const = default;
};

/// What a step of work on the titles is called, for people; empty for one that is of no
/// note. A name says that the titles as they were before the step are worth keeping.
struct StepName {
    enum class Series : std::uint8_t {
        /// Each step is one of its own.
        Each,
        /// Steps of that name on one title after the other, with nothing between them,
        /// are one piece of work.
        OneAfterTheOther,
    };

    StepName() = default;
    StepName(std::string aText, Series aSeries = Series::Each)
        : text(std::move(aText))
        , series(aSeries) {}
    StepName(const char* aText)
        : text(aText) {}

    std::string text;
    Series series = Series::Each;
};

/// Both changes, one after the other, as one. Titles only, not `Marks` and `Saved`.
Change Merged(const Change& earlier, const Change& later);
