// quelmar_fit_benchmark VOICES CACHE [--train] [--films N] [--minutes M] [--only KIND] [--list]:
// makes films of the voices (see benchmarks/fit/voices), fits files of known right times to them
// and prints how many came out right. The curves of speech are kept in CACHE.
#include "benchmarks/fit/cases.h"
#include "benchmarks/fit/detector.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>

namespace {

struct Made {
    MadeFilm film;
    SpeechCurve curve;
};

struct Row {
    int files = 0;
    int answered = 0;
    int kept = 0;
    int rateRight = 0;
    int good = 0;
    int wrong = 0;
    std::vector<double> errors;
    int lost = 0;
    int lostFound = 0;
    int lostSaid = 0;
    double seconds = 0;
};

SpeechCurve ReadCurve(const std::filesystem::path& file) {
    SpeechCurve curve;
    curve.values.resize(std::filesystem::file_size(file) / sizeof(float));
    std::ifstream(file, std::ios::binary)
        .read(reinterpret_cast<char*>(curve.values.data()),
              static_cast<std::streamsize>(curve.values.size() * sizeof(float)));
    return curve;
}

SpeechCurve KeptCurve(const Samples& sound, const std::filesystem::path& file) {
    SpeechCurve curve;
    curve.values = DetectSpeech(sound);
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(curve.values.data()),
               static_cast<std::streamsize>(curve.values.size() * sizeof(float)));
    return curve;
}

double Percentile(std::vector<double> values, double share) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

constexpr double Nowhere = std::numeric_limits<double>::quiet_NaN();

/// Where the titles belong and where they were put, as offsets, one line for each run of titles
/// that share both.
void PrintRuns(const Case& file, const Fit& fit) {
    const auto put = [&](std::size_t i) {
        const std::int32_t piece = fit.titles[i].piece;
        return piece < 0 ? Nowhere : fit.pieces[static_cast<std::size_t>(piece)].offset;
    };
    const auto right = [&](std::size_t i) {
        return file.right[i] ? *file.right[i] - file.titles[i].start * file.rate : Nowhere;
    };
    const auto same = [](double a, double b) {
        return std::isnan(a) ? std::isnan(b) : std::abs(a - b) < 1;
    };
    for (std::size_t first = 0; first < file.right.size();) {
        std::size_t next = first + 1;
        double sure = fit.titles[first].confidence;
        for (; next < file.right.size() && same(put(next), put(first)) &&
               same(right(next), right(first));
             ++next)
            sure += fit.titles[next].confidence;
        std::printf("    %4zu titles from %6.1f: belong at %8.2f, put at %8.2f, sure %.2f%s\n",
                    next - first, file.titles[first].start, right(first), put(first),
                    sure / static_cast<double>(next - first),
                    same(put(first), right(first)) ? "" : "  <<<");
        first = next;
    }
}

void Try(const Case& file, const FitReference& reference, const std::string& film, Row& row,
         bool list) {
    const auto begin = std::chrono::steady_clock::now();
    const Fit fit = FindFit(file.titles, reference);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    row.seconds += took.count();
    ++row.files;
    const std::vector<FitTimes> times = ApplyFit(file.titles, fit);
    std::vector<double> errors;
    int off = 0;
    int lost = 0;
    int lostFound = 0;
    for (std::size_t i = 0; i < file.right.size(); ++i) {
        const bool dropped = fit.titles[i].piece == FittedTitle::NoPiece;
        if (!file.right[i]) {
            ++lost;
            lostFound += dropped ? 1 : 0;
            continue;
        }
        const double error = std::abs(times[i].start - *file.right[i]);
        errors.push_back(error);
        off += error > 0.25 ? 1 : 0;
    }
    const bool answered = fit.verdict != FitVerdict::Unsure;
    const double offShare = errors.empty() ? 0 : off / static_cast<double>(errors.size());
    const bool bad = file.otherFilm || offShare > 0.05;
    if (answered) {
        ++row.answered;
        row.kept += fit.verdict == FitVerdict::Right ? 1 : 0;
        row.rateRight +=
            !fit.pieces.empty() && std::abs(fit.pieces[0].rate - file.rate) < 1e-6 ? 1 : 0;
        row.wrong += bad ? 1 : 0;
        row.errors.insert(row.errors.end(), errors.begin(), errors.end());
        row.lost += lost;
        row.lostFound += lostFound;
        row.lostSaid += static_cast<int>(fit.withoutPlace.size());
    }
    row.good += answered != bad ? 1 : 0;
    if (list && answered && bad && !file.otherFilm)
        PrintRuns(file, fit);
    if (list)
        std::printf(
            "%-22s %-24s %s%s sure %.3f  off %5.1f%%  pieces %zu  rate %.4f (%.4f)  lost %d "
            "found %d said %zu  %.1f s\n",
            film.c_str(), file.kind.c_str(),
            fit.verdict == FitVerdict::Unsure   ? "unsure"
            : fit.verdict == FitVerdict::Fitted ? "fitted"
                                                : "right ",
            answered && bad ? " WRONG" : (answered ? "" : (bad ? "" : " (would be right)")),
            fit.confidence, 100 * offShare, fit.pieces.size(),
            fit.pieces.empty() ? 0 : fit.pieces[0].rate, file.rate, lost, lostFound,
            fit.withoutPlace.size(), took.count());
}

