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

} // namespace worsttexts

inline constexpr std::array<WorstText, 34> WorstTexts{{
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
