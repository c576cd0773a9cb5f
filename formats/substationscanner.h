#pragma once

#include "formats/frames.h"
#include "formats/linereader.h"

#include <string>
#include <string_view>
#include <vector>

/// Finds the "Dialogue:" lines of the [Events] of a file, one after the other.
class DialogueScanner {
  public:
    explicit DialogueScanner(std::string_view text)
        : m_lines(text)
        , m_text(text) {}

    struct Dialogue {
        TitleFrame frame;
        ClockTime start;
        ClockTime end;
    };
    bool Next(Dialogue& dialogue);

    std::size_t Position() const { return m_lines.Position(); }
    /// Up to the first title's line.
    std::string_view Header() const { return m_text.substr(0, m_header); }
    /// From the end of the last title's text.
    std::string_view Rest() const { return m_text.substr(m_done); }
    /// Something in [Events] could not be read; it is no title.
    bool Faulty() const { return m_faulty || !m_events; }

    /// The fields of a plain title, around its times, as the "Format:" line asks for.
    struct PlainFields {
        std::string before = "0,";
        std::string between = ",";
        std::string after = ",Default,,0,0,0,,";
    };
    const PlainFields& Plain() const { return m_plain; }

  private:
    /// Where the times and the text stand in a line, as the "Format:" line says.
    struct Fields {
        std::size_t start = 1;
        std::size_t end = 2;
        std::size_t text = 9;
    };
    void TakeFormat(std::string_view names);
    void MakePlain(const std::vector<std::string_view>& names);
    bool TakeDialogue(std::size_t at, std::string_view line, Dialogue& dialogue);

    LineReader m_lines;
    std::string_view m_text;
    Fields m_fields;
    PlainFields m_plain;
    bool m_inEvents = false;
    bool m_events = false;
    bool m_faulty = false;
    bool m_any = false;
    std::size_t m_header = 0;
    std::size_t m_done = 0;
};
