#include "formats/save.h"

#include "base/replacefile.h"
#include "base/runtimeerror.h"
#include "base/savejournal.h"
#include "base/wholefile.h"
#include "formats/encoding.h"
#include "formats/proof.h"
#include "model/times.h"

#include <memory>
#include <new>
#include <optional>

namespace {

constexpr const char* WriteFailure = "One or more errors occurred while saving.\r\n"
                                     "The file may be invalid.";

/// Nothing when a time is beyond what the format can tell.
std::optional<std::string> Compose(const Format& format, double frameRate,
                                   const std::string& codePage, const SUBTITLES& titles,
                                   const FileStyle& style) {
    try {
        const bool strange = format.unicode && !format.IsOf(style);
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

/// How a file of these bytes differs from the titles; empty when it does not.
std::string Differs(std::optional<FileBytes> bytes, const Format& format, double frameRate,
                    const std::string& codePage, const SUBTITLES& titles,
                    const FileStyle& written) {
    try {
        if (!bytes)
            return "it cannot be read";
        const DecodedText decoded(std::move(*bytes),
                                  written.codePage.empty() ? codePage : written.codePage);
        SUBTITLES readBack;
        readBack.UndoEnabled(false);
        readBack.Reserve(titles.Count());
        FileStyle style;
        const ReadOutcome outcome =
            format.read(decoded.Text(), frameRate, readBack, style, Progress());
        const std::string difference =
            FirstDifference(format, frameRate, written, titles, readBack);
        return difference.empty() && outcome != ReadOutcome::Complete ? format.corruptMessage
                                                                      : difference;
    } catch (const RuntimeError& error) {
        return error.text();
    } catch (const std::bad_alloc&) {
        return "the memory is too small to compare it";
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

/// What touches the disk, and all that it needs.
struct Writing {
    std::filesystem::path file;
    std::string bytes;
    std::filesystem::path journalFolder;
    bool flush = true;

    ReplaceResult result = ReplaceResult::Failed;
    std::string details;
    std::optional<FileBytes> readBack;
};

void Write(Writing& writing) {
    SaveJournal journal;
    ReplaceHooks replacing;
    replacing.flush = writing.flush;
    if (!writing.journalFolder.empty())
        replacing.keep = [&](std::string_view oldBytes) {
            return journal.Write(writing.journalFolder, writing.file, oldBytes, writing.bytes);
        };
    writing.result = ReplaceBytes(writing.file, writing.bytes, replacing);
    if (writing.result == ReplaceResult::Torn) {
        writing.details = NameInQuotes(writing.file) +
                          " is damaged. What it held and what it was to hold are kept in " +
                          NameInQuotes(journal.Name()) +
                          "; the program offers them when it is started.";
        return;
    }
    journal.Remove();
    writing.details = Fate(writing.result, writing.file);
    if (writing.result == ReplaceResult::Written)
        writing.readBack = ReadWholeFile(writing.file);
}

/// false: given up.
bool Run(const std::shared_ptr<Writing>& writing, const SaveHooks& hooks) {
    if (hooks.beside)
        return hooks.beside([writing] { Write(*writing); });
    Write(*writing);
    return true;
}

} // namespace

std::string SaveRefusal(const SUBTITLES& titles) {
    return titles.StartTime(1) < 0 ? "Cannot save: all starting times must be positive." : "";
}

SaveResult SaveTitles(const std::filesystem::path& file, const std::string& codePage,
                      const SUBTITLES& titles, const FileStyle& style, const SaveHooks& hooks) {
    SaveResult result;
    const std::u8string name = file.u8string();
    result.format = FormatByName(std::string(name.begin(), name.end()), style);
    if (result.format == nullptr) {
        result.message = NameInQuotes(file) + " does not tell the format.";
        return result;
    }
    const Format& format = *result.format;
    const double frameRate =
        format.needsFrameRate && hooks.askFrameRate ? hooks.askFrameRate() : DefaultFrameRate;
    result.message = WriteFailure;
    std::optional<std::string> bytes = Compose(format, frameRate, codePage, titles, style);
    if (!bytes)
        return result;

    if (hooks.beforeWriting)
        hooks.beforeWriting();
    const auto writing = std::make_shared<Writing>();
    writing->file = file;
    writing->bytes = std::move(*bytes);
    writing->journalFolder = hooks.journalFolder;
    writing->flush = hooks.flushToDisk;
    if (!Run(writing, hooks)) {
        result.message = "Saving " + NameInQuotes(file) + " was given up.";
        result.details = "It may still get the titles when its disk answers.";
        return result;
    }
    result.details = writing->details;
    result.written = writing->result == ReplaceResult::Written;
    if (!result.written)
        return result;
    const std::string difference =
        Differs(std::move(writing->readBack), format, frameRate, codePage, titles, style);
    result.proven = difference.empty();
    result.message = result.proven ? std::string()
                                   : NameInQuotes(file) + " was written, but does not give the " +
                                         "titles back: " + difference + '.';
    return result;
}
