#include "base/ascii.h"
#include "base/utf8.h"
#include "formats/entities.h"
#include "formats/mending.h"
#include "formats/writing.h"
#include "model/numbers.h"

#include <algorithm>
#include <map>

namespace {

constexpr std::string_view PlainHead = "<SAMI>\r\n<HEAD>\r\n</HEAD>\r\n";
constexpr std::string_view PlainFoot = "</BODY>\r\n</SAMI>";
/// In milliseconds; longer than any film, and the writer can still tell it.
constexpr double LastMoment = 2e9;

/// No style sheet is longer, and no file has more languages that are to be named.
constexpr std::size_t LongestHead = 1 << 16;
constexpr std::size_t MostNamed = 50;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// What stands between "<" and ">".
struct Tag {
    /// Lower case: "p", "/body".
    std::string name;
    std::string_view inner;

    explicit Tag(std::string_view text)
        : inner(text) {
        std::size_t end = inner.starts_with('/') ? 1 : 0;
        while (end < inner.size() && !IsBlank(inner[end]) && inner[end] != '/')
            ++end;
        name = AsciiLower(inner.substr(0, end));
    }

    /// The value as it stands, with its quotes; nothing where the tag has no such attribute.
    std::optional<std::string_view> Raw(std::string_view attribute) const {
        const std::string lower = AsciiLower(inner);
        for (std::size_t at = lower.find(attribute, name.size()); at != std::string::npos;
             at = lower.find(attribute, at + 1)) {
            std::size_t next = at + attribute.size();
            if (!IsBlank(lower[at - 1]) && lower[at - 1] != '"' && lower[at - 1] != '\'')
                continue;
            while (next < lower.size() && IsBlank(lower[next]))
                ++next;
            if (next >= lower.size() || lower[next] != '=')
                continue;
            ++next;
            while (next < lower.size() && IsBlank(lower[next]))
                ++next;
            return inner.substr(next, ValueLength(next));
        }
        return std::nullopt;
    }

  private:
    std::size_t ValueLength(std::size_t begin) const {
        if (begin >= inner.size())
            return 0;
        const char quote = inner[begin];
        std::size_t end = begin;
        if (quote == '"' || quote == '\'') {
            const std::size_t close = inner.find(quote, begin + 1);
            return close == std::string_view::npos ? inner.size() - begin : close + 1 - begin;
        }
        while (end < inner.size() && !IsBlank(inner[end]))
            ++end;
        return end - begin;
    }
};

std::string_view Unquoted(std::string_view value) {
    const auto isQuote = [](char c) {
        return c == '"' || c == '\'';
    };
    while (!value.empty() && isQuote(value.front()))
        value.remove_prefix(1);
    while (!value.empty() && isQuote(value.back()))
        value.remove_suffix(1);
    return TrimWide(value);
}

/// What one language shows from a moment on; empty: nothing.
struct Paragraph {
    double time = 0;
    std::size_t language = 0;
    std::string text;
};

class SamiMender {
  public:
    explicit SamiMender(std::string_view text)
        : m_text(text) {}

    MendedText Mend(std::size_t language) {
        ReadHead();
        m_lastSync = LastSync();
        while (m_at < m_text.size() && !m_ended)
            ReadPiece();
        if (m_foot.empty())
            Note("missing end of the body", "missing ends of the body");
        CountLanguages();
        Write(language < m_classes.size() ? language : 0);
        m_mended.mends = m_notes.Take();
        return std::move(m_mended);
    }

  private:
    std::size_t Line() {
        m_line += static_cast<std::size_t>(
            std::count(m_text.begin() + static_cast<std::ptrdiff_t>(m_counted),
                       m_text.begin() + static_cast<std::ptrdiff_t>(m_at), '\n'));
        m_counted = m_at;
        return m_line;
    }
    void Note(const char* one, const char* more) { m_notes.Add(one, more, Line()); }

    /// The offset of a tag of that name, comments left out; the end of the text without one.
    std::size_t FindTag(std::string_view name) const {
        for (std::size_t at = m_text.find('<'); at != std::string_view::npos;
             at = m_text.find('<', at + 1)) {
            if (m_text.size() - at > name.size() &&
                IsWord(m_text.substr(at + 1, name.size()), name))
                return at;
        }
        return m_text.size();
    }

