#include "base/ascii.h"
#include "base/utf8.h"
#include "formats/copybut.h"
#include "formats/entities.h"
#include "formats/webvtt.h"
#include "formats/writing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace {

constexpr std::array<std::string_view, 8> TagNames{"i", "b", "u", "c", "v", "lang", "ruby", "rt"};

/// "&#233;" or "&#xE9;": its length, 0 when the text does not begin with one.
std::size_t TakeNumber(std::string_view text, std::string& out) {
    constexpr std::size_t Longest = 10;
    if (!text.starts_with("&#"))
        return 0;
    const std::size_t end = text.substr(0, Longest).find(';');
    if (end == std::string_view::npos)
        return 0;
    const bool hex = text[2] == 'x' || text[2] == 'X';
    const char* first = text.data() + (hex ? 3 : 2);
    std::uint32_t value = 0;
    const auto [last, error] = std::from_chars(first, text.data() + end, value, hex ? 16 : 10);
    const bool character = value > 0 && value < 0x110000 && (value < 0xD800 || value > 0xDFFF);
    if (error != std::errc() || last != text.data() + end || !character)
        return 0;
    AppendUtf8(out, value);
    return end + 1;
}

/// A cue's entity ends with ";"; without one it is text.
std::size_t TakeEntity(std::string_view text, std::string& out) {
    if (text.starts_with("&#"))
        return TakeNumber(text, out);
    std::size_t end = 0;
    const std::optional<char32_t> character = ReadEntity(text, end);
    if (!character || text[end - 1] != ';')
        return 0;
    AppendUtf8(out, *character);
    return end;
}

constexpr CharacterSet OfCues("&\r\n");
constexpr CharacterSet OfCuesAndTags("&<\r\n");
constexpr CharacterSet OfTexts("&<>\r\n");
constexpr CharacterSet Braces("<");

struct Tag {
    /// With its braces; empty: there is none.
    std::string_view all;
    /// "i" of "</i>" and of "<i.loud>"; empty for a time.
    std::string_view name;
    bool closes = false;
};

/// The tag that the text begins with.
Tag TagAt(std::string_view text) {
    const std::size_t end = text.find_first_of("<>\r\n", 1);
    if (end == std::string_view::npos || text[end] != '>')
        return {};
    const std::string_view inner = text.substr(1, end - 1);
    if (!inner.empty() && IsAsciiDigit(inner.front()))
        return {ParseClock(inner) ? text.substr(0, end + 1) : std::string_view(), {}};
    const bool closes = inner.starts_with('/');
    const std::string_view named = inner.substr(closes ? 1 : 0);
    const std::string_view name = named.substr(0, named.find_first_of(". \t"));
    for (const std::string_view known : TagNames) {
        if (name == known)
            return {text.substr(0, end + 1), name, closes};
    }
    return {};
}

std::size_t LineEndAt(std::string_view text) {
    return text.starts_with(LineEnd) ? 2 : text.starts_with('\r') || text.starts_with('\n') ? 1 : 0;
}

} // namespace

std::string WebVttToText(std::string_view cue) {
    std::string text;
    text.reserve(cue.size() + 4);
    CopyBut(cue, OfCues, text, [&](std::string_view rest) {
        if (rest.front() == '&')
            return TakeEntity(rest, text);
        text += LineEnd;
        return LineEndAt(rest);
    });
    return text;
}

void TextToWebVtt(std::string_view text, std::string_view lineEnd, std::string& out) {
    const std::size_t begin = out.size();
    CopyBut(text, OfTexts, out, [&](std::string_view rest) -> std::size_t {
        switch (rest.front()) {
        case '&':
            out += "&amp;";
            return 1;
        case '<':
            out += TagAt(rest).all.empty() ? "&lt;" : "<";
            return 1;
        case '>':
            out += std::string_view(out).substr(begin).ends_with("--") ? "&gt;" : ">";
            return 1;
        default:
            break;
        }
        // Line ends at both ends go, a line that is empty gets a blank.
        std::size_t taken = LineEndAt(rest);
        std::size_t lines = 1;
        for (std::size_t more = LineEndAt(rest.substr(taken)); more > 0;
             more = LineEndAt(rest.substr(taken))) {
            taken += more;
            ++lines;
        }
        if (out.size() == begin || taken == rest.size())
            return taken;
        for (; lines > 1; --lines)
            out.append(lineEnd).append(" ");
        out += lineEnd;
        return taken;
    });
}

std::string WebVttPlainText(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    CopyBut(text, Braces, plain, [&](std::string_view rest) {
        const Tag tag = TagAt(rest);
        if (tag.name == "i" || tag.name == "b")
            plain.append(tag.closes ? "</" : "<").append(tag.name).append(">");
        return tag.all.size();
    });
    return plain;
}

CueLook LookAtCue(std::string_view cue, std::string_view lineEnd) {
    CueLook look;
    for (std::size_t at = OfCuesAndTags.Find(cue, 0); at < cue.size();
         at = OfCuesAndTags.Find(cue, at)) {
        const std::string_view rest = cue.substr(at);
        if (rest.front() == '&') {
            look.differsFromText = true;
            look.comesBack = false;
            ++at;
        } else if (rest.front() == '<') {
            const Tag tag = TagAt(rest);
            look.innerTimes = look.innerTimes || (!tag.all.empty() && tag.name.empty());
            look.comesBack = look.comesBack && !tag.all.empty();
            ++at;
        } else {
            const std::size_t length = LineEndAt(rest);
            look.differsFromText = look.differsFromText || length != LineEnd.size();
            look.comesBack = look.comesBack && rest.substr(0, length) == lineEnd;
            at += length;
        }
    }
    return look;
}

bool HasInnerTimes(std::string_view cue) {
    return LookAtCue(cue, {}).innerTimes;
}

std::string MovedInnerTimes(std::string_view cue, double oldStart, double oldEnd, double start,
                            double end) {
    constexpr double SameLength = 0.0005;
    const bool shifted =
        std::abs((end - start) - (oldEnd - oldStart)) < SameLength || oldEnd <= oldStart;
    const double factor = shifted ? 1 : (end - start) / (oldEnd - oldStart);
    std::string moved;
    moved.reserve(cue.size() + 8);
    CopyBut(cue, Braces, moved, [&](std::string_view rest) -> std::size_t {
        const Tag tag = TagAt(rest);
        if (tag.all.empty() || !tag.name.empty())
            return 0;
        const std::optional<ClockTime> time = ParseClock(tag.all.substr(1, tag.all.size() - 2));
        const double to = start + (time->seconds - oldStart) * factor;
        moved += '<';
        if (SameClock(to, time->seconds, time->form))
            moved += tag.all.substr(1, tag.all.size() - 2);
        else
            AppendClock(moved, std::max(to, 0.0), time->form);
        moved += '>';
        return tag.all.size();
    });
    return moved;
}
