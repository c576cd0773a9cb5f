#include "base/shorttext.h"

#include "base/utf8.h"

#include <algorithm>

namespace {

constexpr std::string_view LeftOut = "...";
constexpr std::string_view LineEnds = "\r\n";

/// Where the line is cut; its size when it is short enough.
std::size_t CutOf(std::string_view line, std::size_t most) {
    if (line.size() <= most)
        return line.size();
    std::size_t at = 0;
    for (std::size_t i = 0; i < most && at < line.size(); ++i)
        NextCodePoint(line, at);
    return at;
}

} // namespace

std::string ShortText(std::string_view text, ShownText most) {
    if (text.size() <= std::min(most.lines, most.characters))
        return std::string(text);
    std::string shown;
    for (std::size_t lines = 0; !text.empty(); ++lines) {
        if (lines == most.lines)
            return shown.append(LeftOut);
        const std::string_view line = text.substr(0, text.find_first_of(LineEnds));
        text.remove_prefix(line.size());
        const std::size_t cut = CutOf(line, most.characters);
        shown += line.substr(0, cut);
        if (cut < line.size())
            shown += LeftOut;
        const std::size_t end =
            std::min<std::size_t>(text.starts_with(LineEnds) ? 2 : 1, text.size());
        shown += text.substr(0, end);
        text.remove_prefix(end);
    }
    return shown;
}
