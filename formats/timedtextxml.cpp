#include "formats/timedtextxml.h"

namespace {

constexpr std::string_view Space = " \t\r\n";
constexpr std::size_t None = std::string_view::npos;

/// Takes the start tag apart; false when it does not end.
bool TakeTag(std::string_view text, std::size_t begin, XmlPlace& place) {
    place.begin = begin;
    std::size_t at = text.find_first_of(" \t\r\n/>", begin);
    while (at != None) {
        at = text.find_first_not_of(Space, at);
        if (at == None)
            return false;
        if (text[at] == '>') {
            place.tagEnd = at + 1;
            return true;
        }
        if (text[at] == '/') {
            place.closed = true;
            ++at;
            continue;
        }
        const std::size_t nameEnd = text.find_first_of(" \t\r\n=", at);
        const std::size_t quote = nameEnd == None ? None : text.find_first_of("\"'", nameEnd);
        const std::size_t valueEnd = quote == None ? None : text.find(text[quote], quote + 1);
        if (valueEnd == None)
            return false;
        place.attributes.push_back({text.substr(at, nameEnd - at), quote + 1, valueEnd});
        at = valueEnd + 1;
    }
    return false;
}

/// Behind what begins at the offset and ends so; `None` when it does not.
std::size_t Behind(std::string_view text, std::size_t at, std::string_view end) {
    const std::size_t found = text.find(end, at);
    return found == None ? None : found + end.size();
}

/// Behind a start tag; quoted values may hold anything.
std::size_t BehindTag(std::string_view text, std::size_t at, bool& closed) {
    char quote = '\0';
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (quote != '\0') {
            if (c == quote)
                quote = '\0';
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            closed = text[at - 1] == '/';
            return at + 1;
        }
    }
    return None;
}

/// Finds the end of an element whose content begins at the offset.
bool TakeContent(std::string_view text, XmlPlace& place) {
    std::size_t depth = 1;
    std::size_t at = text.find('<', place.tagEnd);
    while (at != None) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("<!--")) {
            at = Behind(text, at, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = Behind(text, at, "]]>");
        } else if (rest.starts_with("<?")) {
            at = Behind(text, at, "?>");
        } else if (rest.starts_with("</")) {
            const std::size_t end = Behind(text, at, ">");
            if (--depth == 0) {
                place.contentEnd = at;
                place.end = end;
                return end != None;
            }
            at = end;
        } else {
            bool closed = false;
            at = BehindTag(text, at, closed);
            depth += closed ? 0 : 1;
        }
        at = at == None ? None : text.find('<', at);
    }
    return false;
}

} // namespace

std::string_view TrimmedXml(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(Space), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(Space) + 1);
}

bool PreservesSpace(const pugi::xml_node& node, bool inherited) {
    const pugi::xml_attribute space = node.attribute("xml:space");
    return space ? std::string_view(space.value()) == "preserve" : inherited;
}

std::optional<XmlPlace> PlaceOf(const pugi::xml_node& node, std::string_view text) {
    const std::ptrdiff_t name = node.offset_debug();
    if (name < 1 || static_cast<std::size_t>(name) > text.size())
        return std::nullopt;
    XmlPlace place;
    if (!TakeTag(text, static_cast<std::size_t>(name) - 1, place))
        return std::nullopt;
    if (place.closed) {
        place.contentEnd = place.end = place.tagEnd;
        return place;
    }
    return TakeContent(text, place) ? std::optional(std::move(place)) : std::nullopt;
}
