#include "formats/linereader.h"
#include "formats/mending.h"
#include "formats/writing.h"
#include "model/numbers.h"

#include <cmath>

namespace {

/// A frame number further on than a film can be long.
constexpr double LastFrame = 1e9;
constexpr double SlowestRate = 1;
constexpr double FastestRate = 1000;
/// How long a title without an end stays, in frames, when no other follows sooner.
constexpr double FramesWithoutEnd = 75;

struct FrameTitle {
    double start = 0;
    double end = 0;
    bool hasEnd = false;
    std::string text;
    std::size_t line = 0;
};

/// The number in braces at the front of the text, which is then cut off it.
/// Nothing: there are no braces. No number in them: not a number.
std::optional<double> TakeBraces(std::string_view& text) {
    const std::string_view trimmed = TrimWide(text);
    if (!trimmed.starts_with('{'))
        return std::nullopt;
    const std::size_t close = trimmed.find('}');
    if (close == std::string_view::npos)
        return std::nullopt;
    const std::string_view inside = TrimWide(trimmed.substr(1, close - 1));
    text = trimmed.substr(close + 1);
    const std::optional<double> number = Number(inside);
    return number && std::isfinite(*number) && *number >= 0 && *number < LastFrame ? *number
                                                                                   : std::nan("");
}

bool IsWhole(double value) {
    return std::floor(value) == value;
}

class MicroDvdMender {
  public:
    MendedText Mend(std::string_view text) {
        LineReader lines(text);
        for (std::size_t number = 1; !lines.AtEnd(); ++number)
            TakeLine(lines.Next(), number);
        Write();
        m_mended.mends = m_notes.Take();
        return std::move(m_mended);
    }

  private:
    void TakeLine(std::string_view raw, std::size_t number) {
        const std::string_view line = TrimWide(raw);
        const std::size_t plain = raw.find_first_not_of(' ');
        if (plain != std::string_view::npos && raw.substr(plain).data() != line.data())
            m_notes.Add("invisible mark before a title", "invisible marks before titles", number);
        if (line.empty())
            return;
        std::string_view rest = line;
        const std::optional<double> start = TakeBraces(rest);
        if (!start)
            return TakeStray(line, number);
        if (std::isnan(*start)) {
            if (line.substr(0, line.find('}')).find("DEFAULT") != std::string_view::npos)
                return m_notes.Add("line with a default style", "lines with a default style",
                                   number);
            return TakeStray(line, number);
        }
        std::string_view behindEnd = rest;
        const std::optional<double> end = TakeBraces(behindEnd);
        // A code of a style, such as {y:i}, is no end: an empty pair of braces is one.
        const bool empty = end && std::isnan(*end) && IsEmptyPair(rest);
        FrameTitle title{*start, 0, end && !std::isnan(*end), {}, number};
        if (title.hasEnd)
            title.end = *end;
        title.text = title.hasEnd || empty ? behindEnd : rest;
        if (TakeFrameRate(title))
            return;
        NoteForm(title, line);
        m_titles.push_back(std::move(title));
    }

    static bool IsEmptyPair(std::string_view text) {
        text = TrimWide(text);
        return TrimWide(text.substr(1, text.find('}') - 1)).empty();
    }

    /// The first title of some files stands at the first frame and holds nothing but their
    /// frame rate.
    bool TakeFrameRate(const FrameTitle& title) {
        if (m_mended.frameRate || !m_titles.empty() || title.start > 1 || title.end > 1)
            return false;
        std::string_view words = TrimWide(title.text);
        if (words.ends_with("fps"))
            words = TrimWide(words.substr(0, words.size() - 3));
        const std::optional<double> rate = Number(words);
        if (!rate || !(*rate > SlowestRate && *rate < FastestRate))
            return false;
        m_mended.frameRate = *rate;
        m_notes.Add("line that names the frame rate", "lines that name the frame rate", title.line);
        return true;
    }

    void NoteForm(const FrameTitle& title, std::string_view line) {
        if (!title.hasEnd)
            m_notes.Add("title without an end", "titles without an end", title.line);
        if (!IsWhole(title.start) || !IsWhole(title.end))
            m_notes.Add("title with a fraction of a frame", "titles with a fraction of a frame",
                        title.line);
        std::string own;
        AppendFrames(own, title.start, title.end);
        if (title.hasEnd && IsWhole(title.start) && IsWhole(title.end) && !line.starts_with(own))
            m_notes.Add("title with its frames in another form",
                        "titles with their frames in another form", title.line);
    }

    /// Words without frames go on with the title before them.
    void TakeStray(std::string_view line, std::size_t number) {
        if (m_titles.empty())
            return m_notes.Add("line before the first title", "lines before the first title",
                               number);
        m_notes.Add("line without frames", "lines without frames", number);
        m_titles.back().text += '|';
        m_titles.back().text += line;
    }

    void Write() {
        for (std::size_t i = 0; i < m_titles.size(); ++i) {
            FrameTitle& title = m_titles[i];
            if (!title.hasEnd) {
                title.end = title.start + FramesWithoutEnd;
                if (i + 1 < m_titles.size() && m_titles[i + 1].start > title.start)
                    title.end = std::min(title.end, m_titles[i + 1].start);
            }
            AppendFrames(m_mended.text, title.start, title.end);
            m_mended.text += title.text;
            m_mended.text += LineEnd;
        }
    }

    static void AppendFrames(std::string& out, double start, double end) {
        for (const double frame : {start, end}) {
            out += '{';
            AppendNumber(out, static_cast<std::int32_t>(std::floor(frame + 0.5)));
            out += '}';
        }
    }

    std::vector<FrameTitle> m_titles;
    MendedText m_mended;
    MendList m_notes;
};

} // namespace

MendedText MendMicroDvd(std::string_view text) {
    return MicroDvdMender().Mend(text);
}
