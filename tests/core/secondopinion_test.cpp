// What another program reads of generated files: ffmpeg's times and words are ours. As
// many files of each format as QUELMAR_FILES says, a few when it says nothing.
#include "formats/proof.h"
#include "formattesting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

constexpr int FewFiles = 3;

int Files() {
    const char* told = std::getenv("QUELMAR_FILES");
    return told == nullptr ? FewFiles : std::atoi(told);
}

/// Words, times and what else a file may hold, the same for every run.
class Generator {
  public:
    explicit Generator(unsigned seed)
        : m_random(seed) {}

    unsigned Below(unsigned count) { return static_cast<unsigned>(m_random() % count); }
    bool OneIn(unsigned count) { return Below(count) == 0; }

    std::string Line() {
        static constexpr const char* Words[] = {"Hello,",
                                                "you",
                                                "Stra\xC3\x9F"
                                                "e",
                                                "\xD0\x94\xD0\xB0.",
                                                "12",
                                                "it's",
                                                "(laughs)",
                                                "- No!",
                                                "a/b",
                                                "50%",
                                                "\xE2\x99\xAA"};
        std::string line = Words[Below(std::size(Words))];
        for (unsigned left = Below(5); left > 0; --left)
            line += std::string(" ") + Words[Below(std::size(Words))];
        return OneIn(6) ? "<i>" + line + "</i>" : line;
    }
    std::string Text() {
        std::string text = Line();
        for (unsigned left = Below(3); left > 0; --left)
            text += "\r\n" + Line();
        return text;
    }
    /// In the format's units, in order, with gaps that it can tell.
    SUBTITLES Titles(double grain) {
        SUBTITLES titles;
        const auto unit = static_cast<unsigned>(std::lround(1 / grain));
        unsigned at = Below(unit * 100);
        for (unsigned left = 5 + Below(30); left > 0; --left) {
            at += unit / 5 + Below(unit * 200);
            const unsigned end = at + unit / 2 + Below(unit * 5);
            titles.Add(at * grain, end * grain, Text());
            at = end;
        }
        return titles;
    }

  private:
    std::mt19937 m_random;
};

struct Opinion {
    const char* format;
    const char* name;
    const char* options;
    double grain;
    /// The other program reads the ends too.
    bool ends;
};
std::ostream& operator<<(std::ostream& out, const Opinion& opinion) {
    return out << opinion.format;
}

std::string CommandOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return output;
    char piece[4096];
    for (std::size_t size = 0; (size = std::fread(piece, 1, sizeof piece, pipe)) > 0;)
        output.append(piece, size);
    pclose(pipe);
    return output;
}

/// Without what is in angles and braces, and without markup of white space.
std::string Words(const std::string& text) {
    std::string words;
    char close = '\0';
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (close != '\0') {
            close = text[i] == close ? '\0' : close;
        } else if (text[i] == '<' || text[i] == '{') {
            close = text[i] == '<' ? '>' : '}';
        } else {
            words += text[i];
        }
    }
    return WordsOf(*FormatByName("x.srt"), words);
}

std::vector<TestTitle> WithWords(const SUBTITLES& titles, const Format* source) {
    std::vector<TestTitle> kept;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const std::string text = source == nullptr || source->plainText == nullptr
                                     ? titles.Text(i)
                                     : source->plainText(titles.Text(i));
        if (!Words(text).empty())
            kept.push_back({titles.StartTime(i), titles.EndTime(i), Words(text)});
    }
    return kept;
}

/// Beside what the titles say, some of what such files hold.
std::string Decorated(std::string file, const char* format, Generator& random) {
    const auto insert = [&](const std::string& behind, const std::string& piece) {
        for (std::size_t at = file.find(behind); at != std::string::npos;
             at = file.find(behind, at + behind.size() + piece.size()))
            if (random.OneIn(4))
                file.insert(at + behind.size(), piece);
    };
    if (format == std::string("WebVTT")) {
        insert("\r\n\r\n", "an identifier\r\n");
        insert("\r\n\r\n", "NOTE a note\r\nof two lines\r\n\r\n");
        insert("<i>", "<c.yellow>");
    } else if (format == std::string("Advanced SubStation Alpha")) {
        insert(",0,0,0,,", "{\\an8\\c&H0000FF&}");
        insert("\r\n", "; a comment\r\n");
        insert("\\N", "{\\k20}");
    }
    return file;
}

class SecondOpinion : public testing::TestWithParam<Opinion> {};

TEST_P(SecondOpinion, IsTheSame) {
    if (CommandOutput("ffmpeg -version 2>/dev/null").empty())
        GTEST_SKIP() << "there is no ffmpeg";
    const Opinion& opinion = GetParam();
    const Format* format = nullptr;
    for (const Format& row : Formats())
        if (row.name == std::string(opinion.format))
            format = &row;
    ASSERT_NE(format, nullptr);
    for (int i = 0; i < Files(); ++i) {
        Generator random(static_cast<unsigned>(i));
        std::string file;
        WriteFile(*format, random.Titles(opinion.grain), 25, {}, file);
        file = Decorated(file, opinion.format, random);
        const TestFolder folder;
        PutFile(folder / opinion.name, file);
        const Loaded ours = LoadText(opinion.name, file);
        ASSERT_EQ(ours.result.outcome, LoadOutcome::Complete) << file;
        const Loaded theirs = LoadText(
            "x.ass", CommandOutput("ffmpeg -v error " + std::string(opinion.options) + " -i '" +
                                   (folder / opinion.name).string() + "' -f ass - 2>/dev/null"));
        const auto mine = WithWords(ours.titles, format);
        const auto other = WithWords(theirs.titles, FormatByName("x.ass"));
        ASSERT_EQ(mine.size(), other.size()) << file;
        for (std::size_t t = 0; t < mine.size(); ++t) {
            // The other program answers in hundredths.
            const double near = opinion.grain / 2 + 0.0101;
            EXPECT_NEAR(mine[t].start, other[t].start, near) << file;
            if (opinion.ends) {
                EXPECT_NEAR(mine[t].end, other[t].end, near) << file;
            }
            EXPECT_EQ(mine[t].text, other[t].text) << file;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, SecondOpinion,
                         testing::Values(Opinion{"SubRip", "x.srt", "", 0.001, true},
                                         Opinion{"MicroDVD", "x.sub", "-subfps 25", 0.04, true},
                                         Opinion{"SAMI", "x.smi", "", 0.001, true},
                                         Opinion{"WebVTT", "x.vtt", "", 0.001, true},
                                         Opinion{"Advanced SubStation Alpha", "x.ass", "", 0.01,
                                                 true},
                                         Opinion{"SubStation Alpha", "x.ssa", "", 0.01, true},
                                         Opinion{"SubViewer", "x.sub", "", 0.01, true},
                                         Opinion{"MPL2", "x.txt", "", 0.1, true},
                                         Opinion{"LRC", "x.lrc", "", 0.01, false}));

} // namespace
