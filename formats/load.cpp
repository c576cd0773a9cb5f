#include "formats/load.h"

#include "base/runtimeerror.h"
#include "formats/encoding.h"
#include "formats/pictures.h"
#include "formats/reading.h"
#include "model/step.h"
#include "model/times.h"

#include <utility>

namespace {

std::string Utf8Name(const std::filesystem::path& file) {
    const std::u8string name = file.u8string();
    return {name.begin(), name.end()};
}

LoadResult ReadTitles(const Format& format, std::string_view text, SUBTITLES& titles,
                      FileStyle& style, const LoadHooks& hooks) {
    double frameRate = DefaultFrameRate;
    if (format.needsFrameRate && hooks.askFrameRate)
        frameRate = hooks.askFrameRate(format.NamedFrameRate(text));
    if (hooks.loading)
        hooks.loading();
    const ReadOutcome outcome = format.read(text, frameRate, titles, style, hooks.progress);
    LoadResult result{LoadOutcome::Complete, &format, {}, {}};
    if (const std::int32_t beyond = FirstBeyond(titles)) {
        result.outcome = LoadOutcome::Unusable;
        result.message = "The file was not opened: a time of title " + std::to_string(beyond) +
                         " is beyond what can be shown.";
        return result;
    }
    if (outcome == ReadOutcome::Corrupt) {
        result.outcome = LoadOutcome::Corrupt;
        result.message = format.corruptMessage;
    }
    if (outcome == ReadOutcome::Cancelled)
        result.outcome = LoadOutcome::Cancelled;
    result.offer = OfferMending(format, text, frameRate, outcome, titles);
    return result;
}

/// A file of empty lines alone tells no format.
const Format* FormatOf(const std::filesystem::path& file, std::string_view text) {
    try {
        return FormatOfFile(Utf8Name(file), text);
    } catch (const RuntimeError&) {
        return nullptr;
    }
}

LoadResult Refused(const std::string& pictures) {
    return {LoadOutcome::UnknownFormat,
            nullptr,
            "Could not determine file format.\r\nThe file holds its titles as pictures (" +
                pictures + "), not as text.",
            {}};
}

} // namespace

LoadResult LoadTitles(const std::filesystem::path& file, const std::string& codePage,
                      SUBTITLES& titles, FileStyle& style, const LoadHooks& hooks) {
    std::optional<FileBytes> bytes = hooks.readFile ? hooks.readFile(file) : ReadWholeFile(file);
    if (!bytes)
        return {LoadOutcome::NotOpened, nullptr, {}, {}};
    const char* const pictures = PicturesIn(bytes->View());
    const DecodedText decoded(std::move(*bytes), codePage);
    titles.UndoEnabled(true);
    if (pictures != nullptr)
        return Refused(pictures);
    const Format* format = FormatOf(file, decoded.Text());
    if (format == nullptr)
        return {LoadOutcome::UnknownFormat, nullptr, "Could not determine file format", {}};

    SUBTITLES fresh;
    fresh.UndoEnabled(false);
    FileStyle freshStyle;
    freshStyle.encoding = decoded.Encoding();
    freshStyle.byteOrderMark = decoded.ByteOrderMark();
    freshStyle.codePage = decoded.CodePageName();
    LoadResult result = ReadTitles(*format, decoded.Text(), fresh, freshStyle, hooks);
    if (result.outcome == LoadOutcome::Unusable)
        return result;
    fresh.UndoEnabled(true);
    if (hooks.replacing)
        hooks.replacing();
    const Step step(titles, "Open");
    titles.Replace(std::move(fresh));
    style = std::move(freshStyle);
    return result;
}
