#include "formats/timedtextcontent.h"

#include "formats/timedtextxml.h"
#include "formats/writing.h"

#include <vector>

namespace {

constexpr std::string_view Space = " \t\r\n";

TimedTextStyles::Look OwnLook(const pugi::xml_node& node) {
    TimedTextStyles::Look look;
    for (const pugi::xml_attribute& attribute : node.attributes()) {
        const std::string_view name = LocalName(attribute.name());
        const std::string_view value = attribute.value();
        if (name == "fontStyle")
            look.italic = value == "italic" || value == "oblique";
        else if (name == "fontWeight")
            look.bold = value == "bold";
    }
    return look;
}

/// Puts text together as titles hold it.
class Composer {
  public:
    explicit Composer(bool preserve)
        : m_preserve(preserve) {}

    void Text(std::string_view text) {
        while (!text.empty()) {
            const std::size_t space = std::min(text.find_first_of(Space), text.size());
            if (space > 0)
                Words(text.substr(0, space));
            text.remove_prefix(space);
            if (text.empty())
                return;
            White(text.front());
            text.remove_prefix(1);
        }
    }
    void Break() {
        m_text += LineEnd;
        m_blank = false;
        m_lineStart = true;
    }
    void Open(const TimedTextStyles::Look& look) {
        if (look.italic)
            Tag("<i>");
        if (look.bold)
            Tag("<b>");
    }
    void Close(const TimedTextStyles::Look& look) {
        if (look.bold)
            m_text += "</b>";
        if (look.italic)
            m_text += "</i>";
    }
    std::string Take() { return std::move(m_text); }

  private:
    void Words(std::string_view words) {
        Blank();
        m_text += words;
        m_lineStart = false;
    }
    void White(char c) {
        if (!m_preserve)
            m_blank = true;
        else if (c == '\n')
            m_text += LineEnd;
        else
            m_text += c;
    }
    void Tag(std::string_view tag) {
        Blank();
        m_text += tag;
    }
    void Blank() {
        if (m_blank && !m_lineStart)
            m_text += ' ';
        m_blank = false;
    }

    std::string m_text;
    bool m_preserve;
    bool m_blank = false;
    bool m_lineStart = true;
};

} // namespace

TimedTextStyles::TimedTextStyles(const pugi::xml_node& root) {
    const pugi::xml_node head = root.find_child(
        [](const pugi::xml_node& node) { return LocalName(node.name()) == "head"; });
    const pugi::xml_node styling = head.find_child(
        [](const pugi::xml_node& node) { return LocalName(node.name()) == "styling"; });
    // A style may build on those before it.
    for (const pugi::xml_node& style : styling.children()) {
        const pugi::xml_attribute id = style.attribute("xml:id");
        const std::string_view name = id ? id.value() : style.attribute("id").value();
        if (!name.empty())
            m_looks.emplace(name, Of(style));
    }
}

TimedTextStyles::Look TimedTextStyles::Of(const pugi::xml_node& node) const {
    Look look = OwnLook(node);
    std::string_view names = node.attribute("style").value();
    while (!names.empty()) {
        const std::size_t end = std::min(names.find_first_of(Space), names.size());
        const auto found = m_looks.find(names.substr(0, end));
        if (found != m_looks.end()) {
            look.italic = look.italic || found->second.italic;
            look.bold = look.bold || found->second.bold;
        }
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return look;
}

std::string TimedTextContent(const pugi::xml_node& element, const TimedTextStyles& styles,
                             bool preserve) {
    Composer composer(preserve);
    TimedTextStyles::Look now;
    // What each open span has added to the look.
    std::vector<TimedTextStyles::Look> open;
    pugi::xml_node node = element.first_child();
    while (node) {
        const std::string_view name = LocalName(node.name());
        bool enter = false;
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
            composer.Text(node.value());
        } else if (name == "br") {
            composer.Break();
        } else if (name == "span" && node.first_child()) {
            TimedTextStyles::Look added = styles.Of(node);
            added.italic = added.italic && !now.italic;
            added.bold = added.bold && !now.bold;
            now.italic = now.italic || added.italic;
            now.bold = now.bold || added.bold;
            composer.Open(added);
            open.push_back(added);
            enter = true;
        }
        if (enter) {
            node = node.first_child();
            continue;
        }
        while (!node.next_sibling() && !open.empty()) {
            const TimedTextStyles::Look ended = open.back();
            open.pop_back();
            composer.Close(ended);
            now.italic = now.italic && !ended.italic;
            now.bold = now.bold && !ended.bold;
            node = node.parent();
        }
        node = node.next_sibling();
    }
    return composer.Take();
}
