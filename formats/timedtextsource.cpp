#include "formats/timedtextsource.h"

#include "formats/timedtextcontent.h"
#include "formats/timedtextxml.h"
#include "model/numbers.h"

#include <algorithm>
#include <limits>

namespace {

constexpr double Never = std::numeric_limits<double>::infinity();
/// A title whose end no element says.
constexpr double EndlessTitleLength = 10;

bool HasTimes(const pugi::xml_node& node) {
    return !node.attribute("begin").empty() || !node.attribute("end").empty() ||
           !node.attribute("dur").empty();
}

bool IsTimedSpan(const pugi::xml_node& node) {
    return LocalName(node.name()) == "span" && HasTimes(node);
}

bool HasTimedSpans(const pugi::xml_node& node) {
    return !node.find_node(IsTimedSpan).empty();
}

double NumberOf(const pugi::xml_node& root, std::string_view name, double missing) {
    for (const pugi::xml_attribute& attribute : root.attributes()) {
        if (LocalName(attribute.name()) == name && attribute.as_double() > 0)
            return attribute.as_double();
    }
    return missing;
}

TimedTextRates RatesOf(const pugi::xml_node& root) {
    constexpr double NoRate = -1;
    TimedTextRates rates;
    const double frames = NumberOf(root, "frameRate", NoRate);
    if (frames > 0)
        rates.frameRate = frames;
    rates.tickRate =
        NumberOf(root, "tickRate", frames > 0 ? frames * NumberOf(root, "subFrameRate", 1) : 1);
    for (const pugi::xml_attribute& attribute : root.attributes()) {
        if (LocalName(attribute.name()) != "frameRateMultiplier")
            continue;
        // "1000 1001", in old files "1000:1001".
        const std::string_view value = attribute.value();
        const std::size_t apart = value.find_first_of(" :");
        const double over = Val(value);
        const double under = apart == value.npos ? 1 : Val(value.substr(apart + 1));
        if (over > 0 && under > 0)
            rates.frameRate *= over / under;
    }
    return rates;
}

std::string StylePrefixOf(const pugi::xml_node& root) {
    constexpr std::string_view Declares = "xmlns:";
    for (const pugi::xml_attribute& attribute : root.attributes()) {
        const std::string_view name = attribute.name();
        if (name.starts_with(Declares) &&
            std::string_view(attribute.value()).find("#styl") != std::string_view::npos)
            return std::string(name.substr(Declares.size())) + ":";
    }
    return {};
}

} // namespace

/// Goes through the body, not by recursion: files may nest as deep as they like.
class TimedTextWalk {
  public:
    TimedTextWalk(TimedTextSource& source, const pugi::xml_node& root)
        : m_source(source)
        , m_root(root)
        , m_styles(root) {}

    void Run() {
        const pugi::xml_node body = m_root.find_child(
            [](const pugi::xml_node& node) { return LocalName(node.name()) == "body"; });
        if (!body)
            return;
        Context outermost;
        outermost.preserve = PreservesSpace(m_root, false);
        m_contexts.push_back(outermost);
        pugi::xml_node node = body;
        while (node) {
            if (Enter(node) && node.first_child()) {
                node = node.first_child();
                continue;
            }
            while (node != body && !node.next_sibling()) {
                node = node.parent();
                Leave();
            }
            if (node == body)
                break;
            node = node.next_sibling();
        }
        FindFirstPlace(body);
    }

  private:
    struct Context {
        double begin = 0;
        double end = Never;
        bool timed = false;
        bool preserve = false;
        /// The number of a group whose children follow one another, and where the next begins.
        std::size_t sequence = 0;
        double next = 0;
        /// When the last of its children ends.
        double latest = 0;
    };

    /// What the times of a child are counted from.
    Context ForChild() const {
        Context parent = m_contexts.back();
        if (parent.sequence > 0)
            parent.begin = parent.next;
        return parent;
    }
    void ChildEnded(double end) {
        Context& parent = m_contexts.back();
        parent.next = end;
        parent.latest = std::max(parent.latest, end);
    }
    void Leave() {
        const Context left = m_contexts.back();
        m_contexts.pop_back();
        if (!m_contexts.empty())
            ChildEnded(left.end == Never ? left.latest : left.end);
    }

