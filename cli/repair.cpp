#include "cli/repair.h"

#include "base/ascii.h"

bool NeedsRepair(const MendOffer& offer, bool frameRateGiven) {
    return !(offer.onlyFrameRate && frameRateGiven);
}

std::string RepairHint(const MendOffer& offer) {
    const std::string summary = MendSummary(offer.mends, true);
    return "A tolerant reading finds " + offer.finds + (summary.empty() ? "" : ": " + summary) +
           ". --repair takes it.";
}

bool TakeRepaired(const MendOffer& offer, const std::string& language, SUBTITLES& titles,
                  FileStyle& style, std::string& message) {
    const std::string wanted = AsciiLower(language);
    std::size_t number = offer.language;
    std::string known;
    bool found = wanted.empty() || offer.languages.size() < 2;
    for (const MendedLanguage& one : offer.languages) {
        known += (known.empty() ? "" : ", ") + one.name;
        if (!found && (AsciiLower(one.name) == wanted || AsciiLower(one.className) == wanted)) {
            number = one.number;
            found = true;
        }
    }
    if (!found) {
        message = "has no such language, but " + known;
        return false;
    }
    message = offer.mends.empty() ? "" : "mended: " + MendSummary(offer.mends, true);
    if (offer.languages.size() > 1)
        message += (message.empty() ? "languages: " : "; languages: ") + known;
    TakeOffer(offer, number, titles, style);
    return true;
}
