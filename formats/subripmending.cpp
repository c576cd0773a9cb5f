#include "formats/linereader.h"
#include "formats/loosetime.h"
#include "formats/mending.h"
#include "formats/writing.h"
#include "model/numbers.h"
#include "model/times.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view Arrow = " --> ";
/// Longer times than this are no times: they would not fit their columns either.
constexpr double LongestTime = 100.0 * 3600;

struct Line {
    /// As it stands in the file.
    std::string_view raw;
    /// Without the blanks at its ends.
    std::string_view text;
};

/// What stands on the two lines above a block's words.
struct Head {
    LooseTimeLine times;
    /// The index of its time line.
    std::size_t timeLine = 0;
    /// The index of its number, or of the time line where there is none.
    std::size_t firstLine = 0;
};

/// "12", also as "#12", "12.", "12)"; otherwise nothing.
std::string_view NumberIn(std::string_view text) {
    if (text.starts_with('#'))
        text.remove_prefix(1);
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::string_view rest = text.substr(end);
    const bool alone = rest.empty() || rest == "." || rest == ":" || rest == ")";
    return alone ? text.substr(0, end) : std::string_view();
}

bool IsNumber(std::string_view text, std::size_t value) {
    const std::string_view digits = NumberIn(text);
    std::size_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc() && number == value;
}

/// "X1:117 X2:619 Y1:042 Y2:428", "align:start position:10%"
bool IsCoordinates(std::string_view rest) {
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        if (word.find(':') == std::string_view::npos)
            return false;
        rest = TrimWide(rest.substr(word.size()));
    }
    return true;
}

void AppendTimes(std::string& out, const LooseTimeLine& times) {
    AppendTime(out, times.start);
    out += Arrow;
    AppendTime(out, times.end);
}

class SubRipMender {
  public:
    explicit SubRipMender(std::string_view text) {
        LineReader lines(text);
        while (!lines.AtEnd()) {
            const std::string_view raw = lines.Next();
            m_lines.push_back({raw, TrimWide(raw)});
        }
        m_mended.text.reserve(text.size() + text.size() / 16);
    }

    MendedText Mend() {
        FindHeads();
        FindNumbers();
        NoteLinesBeforeTheFirstBlock();
        for (std::size_t i = 0; i < m_heads.size(); ++i)
            WriteBlock(i);
        if (!m_lines.empty() && m_lines.back().raw.find('\x1A') != std::string_view::npos)
            m_notes.Add("end mark (Ctrl-Z)", "end marks (Ctrl-Z)", m_lines.size());
        m_mended.mends = m_notes.Take();
        return std::move(m_mended);
    }

  private:
    void FindHeads() {
        for (std::size_t i = 0; i < m_lines.size(); ++i) {
            const auto times = ReadLooseTimeLine(m_lines[i].text);
            if (times && times->start < LongestTime && times->end < LongestTime)
                m_heads.push_back({*times, i, i});
        }
    }

    /// A line of digits above the times is the block's number, unless it stands where
    /// words stand in a file without numbers.
    void FindNumbers() {
        std::size_t numbered = 0;
        for (std::size_t i = 0; i < m_heads.size(); ++i)
            numbered += LineAbove(i) != m_heads[i].timeLine ? std::size_t{1} : 0;
        const bool mostly = numbered * 2 > m_heads.size();
        for (std::size_t i = 0; i < m_heads.size(); ++i) {
            const std::size_t above = LineAbove(i);
            if (above == m_heads[i].timeLine)
                continue;
            if (mostly || IsNumber(m_lines[above].text, i + 1))
                m_heads[i].firstLine = above;
        }
    }

    /// The nearest line above the times that has characters, when it holds digits alone;
    /// otherwise that of the times.
    std::size_t LineAbove(std::size_t head) const {
        const std::size_t timeLine = m_heads[head].timeLine;
        const std::size_t from = head == 0 ? 0 : m_heads[head - 1].timeLine + 1;
        for (std::size_t i = timeLine; i > from; --i) {
            if (!m_lines[i - 1].text.empty())
                return NumberIn(m_lines[i - 1].text).empty() ? timeLine : i - 1;
        }
        return timeLine;
    }

