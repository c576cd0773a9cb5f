// Loading, saving and `Locate`, beside the least that any program must do. After
// the figures it prints their ratios and growth as tables; with --check it ends
// with 1 when one of them misses its goal.
#include "base/wholefile.h"
#include "benchmarks/generating.h"
#include "benchmarks/growing.h"
#include "benchmarks/limits.h"
#include "benchmarks/memory.h"
#include "formats/load.h"
#include "formats/save.h"
#include "formats/subrip.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

constexpr std::array<std::int32_t, 3> Counts{1'500, 32'700, 1'000'000};

/// Where a file costs neither a disk nor a disk's book-keeping, whose price varies
/// threefold between runs; the temporary folder where the system has no such place.
std::filesystem::path FolderInMemory() {
    const std::filesystem::path shared = "/dev/shm";
    std::error_code error;
    return std::filesystem::is_directory(shared, error) ? shared
                                                        : std::filesystem::temp_directory_path();
}

class Workspace {
  public:
    explicit Workspace(const std::filesystem::path& place)
        : m_folder(place / "quelmar-benchmark") {
        std::filesystem::create_directories(m_folder);
    }
    ~Workspace() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    std::filesystem::path Out(const char* extension) const {
        return m_folder / (std::string("out") + extension);
    }

    /// The generated file of that many titles.
    std::filesystem::path In(std::int32_t count, const std::string& extension) {
        std::filesystem::path file = m_folder / (std::to_string(count) + extension);
        if (std::filesystem::exists(file))
            return file;
        if (extension == ".srt")
            WriteWholeFile(file, SubRipWithTags(Titles(count)), false);
        else
            SaveTitles(file, "", Titles(count), {}, {});
        return file;
    }

    const SUBTITLES& Titles(std::int32_t count) {
        if (m_titles.Count() != count)
            m_titles = GeneratedTitles(count);
        return m_titles;
    }

  private:
    std::filesystem::path m_folder;
    SUBTITLES m_titles;
};

Workspace& Files() {
    static Workspace workspace(FolderInMemory());
    return workspace;
}

/// For what is flushed.
Workspace& Disk() {
    static Workspace workspace(std::filesystem::temp_directory_path());
    return workspace;
}

std::filesystem::path OutFile(const char* extension, bool flush) {
    return flush ? Disk().Out(extension) : Files().Out(extension);
}

void SetBytes(benchmark::State& state, const std::filesystem::path& file) {
    state.SetBytesProcessed(static_cast<std::int64_t>(std::filesystem::file_size(file)) *
                            static_cast<std::int64_t>(state.iterations()));
}

/// As in a program that has just started: nothing of the last round is at hand. What
/// the last round made is freed here too: freeing a list is no part of loading one.
template <typename... RESULTS>
void ForgetMemory(benchmark::State& state, RESULTS&... results) {
    state.PauseTiming();
    ((results = RESULTS()), ...);
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    state.ResumeTiming();
}

void Load(benchmark::State& state, const char* extension) {
    const auto file = Files().In(static_cast<std::int32_t>(state.range(0)), extension);
    SUBTITLES titles;
    FileStyle style;
    while (state.KeepRunning()) {
        ForgetMemory(state, titles, style);
        if (LoadTitles(file, "", titles, style, {}).outcome != LoadOutcome::Complete)
            state.SkipWithError("the file is not read");
    }
    SetBytes(state, file);
}

void Scan(benchmark::State& state) {
    const auto file = Files().In(static_cast<std::int32_t>(state.range(0)), ".srt");
    std::vector<PlainTitle> titles;
    while (state.KeepRunning()) {
        ForgetMemory(state, titles);
        titles = ScanSubRip(file);
        if (titles.size() != static_cast<std::size_t>(state.range(0)))
            state.SkipWithError("the file is not read");
    }
    SetBytes(state, file);
}

void Save(benchmark::State& state, const char* extension, bool flush) {
    const SUBTITLES& titles = Files().Titles(static_cast<std::int32_t>(state.range(0)));
    const auto file = OutFile(extension, flush);
    SaveHooks hooks;
    hooks.flushToDisk = flush;
    while (state.KeepRunning()) {
        ForgetMemory(state);
        if (!SaveTitles(file, "", titles, {}, hooks).written)
            state.SkipWithError("the file is not written");
    }
    SetBytes(state, file);
}

