#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

/// What Timed Text needs of XML beside its tree: where things stand in the text.

/// Without the prefix.
inline std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// Without the white space at both ends.
std::string_view TrimmedXml(std::string_view text);

/// Is white space kept in the element, as its own attribute or those around it say?
bool PreservesSpace(const pugi::xml_node& node, bool inherited);

struct XmlPlace {
    struct Attribute {
        std::string_view name;
        /// Of the value, without its quotes.
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    std::size_t begin = 0;
    std::size_t tagEnd = 0;
    std::size_t contentEnd = 0;
    std::size_t end = 0;
    /// "<p/>"
    bool closed = false;
    std::vector<Attribute> attributes;
};

/// The element's place in the text that was parsed. Nothing when it cannot be found.
std::optional<XmlPlace> PlaceOf(const pugi::xml_node& node, std::string_view text);
