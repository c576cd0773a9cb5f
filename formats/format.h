#pragma once

#include "formats/mending.h"
#include "model/filestyle.h"
#include "model/subtitles.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// How far a reader or writer has come, 0 to 1; answering false cancels it.
/// Called a few hundred times per file at most. May be empty.
using Progress = std::function<bool(double)>;

enum class ReadOutcome { Complete, Corrupt, Cancelled };

/// What a file of unknown name is recognised by.
struct TextBeginning {
    /// The first line that is not empty; blanks alone count.
    std::string_view firstLine;
    /// From there to the end of the file. To be looked at no further than needed.
    std::string_view text;
};

/// What a format cannot hold by its rules.
struct FormatLosses {
    /// Times finer than this, in seconds. (Where frames are counted, their length holds.)
    double grain = 0.001;
    /// Titles without words.
    bool emptyTitles = false;
    /// The end of a title that the next one overlaps.
    bool overlaps = false;
    /// Where blanks stand, and how many.
    bool blanks = false;
    /// Whether "<" and line breaks stood in the text as such, or as "&lt;" and "<br>".
    bool markup = false;
    /// A character that stands for the end of a line; none when 0.
    char lineMark = '\0';
};

/// One subtitle file format: everything that differs between them is a row here.
struct Format {
    /// "SubRip"
    const char* name;
    /// ".srt": lower case, with the point, of any length; the usual one first.
    std::vector<std::string> extensions;
    /// "SubRip files", as file dialogs show it before the extensions.
    const char* description;
    /// As desktops know it: "application/x-subrip"; empty when they do not.
    const char* mimeType;
    /// The message for a file that breaks the format's rules.
    const char* corruptMessage;
    /// Times are counted in frames, so reading and writing ask for a rate first.
    bool needsFrameRate = false;
    /// Other files bear its extensions too: a name alone does not tell it, the
    /// beginning of the text must agree.
    bool sharesExtensions = false;
    /// Files are UTF-8 unless they came otherwise.
    bool unicode = false;
    /// Does a file of unknown name that begins like this look like it?
    bool (*recognise)(const TextBeginning& beginning);
    /// Appends the titles of a whole file, in file order. Titles before a fault stay.
    ReadOutcome (*read)(std::string_view text, double frameRate, SUBTITLES& titles,
                        FileStyle& style, const Progress& progress);
    /// Appends the whole file to `out`, as UTF-8. Lines end with CR LF, unless the
    /// file came with other ends and the format keeps them. What it finds in `style`
    /// and beside the titles is its own (see `WriteFile`).
    void (*write)(const SUBTITLES& titles, double frameRate, const FileStyle& style,
                  std::string& out);
    /// What does not come back of titles that were written, beside styles.
    FormatLosses losses = {};

    /// Reads wild files tolerantly, in the language of that number where there are several;
    /// null when the format has no such reading.
    MendedText (*mend)(std::string_view text, std::size_t language) = nullptr;
    /// May the file hold titles in several languages, of which one is to be chosen? Null: never.
    bool (*holdsLanguages)(std::string_view text) = nullptr;

    // The rest is for formats that keep more than times and texts.

    /// Loaded and saved, a file has the same bytes; when titles are moved, all but their
    /// times.
    bool exact = false;
    /// What `FileStyle::format` is when this format left something in the style.
    const char* keeps = nullptr;
    /// What other formats lack, for people: "positions and styles".
    const char* keptParts = nullptr;
    /// A title's text as formats understand it that have the four tags alone.
    std::string (*plainText)(std::string_view text) = nullptr;
    /// Another format's text as a title holds it once this one has been written and read
    /// again. Null: as it is.
    std::string (*adoptedText)(std::string_view text) = nullptr;
    /// Says the extra more than a title without one has? Null: any does.
    bool (*isSpecial)(const TitleExtra& extra) = nullptr;

    /// The frame rate that such a file names itself, on its first line.
    std::optional<double> NamedFrameRate(std::string_view text) const;
    /// Is what the style keeps this format's own?
    bool IsOf(const FileStyle& style) const { return keeps != nullptr && style.format == keeps; }
};

/// All formats, in the order in which file dialogs offer them.
std::span<const Format> Formats();

/// The format that a file of that name is saved in: by its extension, letter case and
/// blanks around the name ignored. Where several have that extension, the one that the
/// style came with, else the first. Null when none has it.
const Format* FormatByName(std::string_view fileName, const FileStyle& style = {});
/// The usual extension of the format that the style came with; ".srt" when it came with none.
std::string ExtensionFor(const FileStyle& style);
/// The format that a file of that name and text (UTF-8) is read as: by its extension,
/// or by its beginning; null when neither tells. A text that it needs to look at and
/// that has only empty lines is the run-time error "Input past end of file".
const Format* FormatOfFile(std::string_view fileName, std::string_view text);
/// By the beginning of the text alone; null when it fits none.
const Format* FormatByBeginning(const TextBeginning& beginning);

/// Pairs of text and patterns, as the file dialogs take them: "SAMI files (*.smi)|*.smi|...".
std::string FormatFilter();
/// ".smi (SAMI), .srt (SubRip) or .sub (MicroDVD)", for texts that name all formats.
std::string FormatList();

/// Appends the whole file to `out`, as the format writes it. Where another format left
/// things beside the titles they are dropped: what is in the texts alone is written.
void WriteFile(const Format& format, const SUBTITLES& titles, double frameRate,
               const FileStyle& style, std::string& out);
/// The other format whose things `WriteFile` drops; null when there are none.
const Format* DroppedFormat(const Format& format, const FileStyle& style);
/// What `WriteFile` drops: "Positions and styles of 120 titles are not kept in SubRip."
/// Empty when it drops nothing.
std::string NotKept(const Format& format, const SUBTITLES& titles, const FileStyle& style);
