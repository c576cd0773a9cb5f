#pragma once

#include "formats/clocktime.h"
#include "model/filestyle.h"
#include "model/subtitles.h"

#include <optional>
#include <string>
#include <string_view>

/// A file that is to come back byte for byte, but for its times, is taken apart into a
/// header, the frames of its titles and a footer, which put together are the file.

/// The pieces of one title, in the order in which they stand in the file.
struct TitleFrame {
    /// What stands between the end of the text before and the first of the two times: line
    /// ends, comments, identifiers. Of the first title without the line ends that lead it.
    std::string_view before;
    /// The two times as they are written.
    std::string_view start;
    std::string_view between;
    std::string_view end;
    /// From the second time to the text: settings, style, margins.
    std::string_view after;
    std::string_view text;
};

/// What is the same for all titles, or for most: a frame holds what differs from it.
struct FramedFile {
    std::string header;
    /// From the end of the last title's text on.
    std::string footer;
    /// The pieces that most titles have, and a new one gets.
    std::string before;
    std::string between;
    std::string after;
    ClockForm clock;
    /// No title was in the file: the header is all of it, and may lack the line ends
    /// that a first title needs in front.
    bool empty = false;

    /// The line ends that lead `before`; the first title of a file goes without them.
    std::string_view Lead() const;
    bool operator==(const FramedFile&) const = default;
};

void KeepFrames(const FramedFile& file, const char* format, FileStyle& style);
/// Nothing when the style holds none of that format.
std::optional<FramedFile> KeptFrames(const FileStyle& style, const char* format);

/// A title's extra, taken apart: the pieces that it has of its own. A piece that is as
/// in all titles has no data.
struct OwnPieces {
    std::string_view before;
    std::string_view start;
    std::string_view between;
    std::string_view end;
    std::string_view after;
    std::string_view text;
    /// `before` came from the first title.
    bool first = false;
};
OwnPieces PiecesOf(const TitleExtra& extra);

/// Adds the titles of a file with what their frames have of their own.
class FrameReader {
  public:
    /// The file's usual pieces must be known by now.
    FrameReader(const FramedFile& file, SUBTITLES& titles)
        : m_file(file)
        , m_titles(titles) {}

    struct Reading {
        ClockTime start;
        ClockTime end;
        /// The text as titles hold it.
        std::string text;
        /// Written again, it would be the frame's text.
        bool plainText = true;
        /// The times are to be kept because the text holds further ones beside them.
        bool keepTimes = false;
    };
    void Add(const TitleFrame& frame, Reading reading);

  private:
    const FramedFile& m_file;
    SUBTITLES& m_titles;
    std::string m_packed;
    TitleExtra m_last;
    bool m_first = true;
};

/// Puts the titles of a file together again.
class FrameWriter {
  public:
    FrameWriter(const FramedFile& file, std::string& out)
        : m_file(file)
        , m_out(out) {}

    /// The header, all up to the text of each title, and the footer. The text comes
    /// after each `Title`.
    void Header() { m_out += m_file.header; }
    void Title(const OwnPieces& own, double start, double end);
    void Footer();

  private:
    void Time(double seconds, std::string_view own);
    static std::string_view Usual(std::string_view own, std::string_view usual) {
        return own.data() == nullptr ? usual : own;
    }

    const FramedFile& m_file;
    std::string& m_out;
    bool m_any = false;
};
