#pragma once

#include "formats/format.h"
#include "formats/frames.h"

/// A header, then cues apart by empty lines: a line of times with settings, and text
/// with tags and entities. All but the times is kept byte for byte.
Format WebVttFormat();

inline constexpr const char* WebVttKeeps = "WebVTT";

ReadOutcome ReadWebVtt(std::string_view text, double frameRate, SUBTITLES& titles, FileStyle& style,
                       const Progress& progress);
void WriteWebVtt(const SUBTITLES& titles, double frameRate, const FileStyle& style,
                 std::string& out);

// The text of a cue. A title holds its characters for entities, its lines joined by
// CR LF, and its tags as they are.

std::string WebVttToText(std::string_view cue);
/// Without empty lines, which would end the cue.
void TextToWebVtt(std::string_view text, std::string_view lineEnd, std::string& out);
/// Without the tags that no other format has; inner time stamps are such.
std::string WebVttPlainText(std::string_view text);

/// What a cue holds, found in one go.
struct CueLook {
    /// There are times inside its text, as "<00:00:05.000>".
    bool innerTimes = false;
    /// There are entities, or line ends that are not CR LF.
    bool differsFromText = false;
    /// Its text, written again with those line ends, gives the cue.
    bool comesBack = true;
};
CueLook LookAtCue(std::string_view cue, std::string_view lineEnd);
bool HasInnerTimes(std::string_view cue);
/// The cue with its inner times moved as its own two were: by the same amount where its
/// length is the same, else in proportion.
std::string MovedInnerTimes(std::string_view cue, double oldStart, double oldEnd, double start,
                            double end);