/// A save without any care: composed, and written over the file.
void Overwrite(benchmark::State& state, bool flush) {
    const SUBTITLES& titles = Files().Titles(static_cast<std::int32_t>(state.range(0)));
    const auto file = OutFile(".srt", flush);
    while (state.KeepRunning()) {
        ForgetMemory(state);
        std::string text;
        WriteFile(SubRipFormat(), titles, 25, {}, text);
        if (!WriteWholeFile(file, text, flush))
            state.SkipWithError("the file is not written");
    }
    SetBytes(state, file);
}

void Dump(benchmark::State& state, bool flush) {
    const SUBTITLES& titles = Files().Titles(static_cast<std::int32_t>(state.range(0)));
    const auto file = OutFile(".srt", flush);
    while (state.KeepRunning()) {
        ForgetMemory(state);
        if (!DumpSubRip(file, titles, flush))
            state.SkipWithError("the file is not written");
    }
    SetBytes(state, file);
}

void Locate(benchmark::State& state) {
    const SUBTITLES& titles = Files().Titles(static_cast<std::int32_t>(state.range(0)));
    const double length = titles.EndTime(titles.Count());
    double time = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(titles.Locate(time));
        // Steps that fall all over the film.
        time = std::fmod(time + length * 0.6180339887, length);
    }
}

/// The figures of a run, by name ("load .srt/1500"): milliseconds, and bytes per second.
/// Processor time, which other programs on the machine disturb little; for what
/// waits for the disk, the time that passed. The best of the repetitions: fresh
/// memory may cost a virtual machine several times what it cost a moment ago, and
/// that only ever adds.
class Figures : public benchmark::ConsoleReporter {
  public:
    Figures()
        : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const std::string name = run.run_name.function_name + "/" + run.run_name.args;
            const bool real = !run.run_name.time_type.empty();
            const double time = real ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
            const auto least = m_times.try_emplace(name, time).first;
            least->second = std::min(least->second, time);
            const auto bytes = run.counters.find("bytes_per_second");
            if (bytes != run.counters.end())
                m_speeds[name] = std::max(m_speeds[name], bytes->second.value);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    double Time(const std::string& name) const { return Of(m_times, name); }
    double Speed(const std::string& name) const { return Of(m_speeds, name); }

  private:
    using Table = std::map<std::string, double>;

    static double Of(const Table& table, const std::string& name) {
        const auto found = table.find(name);
        return found == table.end() ? std::nan("") : found->second;
    }

    Table m_times;
    Table m_speeds;
};

struct Ratio {
    const char* what;
    const char* of;
    const char* to;
    /// The ratio may not be below it; 0 when there is none.
    double goal;
};

constexpr std::array<Ratio, 12> Ratios{
    {{"load .srt : minimal scanner", "load .srt", "scan .srt", 0.5},
     {"load .sub : load .srt, per byte", "load .sub", "load .srt", 0.5},
     {"load .smi : load .srt, per byte", "load .smi", "load .srt", 0.5},
     {"load .vtt : load .srt, per byte", "load .vtt", "load .srt", 0.5},
     {"load .ass : load .srt, per byte", "load .ass", "load .srt", 0.5},
     {"overwrite .srt : to_chars and one write", "overwrite .srt", "dump .srt", 0.5},
     {"the same, both flushed to the disk", "overwrite .srt flushed", "dump .srt flushed", 0.5},
     {"save .srt, safe and proven : overwrite .srt, both flushed", "save .srt flushed",
      "overwrite .srt flushed", 0.4},
     {"save .sub : save .srt, per byte", "save .sub", "save .srt", 0},
     {"save .smi : save .srt, per byte", "save .smi", "save .srt", 0},
     {"save .vtt : save .srt, per byte", "save .vtt", "save .srt", 0.5},
     {"save .ass : save .srt, per byte", "save .ass", "save .srt", 0.5}}};

constexpr std::array<const char*, 10> Growing{"load .srt", "load .sub", "load .smi", "load .vtt",
                                              "load .ass", "save .srt", "save .sub", "save .smi",
                                              "save .vtt", "save .ass"};
constexpr double MostLocate = 1e-3;

std::string Name(const char* what, std::int32_t count) {
    return std::string(what) + "/" + std::to_string(count);
}

