#include "formats/save.h"

#include "base/replacefile.h"
#include "base/runtimeerror.h"
#include "base/savejournal.h"
#include "formats/encoding.h"

#include <new>
#include <optional>

namespace {

constexpr double DefaultFrameRate = 25;
constexpr const char* WriteFailure = "One or more errors occurred while saving.\r\n"
                                     "The file may be invalid.";

/// The bytes of the whole file; nothing when a time is beyond what the format can tell.
std::optional<std::string> Compose(const Format& format, const std::string& codePage,
                                   const SUBTITLES& titles, const FileStyle& style,
                                   const SaveHooks& hooks) {
    double frameRate = DefaultFrameRate;
    if (format.needsFrameRate && hooks.askFrameRate)
        frameRate = hooks.askFrameRate();
    try {
        const bool strange = format.unicode && style.format != format.keeps;
        const FileStyle plain;
        const FileStyle& encoding = strange ? plain : style;
        std::string text(Utf8Mark(encoding));
        WriteFile(format, titles, frameRate, style, text);
        return Encode(std::move(text), encoding, codePage);
    } catch (const RuntimeError&) {
        return std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

std::string NameInQuotes(const std::filesystem::path& file) {
    const std::u8string name = file.filename().u8string();
    return "“" + std::string(name.begin(), name.end()) + "”";
}

/// What became of a file that does not hold the titles.
std::string Fate(ReplaceResult result, const std::filesystem::path& file) {
    std::error_code error;
    switch (result) {
    case ReplaceResult::NotAFile:
        return NameInQuotes(file) + " is no ordinary file.";
    case ReplaceResult::NotKept:
        return NameInQuotes(file) + " was not touched: it can only be overwritten where it is, "
                                    "and what it holds could not be kept elsewhere before.";
    case ReplaceResult::Failed:
        if (std::filesystem::exists(file, error))
            return NameInQuotes(file) + " is still whole.";
        return {};
    case ReplaceResult::Torn:
    case ReplaceResult::Written:
        break;
    }
    return {};
}

} // namespace

std::string SaveRefusal(const SUBTITLES& titles) {
    return titles.StartTime(1) < 0 ? "Cannot save: all starting times must be positive." : "";
}

SaveResult SaveTitles(const std::filesystem::path& file, const std::string& codePage,
                      const SUBTITLES& titles, const FileStyle& style, const SaveHooks& hooks) {
    const std::u8string name = file.u8string();
    const Format* format = FormatByName(std::string(name.begin(), name.end()), style);
    if (format == nullptr)
        return {false, nullptr, NameInQuotes(file) + " does not tell the format.", {}};
    const std::optional<std::string> bytes = Compose(*format, codePage, titles, style, hooks);
    if (!bytes)
        return {false, format, WriteFailure, {}};

    if (hooks.beforeWriting)
        hooks.beforeWriting();
    ReplaceHooks replacing;
    replacing.flush = hooks.flushToDisk;
    SaveJournal journal;
    if (!hooks.journalFolder.empty())
        replacing.keep = [&](std::string_view oldBytes) {
            return journal.Write(hooks.journalFolder, file, oldBytes, *bytes);
        };
    const ReplaceResult result = ReplaceBytes(file, *bytes, replacing);
    if (result == ReplaceResult::Torn)
        return {false, format, WriteFailure,
                NameInQuotes(file) +
                    " is damaged. What it held and what it was to hold are kept in " +
                    NameInQuotes(journal.Name()) + "; the program offers them when it is started."};
    journal.Remove();
    if (result != ReplaceResult::Written)
        return {false, format, WriteFailure, Fate(result, file)};
    return {true, format, {}, {}};
}
