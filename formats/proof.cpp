#include "formats/proof.h"

#include "base/ascii.h"
#include "base/runtimeerror.h"
#include "base/utf8.h"
#include "model/times.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array<std::string_view, 7> Marks{"<i>",   "</i>",  "<b>", "</b>",
                                                "{y:i}", "{y:b}", "{y}"};
/// Beside half of the format's unit, for what the arithmetic loses.
constexpr double Slack = 1e-6;

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

/// Marks form anew where others go, so each is taken off as soon as it is complete.
void DropMark(std::string& words) {
    if (words.back() != '>' && words.back() != '}')
        return;
    for (const std::string_view mark : Marks)
        if (words.ends_with(mark))
            return words.resize(words.size() - mark.size());
}

/// A line break may have any letters and whatever attributes.
void DropBreak(std::string& words) {
    constexpr std::size_t Longest = 256;
    const std::size_t from = words.size() - std::min(words.size(), Longest);
    const std::size_t open = std::string_view(words).substr(from).rfind('<');
    if (open != std::string::npos &&
        IsWord(std::string_view(words).substr(from + open + 1, 2), "br"))
        words.resize(from + open);
}

std::size_t MarkAt(std::string_view text) {
    if (text.front() != '<' && text.front() != '{')
        return 0;
    for (const std::string_view mark : Marks)
        if (text.starts_with(mark))
            return mark.size();
    return 0;
}

/// Marks of the one may lack in the other.
bool SameBesideMarks(std::string_view one, std::string_view other) {
    while (true) {
        const auto differ = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
        one.remove_prefix(static_cast<std::size_t>(differ.first - one.begin()));
        other.remove_prefix(static_cast<std::size_t>(differ.second - other.begin()));
        if (one.empty() && other.empty())
            return true;
        std::string_view& marked =
            one.empty() || (!other.empty() && MarkAt(other) > 0) ? other : one;
        const std::size_t mark = MarkAt(marked);
        if (mark == 0)
            return false;
        marked.remove_prefix(mark);
    }
}

void ReadMarkup(std::string& words) {
    constexpr std::string_view Less = "&lt;";
    if (words.ends_with(Less))
        words.replace(words.size() - Less.size(), Less.size(), "<");
    else if (words.back() == '>')
        DropBreak(words);
}

/// The titles of a list that a format can hold, one after the other.
class Held {
  public:
    /// `source`: the format whose things the texts still hold, or null. `adopted`: the
    /// texts are not yet those that the format itself reads.
    Held(const Format& format, const Format* source, bool adopted, const SUBTITLES& titles)
        : m_format(format)
        , m_source(source)
        , m_adopted(adopted)
        , m_titles(titles) {}

    /// false: that was the last.
    bool Next() {
        while (++m_number <= m_titles.Count())
            if (!m_format.losses.emptyTitles || !Words().empty())
                return true;
        return false;
    }
    std::int32_t Number() const { return m_number; }
    std::string Words() const { return WithoutHalves(WordsOf(m_format, PlainText())); }
    /// Most texts are the same to the letter or but for their marks, which needs no look at
    /// their words.
    bool HasWordsOf(const Held& other) const {
        return SameBesideMarks(m_titles.Text(m_number), other.m_titles.Text(other.m_number)) ||
               Words() == other.Words();
    }
    double Start() const { return m_titles.StartTime(m_number); }
    double End() const { return m_titles.EndTime(m_number); }
    /// Where the next title takes its place.
    double EndBeforeNext() const {
        if (m_number == m_titles.Count())
            return End();
        return std::min(End(), m_titles.StartTime(m_number + 1));
    }

  private:
    std::string PlainText() const {
        std::string text = m_titles.Text(m_number);
        if (m_source != nullptr && m_source->plainText != nullptr)
            text = m_source->plainText(text);
        if (m_adopted && m_format.adoptedText != nullptr)
            text = m_format.adoptedText(text);
        // Times within a text move along with it.
        return m_format.plainText == nullptr ? text : m_format.plainText(text);
    }

    const Format& m_format;
    const Format* m_source;
    bool m_adopted;
    const SUBTITLES& m_titles;
    std::int32_t m_number = 0;
};

std::string Named(std::int32_t number) {
    return "title " + std::to_string(number);
}

std::string TimeText(double time) {
    try {
        return FormatTime(time);
    } catch (const RuntimeError&) {
        return "an unknown time";
    }
}

std::string TimeDiffers(std::int32_t number, const char* what, double is, double wanted) {
    return Named(number) + what + TimeText(is) + " instead of " + TimeText(wanted);
}

} // namespace

std::string WordsOf(const Format& format, std::string_view text) {
    std::string words;
    words.reserve(text.size());
    bool blank = false;
    for (const char c : text) {
        if (IsSpace(c) || c == format.losses.lineMark) {
            blank = true;
            continue;
        }
        if (blank && !words.empty() && words.back() != ' ' && !format.losses.blanks)
            words += ' ';
        blank = false;
        words += c;
        if (format.losses.markup)
            ReadMarkup(words);
        if (!words.empty())
            DropMark(words);
    }
    if (words.ends_with(' '))
        words.pop_back();
    return words;
}

std::string FirstDifference(const Format& format, double frameRate, const FileStyle& style,
                            const SUBTITLES& written, const SUBTITLES& readBack) {
    const double unit = format.needsFrameRate ? 1 / frameRate : format.losses.grain;
    const auto far = [&](double a, double b) {
        return !(std::abs(a - b) <= unit / 2 + Slack);
    };
    Held wanted(format, DroppedFormat(format, style), !format.IsOf(style), written);
    Held is(format, nullptr, false, readBack);
    while (wanted.Next()) {
        const std::int32_t number = wanted.Number();
        if (!is.Next())
            return Named(number) + " is missing";
        if (far(is.Start(), wanted.Start()))
            return TimeDiffers(number, " starts at ", is.Start(), wanted.Start());
        const double end = format.losses.overlaps ? wanted.EndBeforeNext() : wanted.End();
        if (far(is.End(), end))
            return TimeDiffers(number, " ends at ", is.End(), end);
        if (!wanted.HasWordsOf(is))
            return Named(number) + " has other words";
    }
    if (is.Next())
        return "there is one more title after " + Named(written.Count());
    return {};
}
