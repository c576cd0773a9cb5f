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

void AppendWithoutSlashes(std::string& line, std::string_view word) {
    std::copy_if(word.begin(), word.end(), std::back_inserter(line),
                 [](char c) { return c != '/'; });
}

std::string LineWithTags(std::string_view line, bool& changed) {
    std::string tagged;
    bool italic = false;
    for (bool more = !line.empty(); more;) {
        const std::string_view word = Split(line, " ", more);
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
