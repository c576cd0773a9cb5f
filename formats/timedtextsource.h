#pragma once

#include "formats/timedtextclock.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A Timed Text file taken apart: where its titles stand in it. They are the elements p
/// with times, or the timed spans of a p that has none of its own.
class TimedTextSource {
  public:
    /// A part of the text.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    struct Element {
        /// From "<" to behind the last ">".
        Range all;
        /// The start tag alone.
        Range tag;
        Range content;
        /// "<p/>": it has no content to be changed.
        bool closed = false;
        /// "p" or "span", with the prefix that it has.
        std::string name;
        /// The values of its attributes, and where they stand; nothing: it has none.
        std::optional<Range> beginValue;
        std::optional<Range> endValue;
        std::optional<Range> durationValue;
        std::optional<TimedTextTime> begin;
        std::optional<TimedTextTime> end;
        std::optional<TimedTextTime> duration;
        /// What its begin and end are counted from.
        double parentBegin = 0;
        /// Its parent's elements follow one another, each counted from the end of the one before
        /// (timeContainer="seq"): the parent's number, and its begin. 0: it is not so.
        std::size_t sequence = 0;
        double sequenceBegin = 0;
        /// Where the one behind it begins then.
        double sequenceNext = 0;
        /// The times of the title.
        double startTime = 0;
        double endTime = 0;
        /// Lines joined by CR LF, italic and bold spans as tags.
        std::string text;
    };

    explicit TimedTextSource(std::string_view text);

    /// The text is XML and its root element is tt.
    bool Valid() const { return m_valid; }
    /// A time could not be read; its element is no title.
    bool Faulty() const { return m_faulty; }
    std::string_view Text() const { return m_text; }
    const TimedTextRates& Rates() const { return m_rates; }
    const std::vector<Element>& Elements() const { return m_elements; }
    /// Groups follow one another: no title can be moved by itself.
    bool HasSequenceOfGroups() const { return m_sequenceOfGroups; }
    /// Where a first title is put; nothing where there is no body for it.
    std::optional<std::size_t> FirstPlace() const { return m_firstPlace; }
    /// "tt:", what the names of the format's elements are led by.
    const std::string& Prefix() const { return m_prefix; }
    /// "tts:", of the attributes of style; empty when the root does not declare one.
    const std::string& StylePrefix() const { return m_stylePrefix; }

  private:
    friend class TimedTextWalk;

    std::string_view m_text;
    bool m_valid = false;
    bool m_faulty = false;
    bool m_sequenceOfGroups = false;
    TimedTextRates m_rates;
    std::vector<Element> m_elements;
    std::optional<std::size_t> m_firstPlace;
    std::string m_prefix;
    std::string m_stylePrefix;
};
