#include "formats/tolerance.h"

#include "formats/reading.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double SameTime = 0.0005;

/// What only the files themselves should hold, not the words of a title.
bool HoldsMarkup(std::string_view text) {
    static constexpr std::array<std::string_view, 8> Marks{"-->", "&nbsp;", "</p",  "</P",
                                                           "</s", "</S",    "<!--", "<br"};
    // Most texts hold neither of these two characters, and looking for them is quick.
    return (text.find('>') != std::string_view::npos || text.find('&') != std::string_view::npos) &&
           std::any_of(Marks.begin(), Marks.end(), [text](std::string_view mark) {
               return text.find(mark) != std::string_view::npos;
           });
}

bool LooksMisread(const SUBTITLES& titles) {
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const bool backward = titles.EndTime(i) < titles.StartTime(i) + SameTime;
        const bool unread = i > 1 && titles.StartTime(i) < SameTime;
        if (backward || unread || HoldsMarkup(titles.Text(i)))
            return true;
    }
    return false;
}

bool SameTimes(const SUBTITLES& one, const SUBTITLES& other, std::int32_t i) {
    return std::abs(one.StartTime(i) - other.StartTime(i)) < SameTime &&
           std::abs(one.EndTime(i) - other.EndTime(i)) < SameTime;
}

/// How many of the titles that both have have other times.
std::int32_t OtherTimes(const SUBTITLES& one, const SUBTITLES& other) {
    std::int32_t count = 0;
    for (std::int32_t i = 1; i <= std::min(one.Count(), other.Count()); ++i)
        count += SameTimes(one, other, i) ? 0 : 1;
    return count;
}

std::string Titles(std::int32_t count) {
    return std::to_string(count) + (count == 1 ? " title" : " titles");
}

std::vector<MendedLanguage> LanguagesWithTitles(std::vector<MendedLanguage> languages) {
    std::erase_if(languages, [](const MendedLanguage& language) { return language.titles == 0; });
    return languages;
}

std::string Finds(const SUBTITLES& strict, const SUBTITLES& mended, std::size_t languages) {
    const std::int32_t other = OtherTimes(strict, mended);
    if (languages > 1)
        return "titles in " + std::to_string(languages) + " languages";
    if (mended.Count() != strict.Count())
        return Titles(mended.Count()) + " instead of " + std::to_string(strict.Count());
    if (other > 0)
        return "other times for " + std::to_string(other) + " of " + Titles(mended.Count());
    return "the same " + Titles(mended.Count()) + ", and no damage";
}

std::string Question(const std::string& finds, const MendedText& text, std::size_t languages) {
    const std::string summary = MendSummary(text.mends, false);
    return "A tolerant reading finds " + finds + (summary.empty() ? "" : " (" + summary + ")") +
           (languages > 1 ? ". Which of them are to be edited?" : ". Use it?");
}

SUBTITLES Read(const Format& format, const std::string& text, double frameRate, FileStyle& style) {
    SUBTITLES titles;
    format.read(text, frameRate, titles, style, {});
    return titles;
}

} // namespace

std::optional<MendOffer> OfferMending(const Format& format, std::string_view text, double frameRate,
                                      ReadOutcome strictly, const SUBTITLES& titles) {
    const bool corrupt = strictly == ReadOutcome::Corrupt;
    if (format.mend == nullptr || strictly == ReadOutcome::Cancelled)
        return std::nullopt;
    const bool mixed = format.holdsLanguages != nullptr && format.holdsLanguages(text);
    if (!corrupt && !mixed && !format.NamedFrameRate(text) && !LooksMisread(titles))
        return std::nullopt;
    MendedText mended = format.mend(text, 0);
    std::vector<MendedLanguage> languages = LanguagesWithTitles(mended.languages);
    const std::size_t first = languages.empty() ? 0 : languages.front().number;
    if (first > 0)
        mended = format.mend(text, first);
    FileStyle style;
    const SUBTITLES loose = Read(format, mended.text, frameRate, style);
    const bool same = loose.Count() == titles.Count() && OtherTimes(titles, loose) == 0;
    if (loose.Count() == 0 || FirstBeyond(loose) != 0 || (same && !corrupt && languages.size() < 2))
        return std::nullopt;
    std::string finds = Finds(titles, loose, languages.size());
    std::string question = Question(finds, mended, languages.size());
    const bool onlyFrameRate = mended.frameRate && mended.mends.size() == 1;
    return MendOffer{std::move(question),
                     std::move(finds),
                     std::move(mended.mends),
                     std::move(languages),
                     first,
                     &format,
                     frameRate,
                     onlyFrameRate,
                     std::string(text)};
}

void TakeOffer(const MendOffer& offer, std::size_t language, SUBTITLES& titles, FileStyle& style) {
    const MendedText mended = offer.format->mend(offer.text, language);
    SUBTITLES fresh = Read(*offer.format, mended.text, offer.frameRate, style);
    fresh.UndoEnabled(true);
    titles.Replace(std::move(fresh));
}
