#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Texts that a reader which goes back, or rebuilds what it has, would be slow with:
/// a head, so much of the body as is asked for, and a tail.
struct WorstText {
    /// A file's; its extension chooses the reader.
    const char* name;
    const char* head;
    /// "" stands for NUL bytes.
    const char* body;
    const char* tail;
    /// How many titles come of it; one for every few bytes when below 0.
    std::int32_t titles;
};

namespace worsttexts {

inline constexpr const char* Block = "1\r\n00:00:01,000 --> 00:00:02,000\r\n";
inline constexpr const char* Body = "<BODY>\r\n";
inline constexpr const char* BodyEnd = "\r\n</body>";
inline constexpr const char* Cue = "WEBVTT\r\n\r\n00:01.000 --> 00:02.000\r\n";
inline constexpr const char* Events = "[Script Info]\r\n[Events]\r\n";
inline constexpr const char* Dialogue = "[Script Info]\r\n[Events]\r\n"
                                        "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,";
inline constexpr const char* Paragraph = "<tt><body><div><p begin=\"1s\" end=\"2s\">";
inline constexpr const char* ParagraphEnd = "</p></div></body></tt>";
inline constexpr const char* Viewer =
    "[INFORMATION]\r\n[END INFORMATION]\r\n00:00:01.00,00:00:02.00\r\n";

} // namespace worsttexts

