#include "formats/timedtextpatch.h"

#include "formats/packed.h"
#include "formats/timedtext.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace {

using Element = TimedTextSource::Element;
using Range = TimedTextSource::Range;

constexpr std::size_t NoElement = std::numeric_limits<std::size_t>::max();
constexpr double Grain = 0.0005;
constexpr std::string_view Space = " \t\r\n";

std::size_t ElementOf(const TitleExtra& extra) {
    if (extra.Empty())
        return NoElement;
    PackedReader reader(extra.Bytes());
    const auto number = reader.Number<std::uint32_t>();
    return reader.Failed() ? NoElement : number;
}

/// Copies the source from its beginning to its end, with changes on the way.
class Patcher {
  public:
    Patcher(const TimedTextSource& source, const SUBTITLES& titles, std::string& out)
        : m_source(source)
        , m_titles(titles)
        , m_out(out) {}

    void Run() {
        for (std::int32_t i = 1; i <= m_titles.Count(); ++i) {
            const std::size_t element = ElementOf(m_titles.Extra(i));
            // A title that was moved forward, or stands twice, gets a new element.
            if (element >= m_next && element < Elements().size())
                PutInPlace(i, element);
            else
                m_waiting.push_back(i);
        }
        const std::size_t last = Elements().size();
        if (m_next > 0)
            PutWaiting(Elements()[m_next - 1], {});
        Drop(last);
        if (!m_waiting.empty() && last > 0)
            PutWaiting(Elements().back(), {});
        if (!m_waiting.empty())
            PutFirst();
        m_out += m_source.Text().substr(m_done);
    }

  private:
    struct Edit {
        Range range;
        std::string text;
    };

    const std::vector<Element>& Elements() const { return m_source.Elements(); }

    void CopyTo(std::size_t end) {
        m_out += m_source.Text().substr(m_done, end - m_done);
        m_done = end;
    }
    void Replace(const Range& range, std::string_view text) {
        CopyTo(range.begin);
        m_out += text;
        m_done = range.end;
    }

    /// The white space in front of an element.
    std::string_view Indent(const Element& element) const {
        const std::string_view before = m_source.Text().substr(0, element.all.begin);
        return before.substr(before.find_last_not_of(Space) + 1);
    }

    void Drop(std::size_t end) {
        for (; m_next < end; ++m_next) {
            const Element& element = Elements()[m_next];
            // Within a text the white space belongs to the words.
            const std::size_t indent = element.name.ends_with("span") ? 0 : Indent(element).size();
            Replace({std::max(element.all.begin - indent, m_done), element.all.end}, {});
        }
    }

    void PutInPlace(std::int32_t index, std::size_t number) {
        Drop(number);
        const Element& element = Elements()[number];
        if (!m_waiting.empty()) {
            CopyTo(element.all.begin);
            PutWaiting(element, Indent(element));
        }
        PatchTimes(element, m_titles.StartTime(index), m_titles.EndTime(index));
        if (m_titles.Text(index) != element.text)
            PatchText(element, m_titles.Text(index));
        CopyTo(element.all.end);
        m_next = number + 1;
    }

    /// What the times of an element are counted from, once those before it are written.
    double Base(const Element& element) const {
        if (element.sequence == 0)
            return element.parentBegin;
        const auto before = m_ends.find(element.sequence);
        return before == m_ends.end() ? element.sequenceBegin : before->second;
    }
    void Written(const Element& element, double end) {
        if (element.sequence > 0)
            m_ends[element.sequence] = end;
    }

