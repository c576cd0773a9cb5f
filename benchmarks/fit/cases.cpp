#include "benchmarks/fit/cases.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

Case RightFile(const std::string& kind, const std::vector<FitTitle>& titles) {
    Case file{kind, titles, {}, 1, false};
    for (const FitTitle& title : titles)
        file.right.emplace_back(title.start);
    return file;
}

/// Moves the titles away, so that new = old x rate + offset brings them back.
Case Moved(Case file, double offset, double rate) {
    for (FitTitle& title : file.titles) {
        title.start = (title.start - offset) / rate;
        title.end = (title.end - offset) / rate;
    }
    file.rate *= rate;
    return file;
}

double Rate(Dice& dice) {
    constexpr std::array<double, 5> Film{24000.0 / 1001, 24, 25, 30000.0 / 1001, 30};
    for (;;) {
        const double made = Film[dice.Index(Film.size())];
        const double played = Film[dice.Index(Film.size())];
        if (std::abs(made / played - 1) > 1e-6)
            return made / played;
    }
}

double Offset(Dice& dice) {
    const double offset = dice.Chance(0.5) ? dice.Between(0.5, 20) : dice.Between(20, 290);
    return dice.Chance(0.5) ? offset : -offset;
}

/// The film has a piece [from, from + length) that the titles were not made with.
void Add(Case& file, double from, double length) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < file.titles.size(); ++i) {
        FitTitle title = file.titles[i];
        if (title.start >= from && title.start < from + length)
            continue;
        if (title.start >= from) {
            title.start -= length;
            title.end -= length;
        }
        file.right[kept] = file.right[i];
        file.titles[kept++] = title;
    }
    file.titles.resize(kept);
    file.right.resize(kept);
}

/// The titles were made with a piece at `from` that the film lacks.
void Cut(Case& file, double from, double length, const std::vector<FitTitle>& strangers) {
    Case wider{file.kind, {}, {}, file.rate, file.otherFilm};
    bool done = false;
    const auto insert = [&] {
        for (FitTitle title : strangers) {
            if (title.start < 100 || title.end > 100 + length)
                continue;
            title.start += from - 100;
            title.end += from - 100;
            wider.titles.push_back(title);
            wider.right.emplace_back();
        }
        done = true;
    };
    for (std::size_t i = 0; i < file.titles.size(); ++i) {
        FitTitle title = file.titles[i];
        if (title.start >= from) {
            if (!done)
                insert();
            title.start += length;
            title.end += length;
        }
        wider.titles.push_back(title);
        wider.right.push_back(file.right[i]);
    }
    file = std::move(wider);
}

double LastEnd(const Case& file) {
    return file.titles.empty() ? 0 : file.titles.back().end;
}

/// The middle of the longest pause around the moment: films are cut between scenes.
double SceneChange(const std::vector<FitTitle>& titles, double moment) {
    constexpr double Around = 20;
    double longest = 0;
    double middle = moment;
    for (std::size_t i = 1; i < titles.size(); ++i) {
        const double pause = titles[i].start - titles[i - 1].end;
        const double at = titles[i - 1].end + pause / 2;
        if (std::abs(at - moment) < Around && pause > longest) {
            longest = pause;
            middle = at;
        }
    }
    return middle;
}

enum class Change { Added, CutOut, Both };

Case Edited(Case file, Change change, std::size_t count, double least, double most,
            const std::vector<FitTitle>& strangers, Dice& dice) {
    for (std::size_t i = 0; i < count; ++i) {
        const double length = dice.Between(least, most);
        // Spread over the film, one in each part.
        const double part = LastEnd(file) / static_cast<double>(count + 1);
        const double from =
            SceneChange(file.titles, part * (static_cast<double>(i) + dice.Between(0.6, 1.4)));
        const bool added = change == Change::Added || (change == Change::Both && dice.Chance(0.5));
        if (added)
            Add(file, from, length);
        else
            Cut(file, from, length, strangers);
    }
    return file;
}

} // namespace

std::vector<Case> CasesFor(const MadeFilm& film, const std::vector<FitTitle>& titles,
                           const MadeFilm& stranger, std::uint64_t seed) {
    Dice dice(seed);
    const auto file = [&](const char* kind) {
        return RightFile(kind, titles);
    };
    std::vector<Case> cases;
    cases.push_back(file("right"));
    for (int i = 0; i < 2; ++i)
        cases.push_back(Moved(file("shift"), Offset(dice), 1));
    cases.push_back(Moved(file("shift"), dice.Between(0.25, 1), 1));
    cases.push_back(Moved(file("rate"), 0, Rate(dice)));
    for (int i = 0; i < 2; ++i)
        cases.push_back(Moved(file("both"), Offset(dice), Rate(dice)));
    const auto& strange = stranger.titles;
    const double longest = std::min(90.0, film.length / 12);
    for (std::size_t count = 1; count <= 3; ++count)
        cases.push_back(
            Edited(file("cuts: added"), Change::Added, count, 5, longest, strange, dice));
    for (std::size_t count = 1; count <= 3; ++count)
        cases.push_back(
            Edited(file("cuts: taken out"), Change::CutOut, count, 5, longest, strange, dice));
    cases.push_back(Edited(file("cuts: both ways"), Change::Both, 4, 5, longest, strange, dice));
    cases.push_back(
        Moved(Edited(file("cuts: and shift"), Change::Both, 2, 5, longest, strange, dice),
              dice.Between(-30, 30), 1));
    cases.push_back(Moved(
        Edited(file("cuts: and rate"), Change::Both, 2, 5, longest, strange, dice), 0, Rate(dice)));
    cases.push_back(Edited(file("cuts: long breaks"), Change::Added, 4, film.length / 18,
                           film.length / 14, strange, dice));
    Case other = RightFile("another film", stranger.titles);
    other.otherFilm = true;
    cases.push_back(other);
    cases.push_back(Moved(other, Offset(dice), Rate(dice)));
    return cases;
}

std::vector<Case> ReducedCasesFor(const MadeFilm& film, std::uint64_t seed) {
    Dice dice(seed);
    std::vector<Case> files;

    Case deaf = RightFile("for the deaf", {});
    for (const FitTitle& title : film.titles) {
        if (dice.Chance(0.15)) {
            const double start = title.start - dice.Between(0.5, 2.5);
            deaf.titles.push_back({start, start + dice.Between(1, 3), "[music playing]"});
            deaf.right.emplace_back(start);
        }
        FitTitle named = title;
        if (dice.Chance(0.3))
            named.text = "JOHN: " + named.text;
        deaf.titles.push_back(named);
        deaf.right.emplace_back(title.start);
    }
    files.push_back(deaf);

    Case half = RightFile("half missing", {});
    for (const FitTitle& title : film.titles) {
        if (dice.Chance(0.5))
            continue;
        half.titles.push_back(title);
        half.right.emplace_back(title.start);
    }
    files.push_back(half);

    Case late = RightFile("beginning missing", {});
    for (const FitTitle& title : film.titles) {
        if (title.start < std::min(600.0, film.length / 3))
            continue;
        late.titles.push_back(title);
        late.right.emplace_back(title.start);
    }
    files.push_back(late);
    files.push_back(RightFile("other language", film.otherLanguage));

    std::vector<Case> cases;
    for (const Case& file : files) {
        cases.push_back(file);
        cases.push_back(Moved(file, Offset(dice), 1));
        cases.push_back(Moved(file, Offset(dice), Rate(dice)));
        cases.back().kind = cases[cases.size() - 2].kind = file.kind + ", moved";
    }
    return cases;
}