class Tables {
  public:
    explicit Tables(const Figures& figures)
        : m_figures(figures) {}

    bool Print() {
        PrintRatios();
        PrintGrowth();
        const double locate = m_figures.Time(Name("locate", Counts.back()));
        std::printf("\n| `Locate` in 1,000,000 titles, nanoseconds | goal |\n|---|---|\n|");
        PrintCell(locate * 1e6, locate <= MostLocate);
        std::printf(" %.0f |\n", MostLocate * 1e6);
        return m_good;
    }

  private:
    const char* Mark(bool good) {
        m_good = m_good && good;
        return good ? "" : " MISSED";
    }

    /// One cell of a table; a figure that was not measured is neither good nor bad.
    void PrintCell(double value, bool good) {
        if (std::isnan(value))
            std::printf(" - |");
        else
            std::printf(" %.2f%s |", value, Mark(good));
    }

    void PrintRatios() {
        std::printf("\n| ratio of speeds | 1,500 | 32,700 | 1,000,000 | goal |\n"
                    "|---|---|---|---|---|\n");
        for (const Ratio& ratio : Ratios) {
            std::printf("| %s |", ratio.what);
            for (const std::int32_t count : Counts) {
                const double value =
                    m_figures.Speed(Name(ratio.of, count)) / m_figures.Speed(Name(ratio.to, count));
                PrintCell(value, value >= ratio.goal);
            }
            if (ratio.goal > 0)
                std::printf(" %.1f |\n", ratio.goal);
            else
                std::printf(" - |\n");
        }
    }

    /// By what power of its size the time of a file grows.
    void PrintGrowth() {
        std::printf(
            "\n| growth exponent | 1,500 to 32,700 | 32,700 to 1,000,000 |\n|---|---|---|\n");
        for (const char* what : Growing) {
            std::printf("| %s |", what);
            for (std::size_t i = 1; i < Counts.size(); ++i) {
                const double times = m_figures.Time(Name(what, Counts[i])) /
                                     m_figures.Time(Name(what, Counts[i - 1]));
                const double exponent =
                    GrowthExponent(times, static_cast<double>(Counts[i]) / Counts[i - 1]);
                PrintCell(exponent, exponent <= MostGrowth);
            }
            std::printf("\n");
        }
    }

    const Figures& m_figures;
    bool m_good = true;
};

template <typename FUNCTION, typename... ARGUMENTS>
void Register(const char* name, FUNCTION function, ARGUMENTS... arguments) {
    auto* run = benchmark::RegisterBenchmark(name, function, arguments...);
    for (const std::int32_t count : Counts)
        run->Arg(count);
    run->Unit(benchmark::kMillisecond);
    if (std::string_view(name).ends_with("flushed"))
        run->UseRealTime();
}

} // namespace

int main(int argc, char** argv) {
    bool check = false;
    std::vector<char*> words;
    for (int i = 0; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--check")
            check = true;
        else
            words.push_back(argv[i]);
    }
    int count = static_cast<int>(words.size());
    benchmark::Initialize(&count, words.data());
    if (benchmark::ReportUnrecognizedArguments(count, words.data()))
        return 2;

    Register("load .srt", Load, ".srt");
    Register("scan .srt", Scan);
    Register("load .sub", Load, ".sub");
    Register("load .smi", Load, ".smi");
    Register("load .vtt", Load, ".vtt");
    Register("load .ass", Load, ".ass");
    Register("save .srt", Save, ".srt", false);
    Register("dump .srt", Dump, false);
    Register("save .sub", Save, ".sub", false);
    Register("save .smi", Save, ".smi", false);
    Register("save .vtt", Save, ".vtt", false);
    Register("save .ass", Save, ".ass", false);
    Register("save .srt flushed", Save, ".srt", true);
    Register("dump .srt flushed", Dump, true);
    Register("overwrite .srt", Overwrite, false);
    Register("overwrite .srt flushed", Overwrite, true);
    benchmark::RegisterBenchmark("locate", Locate)
        ->Arg(Counts.back())
        ->Unit(benchmark::kMillisecond);

    TouchMemory();
    Figures figures;
    benchmark::RunSpecifiedBenchmarks(&figures);
    const bool good = Tables(figures).Print();
    return check && !good ? 1 : 0;
}
