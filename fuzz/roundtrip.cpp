#include "fuzz/fuzzing.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <vector>

namespace {

/// Takes the input apart, byte by byte; zeros when it is used up.
class Source {
  public:
    Source(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_left(size) {}

    bool Empty() const { return m_left == 0; }
    unsigned Byte() {
        if (m_left == 0)
            return 0;
        --m_left;
        return *m_data++;
    }
    unsigned Word() { return Byte() << 8 | Byte(); }
    double Double() {
        std::uint64_t bits = 0;
        for (int i = 0; i < 8; ++i)
            bits = bits << 8 | Byte();
        return std::bit_cast<double>(bits);
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};

/// Lines that every format carries: not empty, no blanks at their ends, no tags,
/// no style codes, no bars. What looks like other parts of a file is welcome.
std::string CarriedLine(Source& source) {
    static constexpr std::array<const char*, 16> Words{
        "a",      "Hello,",       "\xC3\xA9", "\xF0\x9F\x98\x80", "{b}", "}",   "7",
        "&nbsp;", "00:00:01,000", "-->",      "{1}{2}",           "i>",  "\tx", "=",
        "\x7F",   "\xE2\x80\xA8x"};
    std::string line;
    for (unsigned left = source.Byte() % 4 + 1; left > 0; --left) {
        if (!line.empty())
            line += ' ';
        line += Words[source.Byte() % Words.size()];
    }
    return line;
}

std::string CarriedText(Source& source) {
    std::string text = CarriedLine(source);
    for (unsigned left = source.Byte() % 3; left > 0; --left)
        text += "\r\n" + CarriedLine(source);
    return text;
}

/// Times are counted in the format's own unit, in order and without overlaps; the
/// doubles are those that its reader makes of them.
using TimeOfUnit = double (*)(unsigned count);

double Counted(unsigned count, unsigned perSecond) {
    const unsigned seconds = count / perSecond;
    return seconds + (count % perSecond) / static_cast<double>(perSecond);
}
double InThousandths(unsigned count) {
    return Counted(count, 1000);
}
double InHundredths(unsigned count) {
    return Counted(count, 100);
}

struct Carrier {
    const char* format;
    TimeOfUnit time;
};

constexpr std::array<Carrier, 11> Carriers{{{"SubRip", InThousandths},
                                            {"MicroDVD",
                                             [](unsigned count) {
                                                 return count / 25.0;
                                             }},
                                            {"SAMI",
                                             [](unsigned count) {
                                                 return count / 1000.0;
                                             }},
                                            {"WebVTT", InThousandths},
                                            {"Advanced SubStation Alpha", InHundredths},
                                            {"SubStation Alpha", InHundredths},
                                            {"SBV", InThousandths},
                                            {"SubViewer", InHundredths},
                                            {"MPL2",
                                             [](unsigned count) {
                                                 return count / 10.0;
                                             }},
                                            {"LRC", InHundredths},
                                            {"Timed Text", InThousandths}}};

SUBTITLES CarriedTitles(Source source, TimeOfUnit time) {
    SUBTITLES titles;
    unsigned at = source.Word();
    while (!source.Empty() && titles.Count() < 200) {
        const unsigned start = at + source.Word() * (source.Byte() % 2);
        const unsigned end = start + source.Word() + 1;
        titles.Add(time(start), time(end), CarriedText(source));
        at = end;
    }
    return titles;
}

void TryCarrier(const Carrier& carrier, const SUBTITLES& titles) {
    const auto format = std::find_if(Formats().begin(), Formats().end(), [&](const Format& row) {
        return std::strcmp(row.name, carrier.format) == 0;
    });
    std::string file;
    format->write(titles, 25, {}, file);
    SUBTITLES again;
    FileStyle style;
    Require(format->read(file, 25, again, style, {}) == ReadOutcome::Complete,
            "what was written is no corrupt file");
    Require(again.Count() == titles.Count(), "as many titles as before");
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        Require(again.StartTime(i) == titles.StartTime(i), "the same starts");
        Require(again.EndTime(i) == titles.EndTime(i), "the same ends");
        const std::string& text = titles.Text(i);
        Require(again.Text(i) ==
                    (format->adoptedText == nullptr ? text : format->adoptedText(text)),
                "the same texts");
    }
}

/// Anything at all: nothing need come back, but nothing may break.
SUBTITLES WildTitles(Source source) {
    SUBTITLES titles;
    while (!source.Empty() && titles.Count() < 200) {
        const double start = source.Double();
        const double end = source.Double();
        std::string text;
        for (unsigned left = source.Byte(); left > 0 && !source.Empty(); --left)
            text += static_cast<char>(source.Byte());
        titles.Add(start, end, text);
    }
    return titles;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Require(Carriers.size() == Formats().size(), "every format carries titles");
    for (const Carrier& carrier : Carriers)
        TryCarrier(carrier, CarriedTitles(Source(data, size), carrier.time));
    TryWriters(WildTitles(Source(data, size)), {});
    return 0;
}