    void NoteLinesBeforeTheFirstBlock() {
        const std::size_t end = m_heads.empty() ? m_lines.size() : m_heads.front().firstLine;
        for (std::size_t i = 0; i < end; ++i) {
            if (m_lines[i].text.empty())
                NoteBlankLine(i);
            else
                m_notes.Add("line before the first block", "lines before the first block", i + 1);
        }
    }

    void NoteBlankLine(std::size_t line) {
        m_notes.Add("blank line between blocks", "blank lines between blocks", line + 1);
    }

    void WriteBlock(std::size_t index) {
        const Head& head = m_heads[index];
        NoteHead(index);
        AppendNumber(m_mended.text, static_cast<std::int32_t>(index + 1));
        m_mended.text += LineEnd;
        AppendTimes(m_mended.text, head.times);
        m_mended.text += LineEnd;
        const bool last = index + 1 == m_heads.size();
        WriteWords(head, last ? m_lines.size() : m_heads[index + 1].firstLine, last);
        m_mended.text += LineEnd;
    }

    void NoteHead(std::size_t index) {
        const Head& head = m_heads[index];
        const std::string_view number = m_lines[head.firstLine].raw;
        if (head.firstLine == head.timeLine)
            m_notes.Add("block without a number", "blocks without a number", head.timeLine + 1);
        else if (Val(number) == 0 && Val(NumberIn(m_lines[head.firstLine].text)) != 0)
            m_notes.Add("number in another form", "numbers in another form", head.firstLine + 1);
        else if (Val(number) == 0)
            m_notes.Add("block with number 0", "blocks with number 0", head.firstLine + 1);
        if (head.firstLine + 1 < head.timeLine)
            m_notes.Add("blank line between number and times",
                        "blank lines between numbers and times", head.firstLine + 2);
        std::string own;
        AppendTimes(own, head.times);
        if (!m_lines[head.timeLine].raw.starts_with(own))
            m_notes.Add("line of times in another form", "lines of times in another form",
                        head.timeLine + 1);
        else if (!head.times.rest.empty() && IsCoordinates(head.times.rest))
            m_notes.Add("line with coordinates", "lines with coordinates", head.timeLine + 1);
    }

    /// The lines with characters from behind the times up to the end. An empty text is an
    /// empty line, as the strict form has it.
    void WriteWords(const Head& head, std::size_t end, bool last) {
        std::size_t lines = 0;
        if (!head.times.rest.empty() && !IsCoordinates(head.times.rest)) {
            m_notes.Add("text beside its times", "texts beside their times", head.timeLine + 1);
            WriteLine(head.times.rest, lines);
        }
        std::size_t lastWords = head.timeLine;
        for (std::size_t i = head.timeLine + 1; i < end; ++i)
            lastWords = m_lines[i].text.empty() ? lastWords : i;
        for (std::size_t i = head.timeLine + 1; i <= lastWords; ++i) {
            if (m_lines[i].text.empty())
                m_notes.Add("blank line within a text", "blank lines within texts", i + 1);
            else
                WriteLine(m_lines[i].raw, lines);
        }
        NoteSpaceBehind(head, lastWords, end, last);
        if (lines == 0)
            m_mended.text += LineEnd;
    }

    /// One empty line, and no blank in it, stands between blocks. Behind an empty text
    /// there are two.
    void NoteSpaceBehind(const Head& head, std::size_t lastWords, std::size_t end, bool last) {
        const std::size_t blanks = end - lastWords - 1;
        const std::size_t usual = lastWords == head.timeLine && head.times.rest.empty() ? 2 : 1;
        if (blanks < usual && !last)
            m_notes.Add("missing empty line between blocks", "missing empty lines between blocks",
                        end + 1);
        for (std::size_t i = 0; i < blanks; ++i) {
            if (i >= usual || !m_lines[lastWords + 1 + i].raw.empty())
                NoteBlankLine(lastWords + 1 + i);
        }
    }

    /// Without the end mark of old systems, which some files carry behind their last word.
    void WriteLine(std::string_view line, std::size_t& lines) {
        while (line.ends_with('\x1A'))
            line.remove_suffix(1);
        m_mended.text += line;
        m_mended.text += LineEnd;
        ++lines;
    }

    std::vector<Line> m_lines;
    std::vector<Head> m_heads;
    MendedText m_mended;
    MendList m_notes;
};

} // namespace

MendedText MendSubRip(std::string_view text) {
    return SubRipMender(text).Mend();
}
