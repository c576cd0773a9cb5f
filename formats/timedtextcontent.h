#pragma once

#include <map>
#include <string>
#include <string_view>

#include <pugixml.hpp>

/// Which elements of style make text italic or bold.
class TimedTextStyles {
  public:
    struct Look {
        bool italic = false;
        bool bold = false;
    };

    /// Of the head below the root element.
    explicit TimedTextStyles(const pugi::xml_node& root);
    /// Of an element by its own attributes and those of the styles that it names.
    Look Of(const pugi::xml_node& node) const;

  private:
    std::map<std::string, Look, std::less<>> m_looks;
};

/// The text of an element as titles hold it: br as line breaks, italic and bold spans as
/// tags, white space as one blank unless it is kept.
std::string TimedTextContent(const pugi::xml_node& element, const TimedTextStyles& styles,
                             bool preserve);