inline constexpr std::array<WorstText, 75> WorstTexts{{
    {"bars.sub", "{1}{2}", "|", "", 1},
    {"italics.sub", "{1}{2}", "{y:i}", "|", 1},
    {"ends.sub", "{1}{2}", "{y}", "|", 1},
    {"formed.sub", "{1}{2}", "{y{y}:i}", "|", 1},
    {"nested.sub", "{1}{2}", "{{y}y}", "|", 1},
    {"codesandbars.sub", "{1}{2}", "{y:b}|{y}", "", 1},
    {"braces.sub", "{", "{", "", 1},
    {"nul.sub", "{1}{2}", "", "", 1},
    {"digits.sub", "{", "9", "}", 0},
    {"blanks.sub", "{1}{2}", " ", "", 1},
    {"tiny.sub", "", "{1}{2}a\n", "", -1},
    {"italics.srt", worsttexts::Block, "{y:i}", "", 1},
    {"ends.srt", worsttexts::Block, "{y}", "", 1},
    {"onelines.srt", worsttexts::Block, "a\n", "", 1},
    {"returns.srt", worsttexts::Block, "a\r", "", 1},
    {"codes.srt", worsttexts::Block, "{y:b}x{y}\r\n", "", 1},
    {"nul.srt", worsttexts::Block, "", "", 1},
    {"digits.srt", "", "9", "", 0},
    {"zeros.srt", "", "0", "\r\n", 0},
    {"tags.srt", worsttexts::Block, "<i>", "", 1},
    {"tiny.srt", "", "1\n\nabcde\n\n", "", -1},
    {"breaks.smi", worsttexts::Body, "a<br>", worsttexts::BodyEnd, 1},
    {"open.smi", worsttexts::Body, "<", worsttexts::BodyEnd, 0},
    {"tags.smi", worsttexts::Body, "<i>", worsttexts::BodyEnd, 1},
    {"lines.smi", worsttexts::Body, "<\r\n", "</body>", 0},
    {"words.smi", worsttexts::Body, "a\r\n", "</body>", 1},
    {"empty.smi", worsttexts::Body, "\r\n", "a</body>", 1},
    {"nul.smi", worsttexts::Body, "", worsttexts::BodyEnd, 1},
    {"head.smi", "", "<bod\r\n", "", 0},
    {"blanks.smi", worsttexts::Body, "a <br>  ", worsttexts::BodyEnd, 1},
    {"classes.smi", worsttexts::Body, "<P class=a>", worsttexts::BodyEnd, 0},
    {"foot.smi", worsttexts::Body, "</body>\r\n", "", 0},
    {"tiny.smi", worsttexts::Body, "<sync start=1>a\r\n", "", -1},
    {"marks.txt", "", "{", "", 1},
    {"tags.vtt", worsttexts::Cue, "<i>", "", 1},
    {"loose.vtt", worsttexts::Cue, "<", "", 1},
    {"entities.vtt", worsttexts::Cue, "&amp;", "", 1},
    {"ampersands.vtt", worsttexts::Cue, "&", "", 1},
    {"times.vtt", worsttexts::Cue, "<00:01.500>", "", 1},
    {"lines.vtt", worsttexts::Cue, "a\r\n", "", 1},
    {"notes.vtt", "WEBVTT\r\n\r\n", "NOTE\r\n\r\n", "", 0},
    {"names.vtt", "WEBVTT\r\n\r\n", "a\r\n", "", 0},
    {"arrows.vtt", "WEBVTT\r\n\r\n", "-->\r\n", "", 0},
    {"tiny.vtt", "WEBVTT\n\n", "00:01.000 --> 00:02.000\na\n\n", "", -1},
    {"overrides.ass", worsttexts::Dialogue, "{\\i1}", "", 1},
    {"braces.ass", worsttexts::Dialogue, "{", "", 1},
    {"breaks.ass", worsttexts::Dialogue, "\\N", "", 1},
    {"backslashes.ass", worsttexts::Dialogue, "\\", "", 1},
    {"tags.ass", worsttexts::Dialogue, "<i>", "", 1},
    {"comments.ass", worsttexts::Events, "Comment: x\r\n", "", 0},
    {"formats.ass", worsttexts::Events, "Format: Start,Text\r\n", "", 0},
    {"sections.ass", "[Script Info]\r\n", "[a]\r\n", "", 0},
    {"commas.ass", "[Script Info]\r\n[Events]\r\nFormat: ", "a,", "", 0},
    {"tiny.ass", "[Script Info]\n[Events]\nFormat: Start,End,Text\n",
     "Dialogue: 0:00:01.00,0:00:02.00,a\n", "", -1},
    {"breaks.ttml", worsttexts::Paragraph, "<br/>", worsttexts::ParagraphEnd, 1},
    {"spans.ttml", worsttexts::Paragraph, "<span>a</span>", worsttexts::ParagraphEnd, 1},
    {"entities.ttml", worsttexts::Paragraph, "&amp;", worsttexts::ParagraphEnd, 1},
    {"open.ttml", worsttexts::Paragraph, "<span>", worsttexts::ParagraphEnd, 0},
    {"divs.ttml", "<tt><body>", "<div>", "", 0},
    {"comments.ttml", worsttexts::Paragraph, "<!-- a -->", worsttexts::ParagraphEnd, 1},
    {"tiny.ttml", "<tt><body><div>", "<p begin=\"1s\" end=\"2s\">a</p>", "</div></body></tt>", -1},
    {"lines.sbv", "0:00:01.000,0:00:02.000\r\n", "a\r\n", "", 1},
    {"tiny.sbv", "", "0:00:01.000,0:00:02.000\na\n\n", "", -1},
    {"breaks.sub", worsttexts::Viewer, "[br]", "", 1},
    {"bars.txt", "[10][20]", "|", "", 1},
    {"slashes.txt", "[10][20]", "/", "", 1},
    {"tiny.txt", "", "[1][2]a\n", "", -1},
    {"words.lrc", "[00:01.00]", "<00:01.50>", "", 1},
    {"turns.lrc", "", "[00:01.00]", "a", 64},
    {"head.lrc", "", "[ti:x]\r\n", "", 0},
    {"tiny.lrc", "", "[00:01.00]a\n", "", -1},
    // What the tolerant reading is then tried on.
    {"gaps.srt", "", "1\n00:00:01,000 --> 00:00:02,000\na\n\n\n", "", 1},
    {"wild.srt", "", "1\n0:0:1 -> 0:0:2\na\n\n", "", -1},
    {"entities.smi", worsttexts::Body, "<sync start=1>a&nbsp;", worsttexts::BodyEnd, -1},
    {"languages.smi", worsttexts::Body, "<sync start=1><p class=a>x<p class=b>y",
     worsttexts::BodyEnd, -1},
}};

/// What is worst for the writers, as the text of one title.
inline constexpr std::array<const char*, 6> WorstToWrite{"<i>",  "<",   "<b<i>>",
                                                         "\r\n", "{y}", "</i"};

/// At least so many bytes of the body.
inline std::string Repeated(const char* body, std::size_t size) {
    const std::string_view piece = *body == '\0' ? std::string_view("\0", 1) : body;
    std::string text;
    text.reserve(size + piece.size());
    while (text.size() < size)
        text += piece;
    return text;
}

inline std::string TextOf(const WorstText& worst, std::size_t size) {
    return worst.head + Repeated(worst.body, size) + worst.tail;
}
