// Whether the time of reading and writing grows with the size and no faster: the texts
// that are worst for each reader and writer, from 1 MB, doubled up to 64 MB.
// `quelmar_growth_benchmark [LARGEST]` prints milliseconds of processor time, the best of
// some runs, and the exponent; it ends with 1 when one is above 1.1.

#include "base/wholefile.h"
#include "benchmarks/growing.h"
#include "benchmarks/memory.h"
#include "formats/load.h"
#include "tests/core/worsttexts.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr std::size_t Megabyte = 1'000'000;
constexpr int Runs = 3;
/// Milliseconds for a megabyte. What is quicker waits for memory, which is at hand for
/// one megabyte and fresh from the system for many: that is not the reader's growth.
constexpr double SpeedOfMemory = 3;

double Milliseconds(const std::function<void()>& act) {
    double best = 0;
    for (int run = 0; run < Runs; ++run) {
        const std::clock_t start = std::clock();
        act();
        const double spent = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        best = run == 0 ? spent : std::min(best, spent);
    }
    return best;
}

class Report {
  public:
    explicit Report(std::size_t largest) {
        std::printf("| milliseconds for |");
        for (std::size_t size = 1; size <= largest; size *= 2) {
            m_sizes.push_back(size);
            std::printf(" %zu MB |", size);
        }
        std::printf(" exponent |\n|---|%s---|\n", Columns().c_str());
    }

    void Row(const std::string& what, const std::function<double(std::size_t)>& measured) {
        std::printf("| %s |", what.c_str());
        std::vector<double> times;
        for (const std::size_t size : m_sizes) {
            times.push_back(measured(size * Megabyte));
            std::printf(" %.1f |", times.back());
            std::fflush(stdout);
        }
        const auto most = static_cast<double>(m_sizes.back());
        const double exponent = m_sizes.size() < 2
                                    ? 1
                                    : GrowthExponent(std::max(times.back(), most * SpeedOfMemory) /
                                                         std::max(times.front(), SpeedOfMemory),
                                                     most);
        const bool good = exponent <= MostGrowth;
        std::printf(" %.2f%s |\n", exponent, good ? "" : " MISSED");
        m_good = m_good && good;
    }

    bool Good() const { return m_good; }

  private:
    std::string Columns() const {
        std::string columns;
        for (std::size_t i = 0; i < m_sizes.size(); ++i)
            columns += "---|";
        return columns;
    }

    std::vector<std::size_t> m_sizes;
    bool m_good = true;
};

double Reading(const WorstText& worst, std::size_t size, const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / worst.name;
    WriteWholeFile(file, TextOf(worst, size), false);
    SUBTITLES titles;
    FileStyle style;
    const double time = Milliseconds([&] {
        titles.Clear();
        LoadTitles(file, "windows-1252", titles, style, {});
    });
    std::filesystem::remove(file);
    return time;
}

double Writing(const Format& format, const char* body, std::size_t size) {
    SUBTITLES titles;
    titles.Add(1, 2, Repeated(body, size));
    return Milliseconds([&] {
        std::string out;
        format.write(titles, 25, {}, out);
    });
}

std::string Shown(std::string text) {
    std::size_t at = 0;
    while ((at = text.find("\r\n")) != std::string::npos)
        text.replace(at, 2, "CR LF");
    return text;
}

} // namespace

int main(int argc, char** argv) {
    const long largest = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 64;
    if (largest < 1)
        return 2;
    const auto folder = std::filesystem::temp_directory_path() / "quelmar-growth";
    std::filesystem::create_directories(folder);
    TouchMemory();
    TakeMemoryFresh();
    Report report(static_cast<std::size_t>(largest));
    for (const WorstText& worst : WorstTexts)
        report.Row(std::string("reading ") + worst.name,
                   [&](std::size_t size) { return Reading(worst, size, folder); });
    for (const Format& format : Formats())
        for (const char* body : WorstToWrite)
            report.Row(std::string("writing ") + format.extensions.front() + " of `" + Shown(body) +
                           "`",
                       [&](std::size_t size) { return Writing(format, body, size); });
    std::filesystem::remove_all(folder);
    return report.Good() ? 0 : 1;
}