    /// True when its children are to be looked at; their context is then the last one.
    bool Enter(const pugi::xml_node& node) {
        const std::string_view name = LocalName(node.name());
        const bool group = name == "body" || name == "div";
        const bool text = name == "p" || IsTimedSpan(node);
        if (!group && !text)
            return false;
        const Context parent = ForChild();
        const bool timed = HasTimes(node);
        if (text && (timed || (parent.timed && !HasTimedSpans(node)))) {
            AddTitle(node, parent);
            return false;
        }
        if (!node.first_child() || (text && !HasTimedSpans(node)))
            return false;
        Context own;
        own.begin = parent.begin;
        own.end = parent.end;
        own.timed = parent.timed || timed;
        own.preserve = PreservesSpace(node, parent.preserve);
        if (timed) {
            TimedTextSource::Element element;
            if (!TakeTimes(node, parent, element))
                return false;
            own.begin = element.startTime;
            own.end = element.endTime;
        }
        if (node.attribute("timeContainer").value() == std::string_view("seq"))
            own.sequence = ++m_sequences;
        own.next = own.latest = own.begin;
        m_source.m_sequenceOfGroups = m_source.m_sequenceOfGroups || parent.sequence > 0;
        m_contexts.push_back(own);
        return true;
    }

    bool TakeTime(const pugi::xml_node& node, const char* name,
                  std::optional<TimedTextTime>& time) {
        const pugi::xml_attribute attribute = node.attribute(name);
        if (!attribute)
            return true;
        time = ParseTimedTextTime(TrimmedXml(attribute.value()), m_source.m_rates);
        m_source.m_faulty = m_source.m_faulty || !time;
        return time.has_value();
    }

    bool TakeTimes(const pugi::xml_node& node, const Context& parent,
                   TimedTextSource::Element& element) {
        if (!TakeTime(node, "begin", element.begin) || !TakeTime(node, "end", element.end) ||
            !TakeTime(node, "dur", element.duration))
            return false;
        element.parentBegin = parent.begin;
        element.sequence = parent.sequence;
        element.startTime = parent.begin + (element.begin ? element.begin->seconds : 0);
        element.endTime = parent.end;
        if (element.end)
            element.endTime = std::min(element.endTime, parent.begin + element.end->seconds);
        if (element.duration)
            element.endTime =
                std::min(element.endTime, element.startTime + element.duration->seconds);
        return true;
    }

    void AddTitle(const pugi::xml_node& node, const Context& parent) {
        TimedTextSource::Element element;
        if (!TakeTimes(node, parent, element) || !TakePlace(node, element))
            return;
        // One after the other, what has no end takes no time.
        element.sequenceNext = element.endTime == Never ? element.startTime : element.endTime;
        ChildEnded(element.sequenceNext);
        if (element.endTime == Never)
            element.endTime = element.startTime + EndlessTitleLength;
        element.sequenceBegin = m_contexts.back().begin;
        element.name = node.name();
        element.text = TimedTextContent(node, m_styles, PreservesSpace(node, parent.preserve));
        m_source.m_elements.push_back(std::move(element));
    }

    /// Where the element stands in the text.
    bool TakePlace(const pugi::xml_node& node, TimedTextSource::Element& element) {
        const auto place = PlaceOf(node, m_source.m_text);
        if (!place) {
            m_source.m_faulty = true;
            return false;
        }
        element.all = {place->begin, place->end};
        element.tag = {place->begin, place->tagEnd};
        element.content = {place->tagEnd, place->contentEnd};
        element.closed = place->closed;
        for (const XmlPlace::Attribute& attribute : place->attributes) {
            const TimedTextSource::Range range{attribute.begin, attribute.end};
            if (attribute.name == "begin")
                element.beginValue = range;
            else if (attribute.name == "end")
                element.endValue = range;
            else if (attribute.name == "dur")
                element.durationValue = range;
        }
        return true;
    }

    void FindFirstPlace(const pugi::xml_node& body) {
        const pugi::xml_node division = body.find_child(
            [](const pugi::xml_node& node) { return LocalName(node.name()) == "div"; });
        for (const pugi::xml_node& node : {division, body}) {
            const auto place = node ? PlaceOf(node, m_source.m_text) : std::nullopt;
            if (!m_source.m_firstPlace && place && !place->closed)
                m_source.m_firstPlace = place->contentEnd;
        }
    }

    TimedTextSource& m_source;
    pugi::xml_node m_root;
    TimedTextStyles m_styles;
    std::vector<Context> m_contexts;
    std::size_t m_sequences = 0;
};

TimedTextSource::TimedTextSource(std::string_view text)
    : m_text(text) {
    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_buffer(
        text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
    const pugi::xml_node root = document.document_element();
    if (!parsed || LocalName(root.name()) != "tt")
        return;
    m_valid = true;
    m_rates = RatesOf(root);
    const std::string_view name = root.name();
    m_prefix = name.substr(0, name.size() - LocalName(name).size());
    m_stylePrefix = StylePrefixOf(root);
    TimedTextWalk(*this, root).Run();
}
