#include "formats/load.h"

#include "formats/encoding.h"
#include "model/step.h"

namespace {

constexpr double DefaultFrameRate = 25;

std::string Utf8Name(const std::filesystem::path& file) {
    const std::u8string name = file.u8string();
    return {name.begin(), name.end()};
}

/// Where a file names its frame rate, it does so on its first line.
std::optional<double> NamedFrameRate(const Format& format, std::string_view text) {
    constexpr std::size_t Beginning = 1000;
    return format.mend == nullptr ? std::nullopt
                                  : format.mend(text.substr(0, Beginning), 0).frameRate;
}

LoadResult ReadTitles(const std::filesystem::path& file, std::string_view text, SUBTITLES& titles,
                      FileStyle& style, const LoadHooks& hooks) {
    const Format* format = FormatOfFile(Utf8Name(file), text);
    if (format == nullptr)
        return {LoadOutcome::UnknownFormat, nullptr, "Could not determine file format", {}};

    double frameRate = DefaultFrameRate;
    if (format->needsFrameRate && hooks.askFrameRate)
        frameRate = hooks.askFrameRate(NamedFrameRate(*format, text));
    if (hooks.loading)
        hooks.loading();
    const ReadOutcome outcome = format->read(text, frameRate, titles, style, hooks.progress);
    LoadResult result{LoadOutcome::Complete, format, {}, {}};
    if (outcome == ReadOutcome::Corrupt) {
        result.outcome = LoadOutcome::Corrupt;
        result.message = format->corruptMessage;
    }
    if (outcome == ReadOutcome::Cancelled)
        result.outcome = LoadOutcome::Cancelled;
    result.offer = OfferMending(*format, text, frameRate, outcome, titles);
    return result;
}

} // namespace

LoadResult LoadTitles(const std::filesystem::path& file, const std::string& codePage,
                      SUBTITLES& titles, FileStyle& style, const LoadHooks& hooks) {
    const Step step(titles, "Open");
    titles.UndoEnabled(false);
    titles.Clear();
    style = {};
    std::optional<FileBytes> bytes = ReadWholeFile(file);
    if (!bytes)
        return {LoadOutcome::NotOpened, nullptr, {}, {}};

    const DecodedText decoded(std::move(*bytes), codePage);
    style.encoding = decoded.Encoding();
    style.byteOrderMark = decoded.ByteOrderMark();
    LoadResult result = ReadTitles(file, decoded.Text(), titles, style, hooks);
    titles.ClearUndo();
    titles.UndoEnabled(true);
    return result;
}
