#pragma once

#include "formats/filestyle.h"
#include "model/subtitles.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

/// How far a reader or writer has come, 0 to 1; answering false cancels it.
/// Called a few hundred times per file at most. May be empty.
using Progress = std::function<bool(double)>;

enum class ReadOutcome { Complete, Corrupt, Cancelled };

/// One subtitle file format: everything that differs between them is a row here.
struct Format {
    /// "SubRip"
    const char* name;
    /// ".srt": lower case, with the point.
    const char* extension;
    /// "SubRip files (*.srt)", as file dialogs show it.
    const char* description;
    /// The message for a file that breaks the format's rules.
    const char* corruptMessage;
    /// Times are counted in frames, so reading and writing ask for a rate first.
    bool needsFrameRate;
    /// Does a file of unknown name whose first line with characters is this look like it?
    bool (*recognise)(std::string_view firstLine);
    /// Appends the titles of a whole file, in file order. Titles before a fault stay.
    ReadOutcome (*read)(std::string_view text, double frameRate, SUBTITLES& titles,
                        FileStyle& style, const Progress& progress);
    /// Appends the whole file to `out`, as UTF-8, each line ended by CR LF.
    void (*write)(const SUBTITLES& titles, double frameRate, const FileStyle& style,
                  std::string& out);
};

/// All formats, in the order in which file dialogs offer them.
std::span<const Format> Formats();
/// By the last four characters of the name, blanks around it trimmed and letter
/// case ignored; null when none has that extension.
const Format* FormatByName(std::string_view fileName);
/// By the first line that is not empty; null when it fits none.
const Format* FormatByFirstLine(std::string_view firstLine);
