#include "formats/format.h"

#include "base/ascii.h"
#include "base/runtimeerror.h"
#include "formats/linereader.h"
#include "formats/lrc.h"
#include "formats/microdvd.h"
#include "formats/mpl2.h"
#include "formats/reading.h"
#include "formats/sami.h"
#include "formats/subrip.h"
#include "formats/substation.h"
#include "formats/subviewer.h"
#include "formats/timedtext.h"
#include "formats/webvtt.h"

#include <algorithm>
#include <array>

namespace {

std::vector<const Format*> FormatsOfName(std::string_view fileName) {
    const std::string name = AsciiLower(Trim(fileName));
    std::vector<const Format*> found;
    for (const Format& format : Formats()) {
        if (std::any_of(format.extensions.begin(), format.extensions.end(),
                        [&](const std::string& extension) { return name.ends_with(extension); }))
            found.push_back(&format);
    }
    return found;
}

TextBeginning BeginningOf(std::string_view text) {
    LineReader lines(text);
    while (!lines.AtEnd()) {
        const std::size_t at = lines.Position();
        const std::string_view line = lines.Next();
        if (!line.empty())
            return {line, text.substr(at)};
    }
    throw RuntimeError(RuntimeError::Number::InputPastEndOfFile);
}

std::string Patterns(const Format& format) {
    std::string patterns;
    for (const std::string& extension : format.extensions)
        patterns += (patterns.empty() ? "*" : ";*") + extension;
    return patterns;
}

bool Drops(const Format& source, const SUBTITLES& titles, std::int32_t index) {
    const TitleExtra& extra = titles.Extra(index);
    if (!extra.Empty() && (source.isSpecial == nullptr || source.isSpecial(extra)))
        return true;
    return source.plainText != nullptr &&
           source.plainText(titles.Text(index)) != titles.Text(index);
}

} // namespace

std::span<const Format> Formats() {
    static const std::array All{SamiFormat(),
                                SubRipFormat(),
                                MicroDvdFormat(),
                                WebVttFormat(),
                                AdvancedSubStationFormat(),
                                SubStationFormat(),
                                SbvFormat(),
                                SubViewerFormat(),
                                Mpl2Format(),
                                LrcFormat(),
                                TimedTextFormat()};
    return All;
}

std::optional<double> Format::NamedFrameRate(std::string_view text) const {
    constexpr std::size_t Beginning = 1000;
    if (!needsFrameRate || mend == nullptr)
        return std::nullopt;
    return mend(text.substr(0, Beginning), 0).frameRate;
}

const Format* FormatByName(std::string_view fileName, const FileStyle& style) {
    const std::vector<const Format*> found = FormatsOfName(fileName);
    for (const Format* format : found) {
        if (format->IsOf(style))
            return format;
    }
    return found.empty() ? nullptr : found.front();
}

std::string ExtensionFor(const FileStyle& style) {
    for (const Format& format : Formats())
        if (format.IsOf(style))
            return format.extensions.front();
    return SubRipFormat().extensions.front();
}

const Format* FormatOfFile(std::string_view fileName, std::string_view text) {
    const std::vector<const Format*> found = FormatsOfName(fileName);
    const auto sure = std::find_if(found.begin(), found.end(),
                                   [](const Format* format) { return !format->sharesExtensions; });
    const bool empty = text.find_first_not_of("\r\n") == std::string_view::npos;
    if (sure != found.end() && (empty || found.size() == 1))
        return *sure;
    const TextBeginning beginning = BeginningOf(text);
    for (const Format* format : found) {
        if (format->sharesExtensions && format->recognise(beginning))
            return format;
    }
    return sure != found.end() ? *sure : FormatByBeginning(beginning);
}

const Format* FormatByBeginning(const TextBeginning& beginning) {
    for (const Format& format : Formats()) {
        if (format.recognise(beginning))
            return &format;
    }
    return nullptr;
}

std::string FormatFilter() {
    std::string filter;
    for (const Format& format : Formats()) {
        const std::string patterns = Patterns(format);
        if (!filter.empty())
            filter += '|';
        filter += std::string(format.description) + " (" + patterns + ")|" + patterns;
    }
    return filter;
}

std::string FormatList() {
    std::string list;
    for (const Format& format : Formats()) {
        if (!list.empty())
            list += &format == &Formats().back() ? " or " : ", ";
        for (const std::string& extension : format.extensions)
            list += extension + " ";
        list += "(" + std::string(format.name) + ")";
    }
    return list;
}

const Format* DroppedFormat(const Format& format, const FileStyle& style) {
    for (const Format& other : Formats()) {
        if (other.IsOf(style))
            return format.IsOf(style) ? nullptr : &other;
    }
    return nullptr;
}

void WriteFile(const Format& format, const SUBTITLES& titles, double frameRate,
               const FileStyle& style, std::string& out) {
    const Format* source = DroppedFormat(format, style);
    if (source == nullptr || source->plainText == nullptr)
        return format.write(titles, frameRate, style, out);
    SUBTITLES plain;
    plain.Reserve(titles.Count());
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        plain.Add(titles.StartTime(i), titles.EndTime(i), source->plainText(titles.Text(i)));
    FileStyle own;
    own.subRipStyles = style.subRipStyles;
    format.write(plain, frameRate, own, out);
}

std::string NotKept(const Format& format, const SUBTITLES& titles, const FileStyle& style) {
    const Format* source = DroppedFormat(format, style);
    if (source == nullptr || source->keptParts == nullptr)
        return {};
    std::int32_t count = 0;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        count += Drops(*source, titles, i) ? 1 : 0;
    if (count == 0)
        return {};
    std::string parts = source->keptParts;
    parts.front() = static_cast<char>(parts.front() - 'a' + 'A');
    return parts + " of " + std::to_string(count) + (count == 1 ? " title" : " titles") +
           " are not kept in " + format.name + ".";
}
