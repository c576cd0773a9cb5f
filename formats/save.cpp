#include "formats/save.h"

#include "base/runtimeerror.h"
#include "base/wholefile.h"
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

} // namespace

std::string SaveRefusal(const SUBTITLES& titles) {
    return titles.StartTime(1) < 0 ? "Cannot save: all starting times must be positive." : "";
}

SaveResult SaveTitles(const std::filesystem::path& file, const std::string& codePage,
                      const SUBTITLES& titles, const FileStyle& style, const SaveHooks& hooks) {
    const std::u8string name = file.u8string();
    const Format* format = FormatByName(std::string(name.begin(), name.end()), style);
    std::optional<std::string> bytes;
    if (format == nullptr)
        bytes.emplace();
    else
        bytes = Compose(*format, codePage, titles, style, hooks);
    if (!bytes)
        return {false, format, WriteFailure};

    if (hooks.beforeWriting)
        hooks.beforeWriting();
    if (!WriteWholeFile(file, *bytes, hooks.flushToDisk))
        return {false, format, WriteFailure};
    return {true, format, {}};
}