void Print(const std::map<std::string, Row>& rows) {
    std::printf("\n%-26s %5s %8s %5s %5s %7s %7s %7s %7s %7s %6s\n", "case", "files", "answered",
                "kept", "rate", "wrong", "median", "95 %", "in .25", "lost", "s");
    for (const auto& [kind, row] : rows) {
        const auto within = std::count_if(row.errors.begin(), row.errors.end(),
                                          [](double error) { return error <= 0.25; });
        std::printf("%-26s %5d %8d %5d %5d %7d %7.3f %7.3f %6.1f%% %3d/%3d/%3d %5.1f\n",
                    kind.c_str(), row.files, row.answered, row.kept, row.rateRight, row.wrong,
                    Percentile(row.errors, 0.5), Percentile(row.errors, 0.95),
                    row.errors.empty() ? 0.0
                                       : 100.0 * static_cast<double>(within) /
                                             static_cast<double>(row.errors.size()),
                    row.lostFound, row.lost, row.lostSaid, row.seconds / std::max(row.files, 1));
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::puts("quelmar_fit_benchmark VOICES CACHE [--train] [--films N] [--minutes M] [--only "
                  "KIND] [--list]");
        return 2;
    }
    bool train = false;
    bool list = false;
    std::string only;
    int films = 6;
    double minutes = 25;
    for (int i = 3; i < argc; ++i) {
        const auto is = [&](const char* name) {
            return std::strcmp(argv[i], name) == 0;
        };
        if (is("--train"))
            train = true;
        else if (is("--list"))
            list = true;
        else if (is("--films") && i + 1 < argc)
            films = std::atoi(argv[++i]);
        else if (is("--minutes") && i + 1 < argc)
            minutes = std::atof(argv[++i]);
        else if (is("--only") && i + 1 < argc)
            only = argv[++i];
    }
    const std::string prefix = train ? "train-" : "judge-";
    const std::vector<Voice> voices = ReadVoices(argv[1], prefix);
    if (voices.empty()) {
        std::puts("no voices there");
        return 1;
    }
    std::filesystem::create_directories(argv[2]);
    std::vector<Made> made;
    for (int i = 0; i < films; ++i) {
        const auto seed = static_cast<std::uint64_t>(i) + (train ? 100 : 500);
        Dice dice(seed * 7919);
        const Mix mix{dice.Between(-20, 0), dice.Between(-30, -10), dice.Between(-30, -12)};
        const double length = 60 * minutes * dice.Between(0.8, 1.2);
        char name[200];
        std::snprintf(name, sizeof name, "%s%d-%.0f-%s.curve", prefix.c_str(), i, minutes,
                      DetectorName);
        const std::filesystem::path cached = std::filesystem::path(argv[2]) / name;
        const bool known = std::filesystem::exists(cached);
        Made one{Shoot(seed, voices, length, mix, !known), {}};
        one.curve = known ? ReadCurve(cached) : KeptCurve(one.film.sound, cached);
        one.film.sound = {};
        char title[200];
        std::snprintf(title, sizeof title, "%d %s (%.0f %.0f %.0f)", i, one.film.name.c_str(),
                      mix.music, mix.noise, mix.murmur);
        one.film.name = title;
        made.push_back(std::move(one));
    }
    std::map<std::string, Row> rows;
    for (std::size_t i = 0; i < made.size(); ++i) {
        const Made& one = made[i];
        const MadeFilm& stranger = made[(i + 1) % made.size()].film;
        for (const Case& file : CasesFor(one.film, one.film.titles, stranger, i + 1)) {
            if (only.empty() || file.kind.find(only) != std::string::npos)
                Try(file, one.curve, one.film.name, rows[file.kind], list);
        }
        if (!only.empty())
            continue;
        for (const Case& file : ReducedCasesFor(one.film, i + 50))
            Try(file, one.curve, one.film.name, rows[file.kind], list);
        std::fflush(stdout);
    }
    Print(rows);
    if (!only.empty())
        return 0;
    std::map<std::string, Row> byTitles;
    for (std::size_t i = 0; i < made.size(); ++i) {
        const Made& one = made[i];
        const MadeFilm& stranger = made[(i + 1) % made.size()].film;
        for (const Case& file : CasesFor(one.film, one.film.otherLanguage, stranger, i + 1))
            Try(file, RightTitles(one.film.titles), one.film.name, byTitles[file.kind], list);
        std::fflush(stdout);
    }
    std::puts("\nAgainst right titles:");
    Print(byTitles);
}
