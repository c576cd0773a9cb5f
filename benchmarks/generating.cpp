#include "benchmarks/generating.h"

#include "model/times.h"

#include <array>
#include <random>

namespace {

constexpr std::uint32_t Seed = 20040229;

constexpr std::array<const char*, 40> Words{
    "I",     "you",   "the",    "and",    "what",   "never",  "would",   "have",  "see",  "when",
    "there", "going", "listen", "window", "people", "before", "tonight", "is",    "it",   "a",
    "to",    "of",    "no",     "yes",    "come",   "here",   "from",    "that",  "this", "him",
    "her",   "asked", "waited", "little", "water",  "about",  "thought", "don't", "well", "left"};

class Generator {
  public:
    std::string Text() {
        constexpr unsigned ItalicOneIn = 9;
        std::string text = Line();
        // Most titles have one line or two.
        for (unsigned left = Below(8) / 3; left > 0; --left)
            text += "\r\n" + Line();
        return Below(ItalicOneIn) == 0 ? "<i>" + text + "</i>" : text;
    }

    /// 0 to count - 1; the same everywhere, unlike the library's distributions.
    unsigned Below(unsigned count) { return static_cast<unsigned>(m_random() % count); }

  private:
    std::string Line() {
        const std::size_t length = 20 + Below(20);
        std::string line = Words[Below(Words.size())];
        while (line.size() < length) {
            line += ' ';
            line += Words[Below(Words.size())];
        }
        return line + ".?!,"[Below(4)];
    }

    std::mt19937 m_random{Seed};
};

} // namespace

SUBTITLES GeneratedTitles(std::int32_t count) {
    // So long a film that a million titles stay below 100 hours.
    constexpr unsigned LongestGap = 60;
    constexpr unsigned ShortestTitle = 150;
    Generator generator;
    SUBTITLES titles;
    titles.Reserve(count);
    unsigned at = 1000;
    for (std::int32_t i = 0; i < count; ++i) {
        at += generator.Below(LongestGap);
        const unsigned end = at + ShortestTitle + generator.Below(LongestGap);
        titles.Add(at / 1000.0, end / 1000.0, generator.Text());
        at = end;
    }
    return titles;
}

std::string SubRipWithTags(const SUBTITLES& titles) {
    std::string out;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        out += std::to_string(i) + "\r\n";
        AppendTime(out, titles.StartTime(i));
        out += " --> ";
        AppendTime(out, titles.EndTime(i));
        out += "\r\n" + titles.Text(i) + "\r\n\r\n";
    }
    return out;
}
