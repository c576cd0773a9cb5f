#include "editing/edittitle.h"

#include "model/step.h"
#include "model/times.h"

#include <algorithm>
#include <cmath>

namespace {

/// Far below the millisecond: what adding and parsing times leave behind.
constexpr double Noise = 1e-7;
/// Times that look the same to the millisecond differ by up to this.
constexpr double Unseen = 0.0005 + Noise;
constexpr double TooLate = 32768 * 3600.0;

bool SameTime(double one, double other) {
    return std::abs(one - other) < Noise;
}

/// Where the last occurrence begins, counted from 1; 0 when there is none.
std::size_t LastOf(std::string_view text, std::string_view mark) {
    const std::size_t at = text.rfind(mark);
    return at == std::string_view::npos ? 0 : at + 1;
}

bool Open(std::string_view text, std::string_view opening, std::string_view closing) {
    return LastOf(text, opening) > LastOf(text, closing);
}

} // namespace

OpenMarks MarksAtCaret(std::string_view text, std::size_t caret) {
    if (caret < text.size())
        ++caret;
    const std::string_view before = text.substr(0, caret);
    return {Open(before, "<b>", "</b>"), Open(before, "<i>", "</i>")};
}

std::string WithClosingMarks(std::string text) {
    if (Open(text, "<b>", "</b>"))
        text += "</b>";
    if (Open(text, "<i>", "</i>"))
        text += "</i>";
    return text;
}

double EndAfter(double start, double duration) {
    return RoundTime(duration) + start;
}

std::string_view WhyNot(const SUBTITLES& titles, std::int32_t index, double start, double end) {
    if (!(std::max(std::abs(start), std::abs(end)) < TooLate))
        return "The title would lie beyond what can be shown.";
    if (end <= 0)
        return "The duration cannot be negative or zero.";
    if (index <= 1) {
        if (start < -Unseen)
            return "The title cannot start before the start of the media.";
    } else if (start < titles.EndTime(index - 1) - Unseen) {
        return "This would start the title before the end of the previous one.";
    }
    if (index < titles.Count() && end > titles.EndTime(index + 1) + Unseen)
        return "This would make the subtitle last until after the start of the next one.";
    return {};
}

bool StoreTitle(SUBTITLES& titles, std::int32_t index, const std::string& text, double start,
                double end) {
    if (titles.Text(index) == text && SameTime(titles.StartTime(index), start) &&
        SameTime(titles.EndTime(index), end))
        return false;
    const Step step(titles, Step::Undo::Once);
    titles.Text(index, text);
    titles.StartTime(index, start);
    titles.EndTime(index, end);
    return true;
}

std::string BlanksForLoneBreaks(std::string text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        if (pair)
            ++at;
        else if (text[at] == '\r' || text[at] == '\n')
            text[at] = ' ';
    }
    return text;
}