    /// Where the last SYNC tag lies; 0 without one.
    std::size_t LastSync() const {
        for (std::size_t at = m_text.rfind('<'); at != 0 && at != std::string_view::npos;
             at = m_text.rfind('<', at - 1)) {
            if (IsWord(m_text.substr(at + 1, 4), "sync"))
                return at;
        }
        return 0;
    }

    void ReadHead() {
        const std::size_t sync = FindTag("sync");
        const std::size_t body = FindTag("body");
        const bool hasBody = body < sync;
        m_head = m_text.substr(0, std::min(body, sync));
        m_at = m_head.size();
        if (!hasBody)
            return Note("missing BODY tag", "missing BODY tags");
        const std::size_t close = std::min(m_text.find('>', m_at), m_text.size() - 1);
        if (!IsWord(m_text.substr(m_at, close + 1 - m_at), "<body>"))
            Note("BODY tag with attributes", "BODY tags with attributes");
        m_at = close + 1;
        const std::size_t lineEnd = m_text.find_first_of("\r\n", m_at);
        if (m_text.substr(m_at, std::min(lineEnd, m_text.size()) - m_at).find('<') !=
            std::string_view::npos)
            Note("title on the line of the BODY tag", "titles on the line of the BODY tag");
    }

    void ReadPiece() {
        const char c = m_text[m_at];
        if (c == '<')
            return ReadMarkup();
        if (c == '&')
            return ReadAmpersand();
        const std::size_t end = std::min(m_text.find_first_of("<&", m_at), m_text.size());
        Append(m_text.substr(m_at, end - m_at));
        m_at = end;
    }

    void ReadAmpersand() {
        std::size_t next = m_at;
        const std::optional<char32_t> character = ReadEntity(m_text, next);
        if (!character) {
            Append("&");
            ++m_at;
            return;
        }
        m_at = next;
        // A "<" of the words stays an entity: the strict reading would take it for a tag.
        if (*character == '<')
            return Append("&lt;");
        Note("entity", "entities");
        std::string decoded;
        AppendUtf8(decoded, *character == 0xA0 ? U' ' : *character);
        Append(decoded);
    }

    void ReadMarkup() {
        if (m_text.substr(m_at).starts_with("<!--")) {
            Note("comment", "comments");
            const std::size_t close = m_text.find("-->", m_at);
            m_at = close == std::string_view::npos ? m_text.size() : close + 3;
            return;
        }
        const std::size_t next = m_at + 1;
        const bool isTag = next < m_text.size() &&
                           (m_text[next] == '/' || m_text[next] == '!' || m_text[next] == '?' ||
                            (AsciiLower(m_text[next]) >= 'a' && AsciiLower(m_text[next]) <= 'z'));
        if (isTag && m_nextClose <= m_at)
            m_nextClose = std::min(m_text.find('>', m_at), m_text.size());
        if (isTag && m_nextOpen <= m_at)
            m_nextOpen = std::min(m_text.find('<', next), m_text.size());
        const std::size_t close = m_nextClose;
        if (!isTag || close >= m_nextOpen) {
            Note("lone \"<\"", "lone \"<\"");
            Append("&lt;");
            ++m_at;
            return;
        }
        TakeTag(Tag(m_text.substr(next, close - next)), m_text.substr(m_at, close + 1 - m_at));
        if (!m_ended)
            m_at = close + 1;
    }

    void TakeTag(const Tag& tag, std::string_view whole) {
        if (tag.name == "sync")
            return TakeSync(tag);
        if (tag.name == "p")
            return TakeParagraph(tag);
        if (tag.name == "/body")
            return TakeBodyEnd();
        if (tag.name == "br") {
            if (tag.inner.size() > 2)
                Note("line break in another form", "line breaks in another form");
            return Append("<br>");
        }
        if (tag.name == "/p" || tag.name == "/sync" || tag.name == "/sami")
            return Note("closing tag", "closing tags");
        if (whole == "<I>" || whole == "</I>" || whole == "<B>" || whole == "</B>") {
            Note("style in capital letters", "styles in capital letters");
            return Append(AsciiLower(whole));
        }
        Append(whole);
    }

    /// Other languages may follow, in a body of their own.
    void TakeBodyEnd() {
        m_foot = m_text.substr(m_at);
        m_ended = m_lastSync < m_at;
        m_between = true;
        m_firstBody = std::min(m_firstBody, m_paragraphs.size());
    }

