#include "formats/substationscanner.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::string_view Blanks = " \t";
constexpr std::string_view DialogueWord = "dialogue:";
constexpr std::string_view FormatWord = "format:";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(Blanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

} // namespace

bool DialogueScanner::Next(Dialogue& dialogue) {
    while (!m_lines.AtEnd()) {
        const std::size_t at = m_lines.Position();
        const std::string_view line = m_lines.Next();
        const std::size_t begin = std::min(line.find_first_not_of(Blanks), line.size());
        const std::string_view words = line.substr(begin);
        if (words.starts_with('[')) {
            m_inEvents = IsWord(Trimmed(words), "[events]");
            m_events = m_events || m_inEvents;
        } else if (!m_inEvents) {
            continue;
        } else if (StartsWithWord(words, DialogueWord)) {
            if (TakeDialogue(at, line, dialogue))
                return true;
            m_faulty = true;
        } else if (StartsWithWord(words, FormatWord)) {
            TakeFormat(words.substr(FormatWord.size()));
        }
    }
    return false;
}

void DialogueScanner::TakeFormat(std::string_view text) {
    std::vector<std::string_view> names;
    std::size_t comma = text.find(',');
    for (; comma != std::string_view::npos; comma = text.find(',')) {
        names.push_back(Trimmed(text.substr(0, comma)));
        text.remove_prefix(comma + 1);
    }
    names.push_back(Trimmed(text));
    const auto place = [&](std::string_view word) {
        return static_cast<std::size_t>(
            std::find_if(names.begin(), names.end(),
                         [&](std::string_view name) { return IsWord(name, word); }) -
            names.begin());
    };
    const Fields fields{place("start"), place("end"), place("text")};
    // The text may hold commas, so nothing can follow it.
    if (fields.start < fields.end && fields.end < fields.text && fields.text == names.size() - 1) {
        m_fields = fields;
        MakePlain(names);
    } else {
        m_faulty = true;
    }
}

void DialogueScanner::MakePlain(const std::vector<std::string_view>& names) {
    constexpr std::array<std::string_view, 4> Empty{"name", "actor", "effect", "text"};
    m_plain = {{}, {}, {}};
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string& piece = i < m_fields.start  ? m_plain.before
                             : i <= m_fields.end ? m_plain.between
                                                 : m_plain.after;
        if (i > m_fields.start)
            piece += ',';
        if (i == m_fields.start || i == m_fields.end)
            continue;
        const auto is = [&](std::string_view word) {
            return IsWord(names[i], word);
        };
        if (is("style"))
            piece += "Default";
        else if (is("marked"))
            piece += "Marked=0";
        else if (std::none_of(Empty.begin(), Empty.end(), is))
            piece += '0';
        if (i < m_fields.start)
            piece += ',';
    }
}

bool DialogueScanner::TakeDialogue(std::size_t at, std::string_view line, Dialogue& dialogue) {
    TitleFrame& frame = dialogue.frame;
    std::size_t from = line.find(':') + 1;
    for (std::size_t field = 0; field < m_fields.text; ++field) {
        const std::size_t comma = line.find(',', from);
        if (comma == std::string_view::npos)
            return false;
        if (field == m_fields.start)
            frame.start = Trimmed(line.substr(from, comma - from));
        else if (field == m_fields.end)
            frame.end = Trimmed(line.substr(from, comma - from));
        from = comma + 1;
    }
    const auto start = ParseClock(frame.start);
    const auto end = ParseClock(frame.end);
    if (!start || !end)
        return false;
    dialogue.start = *start;
    dialogue.end = *end;

    if (!m_any)
        m_header = m_done = at;
    m_any = true;
    const auto offset = [this](std::string_view part) {
        return static_cast<std::size_t>(part.data() - m_text.data());
    };
    const std::size_t startEnd = offset(frame.start) + frame.start.size();
    const std::size_t endEnd = offset(frame.end) + frame.end.size();
    frame.before = m_text.substr(m_done, offset(frame.start) - m_done);
    frame.between = m_text.substr(startEnd, offset(frame.end) - startEnd);
    frame.after = m_text.substr(endEnd, at + from - endEnd);
    frame.text = line.substr(from);
    m_done = at + line.size();
    return true;
}
