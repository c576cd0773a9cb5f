#include "editing/corrections.h"

#include "model/step.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::string_view LineBreak = "\r\n";

/// The part before the separator; the rest keeps what follows it. At the last
/// part `more` becomes false.
std::string_view Split(std::string_view& rest, std::string_view separator, bool& more) {
    const std::size_t at = rest.find(separator);
    more = at != std::string_view::npos;
    const std::string_view part = rest.substr(0, at);
    rest.remove_prefix(more ? at + separator.size() : rest.size());
    return part;
}

/// How long the override block is that the text begins with, such as {\\an8}; 0: none.
std::size_t OverrideLength(std::string_view text) {
    if (!text.starts_with("{\\"))
        return 0;
    const std::size_t end = text.find_first_of("{}", 1);
    return end == std::string_view::npos || text[end] == '{' ? 0 : end + 1;
}

/// The word before the next blank; blanks in an override block are its own.
std::string_view TakeWord(std::string_view& rest, bool& more) {
    std::size_t at = 0;
    while (at < rest.size() && rest[at] != ' ')
        at += std::max<std::size_t>(rest[at] == '{' ? OverrideLength(rest.substr(at)) : 0, 1);
    more = at < rest.size();
    const std::string_view word = rest.substr(0, at);
    rest.remove_prefix(more ? at + 1 : rest.size());
    return word;
}

void AppendWithoutSlashes(std::string& line, std::string_view word) {
    while (!word.empty()) {
        const std::size_t block = OverrideLength(word);
        if (block > 0 || word.front() != '/')
            line += word.substr(0, std::max<std::size_t>(block, 1));
        word.remove_prefix(std::max<std::size_t>(block, 1));
    }
}

std::string LineWithTags(std::string_view line, bool& changed) {
    std::string tagged;
    bool italic = false;
    for (bool more = !line.empty(); more;) {
        const std::string_view word = TakeWord(line, more);
        const bool slashed = word.starts_with('/');
        const bool opens = slashed && !italic;
        if (italic && !slashed)
            tagged += "</i>";
        italic = slashed;
        changed |= opens;
        if (!tagged.empty())
            tagged += ' ';
        if (opens)
            tagged += "<i>";
        if (italic)
            AppendWithoutSlashes(tagged, word);
        else
            tagged += word;
    }
    if (italic)
        tagged += "</i>";
    return tagged;
}

std::vector<std::int32_t> CorrectAll(SUBTITLES& titles, const char* name,
                                     std::string (*correct)(std::string_view)) {
    std::vector<std::int32_t> changed;
    const Step step(titles, name, Step::Undo::Emptied);
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        std::string corrected = correct(titles.Text(i));
        if (corrected.empty())
            continue;
        titles.Text(i, std::move(corrected));
        changed.push_back(i);
    }
    return changed;
}

} // namespace

std::string CorrectText(std::string_view text) {
    constexpr std::string_view BetweenSentences = "\r\n -";
    constexpr std::string_view SentenceEnds = ".!?";
    std::string corrected;
    bool sentenceStart = true;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (const std::size_t block = c == '{' ? OverrideLength(text.substr(at)) : 0; block > 0) {
            at += block - 1;
            continue;
        }
        if (c == (sentenceStart ? 'l' : 'I')) {
            if (corrected.empty())
                corrected = text;
            corrected[at] = sentenceStart ? 'I' : 'l';
        }
        if (BetweenSentences.find(c) == std::string_view::npos)
            sentenceStart = SentenceEnds.find(c) != std::string_view::npos;
    }
    return corrected;
}

std::string SlashesToTags(std::string_view text) {
    if (text.find('/') == std::string_view::npos)
        return {};
    std::string tagged;
    bool changed = false;
    for (bool more = true; more;) {
        tagged += LineWithTags(Split(text, LineBreak, more), changed);
        if (more)
            tagged += LineBreak;
    }
    return changed ? tagged : std::string();
}

std::vector<std::int32_t> CorrectSpelling(SUBTITLES& titles) {
    return CorrectAll(titles, "Spelling correction", CorrectText);
}

std::vector<std::int32_t> ConvertItalics(SUBTITLES& titles) {
    return CorrectAll(titles, "Italics", SlashesToTags);
}