    void TakeSync(const Tag& tag) {
        const std::optional<std::string_view> raw = tag.Raw("start");
        const std::string_view value = raw ? Unquoted(*raw) : std::string_view();
        double time = Val(value);
        if (!raw || value.empty() ||
            (value.front() != '-' && (value.front() < '0' || value.front() > '9')))
            return Note("SYNC tag without a time", "SYNC tags without a time");
        std::string_view unit = value;
        unit.remove_prefix(std::min(unit.find_first_not_of("-0123456789."), unit.size()));
        const std::string lowerUnit = AsciiLower(TrimWide(unit));
        if (lowerUnit == "s")
            time *= 1000;
        if (value.size() != raw->size() || !unit.empty())
            Note("time with quotes or a unit", "times with quotes or a unit");
        m_time = std::clamp(time, -LastMoment, LastMoment);
        m_synced = true;
        m_between = false;
        m_paragraphs.push_back({m_time, 0, {}});
        m_open = true;
    }

    void TakeParagraph(const Tag& tag) {
        const std::optional<std::string_view> raw = tag.Raw("class");
        if (!m_synced || m_between)
            return;
        if (!raw && AsciiLower(tag.inner).find("class") != std::string::npos)
            Note("class without a name", "classes without a name");
        const std::size_t language = raw ? LanguageOf(Unquoted(*raw)) : 0;
        Paragraph& last = m_paragraphs.back();
        // The paragraph that a SYNC tag begins has no words yet: it is this one.
        if (m_open && TrimWide(last.text).empty()) {
            last.language = language;
            m_open = false;
            return;
        }
        if (last.language == language) {
            last.text += "<br>";
            return;
        }
        m_paragraphs.push_back({m_time, language, {}});
    }

    std::size_t LanguageOf(std::string_view name) {
        const auto [place, isNew] = m_places.try_emplace(AsciiLower(name), m_classes.size());
        if (isNew)
            m_classes.emplace_back(name);
        return place->second;
    }

    void Append(std::string_view text) {
        if (m_between)
            return;
        if (m_synced)
            m_paragraphs.back().text += text;
        else if (!TrimWide(text).empty() && text.find_first_not_of("\r\n \t") != text.npos)
            Note("text before the first SYNC tag", "texts before the first SYNC tag");
    }

    static bool HasWords(const Paragraph& paragraph) {
        std::string_view text = paragraph.text;
        while (true) {
            while (!text.empty() && IsBlank(text.front()))
                text.remove_prefix(1);
            const std::string_view trimmed = TrimWide(text);
            if (!trimmed.starts_with("<br>"))
                return !trimmed.empty();
            text = trimmed.substr(4);
        }
    }

    void CountLanguages() {
        if (m_classes.empty())
            m_classes.emplace_back("SUBTTL");
        const std::string head = AsciiLower(m_head.substr(0, LongestHead));
        for (const std::string& name : m_classes) {
            const bool sought = m_mended.languages.size() < MostNamed;
            m_mended.languages.push_back(
                {m_mended.languages.size(), name, sought ? NameOf(name, head) : name, 0});
        }
        for (const Paragraph& paragraph : m_paragraphs)
            m_mended.languages[paragraph.language].titles += HasWords(paragraph) ? 1 : 0;
    }

    /// ".ENCC {Name: English; lang: en-US;}"
    std::string NameOf(const std::string& className, const std::string& head) const {
        const std::size_t rule = head.find("." + AsciiLower(className));
        const std::size_t open = rule == std::string::npos ? rule : head.find('{', rule);
        const std::size_t close = open == std::string::npos ? open : head.find('}', open);
        const std::size_t name = close == std::string::npos ? close : head.find("name", open);
        if (name >= close)
            return className;
        const std::size_t colon = head.find(':', name);
        if (colon >= close)
            return className;
        const std::size_t end = std::min(head.find(';', colon), close);
        const std::string_view value =
            Unquoted(TrimWide(m_head.substr(colon + 1, end - colon - 1)));
        return value.empty() ? className : std::string(value);
    }

