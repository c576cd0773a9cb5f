#include "base/shorttext.h"

#include "base/utf8.h"

#include <algorithm>

namespace {

constexpr std::string_view LeftOut = "...";
constexpr std::string_view Pair = "\r\n";

/// Where the line is cut; its size when it is short enough.
std::size_t CutOf(std::string_view line, std::size_t most) {
    if (line.size() <= most)
        return line.size();
    std::size_t at = 0;
    for (std::size_t i = 0; i < most && at < line.size(); ++i)
        NextCodePoint(line, at);
    return at;
}

/// The places of one letter in a text, in order. However long the text is, no part of it
/// is looked at twice.
class Places {
  public:
    Places(std::string_view text, char letter)
        : m_text(text)
        , m_letter(letter) {}

    /// The first one from there on; the text's size when there is none. Never goes back.
    std::size_t From(std::size_t at) {
        if (at >= m_searched) {
            m_place = std::min(m_text.find(m_letter, at), m_text.size());
            m_searched = m_place + 1;
        }
        return m_place;
    }

  private:
    const std::string_view m_text;
    const char m_letter;
    std::size_t m_place = 0;
    /// Up to here.
    std::size_t m_searched = 0;
};

} // namespace

std::string ShortText(std::string_view text, ShownText most) {
    if (text.size() <= std::min(most.lines, most.characters))
        return std::string(text);
    Places feeds(text, '\n');
    Places returns(text, '\r');
    std::string shown;
    std::size_t at = 0;
    for (std::size_t lines = 0; at < text.size(); ++lines) {
        if (lines == most.lines)
            return shown.append(LeftOut);
        const std::size_t end = std::min(feeds.From(at), returns.From(at));
        const std::string_view line = text.substr(at, end - at);
        const std::size_t cut = CutOf(line, most.characters);
        shown += line.substr(0, cut);
        if (cut < line.size())
            shown += LeftOut;
        at = end;
        const std::string_view lineEnd = text.substr(at, text.substr(at).starts_with(Pair) ? 2 : 1);
        shown += lineEnd;
        at += lineEnd.size();
    }
    return shown;
}