    void PatchTimes(const Element& element, double start, double end) {
        const double base = Base(element);
        const double moved = base - element.parentBegin;
        const bool startMoved = std::abs(start - element.startTime - moved) >= Grain;
        const bool endMoved = std::abs(end - element.endTime - moved) >= Grain;
        const double begin = start - base;
        Written(element, endMoved ? end : element.sequenceNext + moved);
        if (startMoved && !element.beginValue)
            Insert(element, "begin", begin);
        std::vector<Edit> edits;
        const auto patch = [&](const std::optional<Range>& value, double seconds,
                               const std::optional<TimedTextTime>& form) {
            if (!value)
                return;
            edits.push_back({*value, {}});
            AppendTimedTextTime(edits.back().text, seconds, *form, m_source.Rates());
        };
        const bool longer =
            std::abs((end - start) - (element.endTime - element.startTime)) >= Grain;
        if (startMoved)
            patch(element.beginValue, begin, element.begin);
        if (endMoved && !element.endValue && !element.durationValue)
            Insert(element, "end", end - base);
        if (endMoved)
            patch(element.endValue, end - base, element.end);
        if (longer)
            patch(element.durationValue, end - start, element.duration);
        // In the order in which they stand in the tag.
        std::sort(edits.begin(), edits.end(),
                  [](const Edit& a, const Edit& b) { return a.range.begin < b.range.begin; });
        for (const Edit& edit : edits)
            Replace(edit.range, edit.text);
    }

    /// An attribute that the element has not had.
    void Insert(const Element& element, std::string_view name, double seconds) {
        CopyTo(element.tag.begin + 1 + element.name.size());
        m_out.append(" ").append(name).append("=\"");
        AppendTimedTextTime(m_out, seconds, {}, m_source.Rates());
        m_out += '"';
    }

    void PatchText(const Element& element, std::string_view text) {
        const std::string content = Content(text);
        if (!element.closed)
            return Replace(element.content, content);
        CopyTo(m_source.Text().rfind('/', element.tag.end - 1));
        m_out.append(">").append(content).append("</").append(element.name).append(">");
        m_done = element.tag.end;
    }

    std::string Content(std::string_view text) const {
        return TextToTimedText(text, m_source.Prefix(), m_source.StylePrefix());
    }

    /// New elements like the one given, in front of it where the blanks between are told,
    /// else behind it.
    void PutWaiting(const Element& like, std::string_view between) {
        for (const std::int32_t index : m_waiting) {
            if (between.data() == nullptr)
                m_out += like.name.ends_with("span") ? std::string_view() : Indent(like);
            PutNew(index, like.name, Base(like));
            Written(like, m_titles.EndTime(index));
            m_out += between;
        }
        m_waiting.clear();
    }

    void PutNew(std::int32_t index, std::string_view name, double parentBegin) {
        m_out.append("<").append(name).append(" begin=\"");
        AppendTimedTextTime(m_out, m_titles.StartTime(index) - parentBegin, {}, m_source.Rates());
        m_out += "\" end=\"";
        AppendTimedTextTime(m_out, m_titles.EndTime(index) - parentBegin, {}, m_source.Rates());
        m_out.append("\">").append(Content(m_titles.Text(index)));
        m_out.append("</").append(name).append(">");
    }

    void PutFirst() {
        CopyTo(*m_source.FirstPlace());
        for (const std::int32_t index : m_waiting)
            PutNew(index, m_source.Prefix() + "p", 0);
        m_waiting.clear();
    }

    const TimedTextSource& m_source;
    const SUBTITLES& m_titles;
    std::string& m_out;
    /// All of the source before this is copied or replaced.
    std::size_t m_done = 0;
    /// The first element that is not yet dealt with.
    std::size_t m_next = 0;
    /// Titles without an element.
    std::vector<std::int32_t> m_waiting;
    /// Where the title that was last written of each sequence ends.
    std::map<std::size_t, double> m_ends;
};

} // namespace

TitleExtra ElementExtra(std::size_t element) {
    std::string bytes;
    PutNumber(bytes, static_cast<std::uint32_t>(element));
    return TitleExtra(std::move(bytes));
}

void PatchTimedText(const TimedTextSource& source, const SUBTITLES& titles, std::string& out) {
    out.reserve(out.size() + source.Text().size() + source.Text().size() / 16);
    Patcher(source, titles, out).Run();
}