    void Write(std::size_t language) {
        std::string& out = m_mended.text;
        const std::string_view head = TrimWide(m_head);
        out += head.empty() ? PlainHead : m_head;
        if (!out.ends_with('\n'))
            out += LineEnd;
        out += "<BODY>\r\n";
        const Paragraph* before = nullptr;
        for (const Paragraph& paragraph : m_paragraphs) {
            // A class without titles only clears those of the others.
            const bool clears = m_mended.languages[paragraph.language].titles == 0 &&
                                (before == nullptr || before->time != paragraph.time);
            if (paragraph.language != language && !clears)
                continue;
            WriteParagraph(paragraph, language);
            before = &paragraph;
        }
        WriteOthers(language);
        const std::size_t end = m_foot.find_last_not_of("\r\n");
        out += end == std::string_view::npos ? PlainFoot : m_foot.substr(0, end + 1);
        out += LineEnd;
        NoteOthers(language);
    }

    void WriteParagraph(const Paragraph& paragraph, std::size_t language) {
        m_mended.text += "<SYNC Start=";
        AppendNumber(m_mended.text, RoundToLong(paragraph.time));
        m_mended.text += "><P Class=" + m_classes[language] + ">";
        AppendWords(paragraph);
        m_mended.text += LineEnd;
    }

    /// Behind the first body, where the strict reading takes them for the foot and the writer
    /// writes them back. Players read them there too.
    void WriteOthers(std::size_t language) {
        bool any = false;
        for (const Paragraph& paragraph : m_paragraphs) {
            const bool other =
                paragraph.language != language && m_mended.languages[paragraph.language].titles > 0;
            if (other && !any)
                m_mended.text += "</BODY>\r\n<BODY>\r\n";
            any = any || other;
            if (other)
                WriteParagraph(paragraph, paragraph.language);
        }
    }

    void AppendWords(const Paragraph& paragraph) {
        if (!HasWords(paragraph)) {
            m_mended.text += "<br>";
            return;
        }
        std::string_view words = paragraph.text;
        while (true) {
            while (!words.empty() && IsBlank(words.back()))
                words.remove_suffix(1);
            if (!words.ends_with("<br>"))
                break;
            words.remove_suffix(4);
        }
        m_mended.text += words;
    }

    /// Those that stood among the titles of this one.
    void NoteOthers(std::size_t language) {
        std::vector<bool> among(m_mended.languages.size());
        for (std::size_t i = 0; i < std::min(m_firstBody, m_paragraphs.size()); ++i)
            among[m_paragraphs[i].language] = true;
        for (std::size_t i = 0; i < among.size(); ++i) {
            if (i != language && among[i] && m_mended.languages[i].titles > 0)
                m_notes.Add("other language kept behind the body",
                            "other languages kept behind the body", 1);
        }
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
    std::size_t m_counted = 0;
    /// The next ">" that is known; the end of the text when there is none.
    std::size_t m_nextClose = 0;
    /// The same for the next "<".
    std::size_t m_nextOpen = 0;
    std::string_view m_head;
    /// From the last end of a body on.
    std::string_view m_foot;
    std::size_t m_lastSync = 0;
    /// How many paragraphs the first body holds.
    std::size_t m_firstBody = static_cast<std::size_t>(-1);
    /// Behind the end of a body, before the next SYNC tag.
    bool m_between = false;
    std::vector<std::string> m_classes;
    /// Where each class stands in the list, by its name in lower case.
    std::map<std::string, std::size_t> m_places;
    std::vector<Paragraph> m_paragraphs;
    double m_time = 0;
    bool m_synced = false;
    /// The last paragraph was begun by a SYNC tag, and no P tag has named its language yet.
    bool m_open = false;
    bool m_ended = false;
    MendedText m_mended;
    MendList m_notes;
};

} // namespace

bool HoldsSeveralLanguages(std::string_view sami) {
    constexpr std::string_view Word = "class";
    std::string_view first;
    for (std::size_t at = sami.find('='); at != std::string_view::npos;
         at = sami.find('=', at + 1)) {
        if (at < Word.size() || !IsWord(sami.substr(at - Word.size(), Word.size()), Word))
            continue;
        std::string_view name = sami.substr(at + 1);
        name = Unquoted(name.substr(0, name.find_first_of(" \t\r\n>/")));
        if (first.empty())
            first = name;
        else if (!name.empty() && name != first && AsciiLower(name) != AsciiLower(first))
            return true;
    }
    return false;
}

MendedText MendSami(std::string_view text, std::size_t language) {
    return SamiMender(text).Mend(language);
}
