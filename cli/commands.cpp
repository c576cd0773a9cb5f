#include "cli/commands.h"

#include "cli/filmsound.h"
#include "cli/filmtitles.h"
#include "editing/corrections.h"
#include "editing/shift.h"
#include "editing/stretch.h"
#include "model/numbers.h"

#include <array>
#include <cmath>

namespace {

constexpr std::array<Option, 6> Common{
    {{"--partial", "", "write what could be read of a file that is corrupt or needs --repair"},
     {"--repair", "", "read a wild file tolerantly, and say what was mended"},
     {"--language", "NAME", "which of several languages of a SAMI file --repair takes (the first)"},
     {"--frame-rate", "RATE", "frames per second of MicroDVD files (25)"},
     {"--code-page", "NAME", "how a file that is not Unicode is read (guessed)"},
     {"--styles", "", "write italics and bold into SubRip files too"}}};

constexpr std::array<Option, 1> ConvertOptions{
    {{"--track", "N", "IN is a film: its subtitles of that number, counted from 1"}}};
constexpr std::array<Option, 1> ShiftOptions{
    {{"--by", "TIME", "how much later; below 0, how much earlier"}}};
constexpr std::array<Option, 5> StretchOptions{
    {{"--first", "TIME", "new start of the first title"},
     {"--last", "TIME", "new start of the last title"},
     {"--amount", "TIME", "how much later the last title starts; time 0 stays"},
     {"--from-rate", "RATE", "the frame rate that the titles fit"},
     {"--to-rate", "RATE", "the frame rate that they are to fit"}}};
constexpr std::array<Option, 2> CorrectOptions{
    {{"--spelling", "", "mend l and I that were taken for each other"},
     {"--italics", "", "turn /words/ that begin with a slash into italics"}}};

constexpr Option Track{"--track", "N", "the sound track, counted from 1 (the one that is played)"};
constexpr std::array<Option, 4> SoundOptions{
    {Track,
     {"--from", "TIME", "where to begin (0)"},
     {"--to", "TIME", "where to end (the end of the film)"},
     {"--step", "MS", "milliseconds from line to line (100)"}}};
constexpr std::array<Option, 1> SpeechOptions{{Track}};

/// The understood value of an option, or nothing and a fault.
template <typename UNDERSTAND>
std::optional<double> ValueOf(const Arguments& arguments, std::string_view option,
                              UNDERSTAND understand, std::string& fault) {
    const std::optional<double> value = understand(arguments.Value(option));
    if (!value)
        fault = arguments.Has(option) ? "\"" + arguments.Value(option) + "\" makes no sense for " +
                                            std::string(option)
                                      : std::string(option) + " is missing";
    return value;
}

Task MapAll(std::function<TimeMap(const SUBTITLES&)> mapFor) {
    return [mapFor = std::move(mapFor)](SUBTITLES& titles) {
        if (titles.Count() > 0)
            MapTitles(titles, AllTitles(titles), mapFor(titles));
    };
}

/// The understood value of an option that may be missing. false and a fault when it makes no
/// sense.
template <typename UNDERSTAND>
bool TakeValue(const Arguments& arguments, std::string_view option, UNDERSTAND understand,
               std::string& fault, double& value) {
    if (!arguments.Has(option))
        return true;
    const auto understood = ValueOf(arguments, option, understand, fault);
    value = understood.value_or(value);
    return understood.has_value();
}

std::optional<double> TrackOf(std::string_view text) {
    constexpr double MostTracks = 1000;
    const std::optional<double> track = Number(text);
    const bool sensible =
        track && *track >= 1 && *track <= MostTracks && *track == std::floor(*track);
    return sensible ? track : std::nullopt;
}

std::optional<Task> PrepareConvert(const Arguments& arguments, std::string& fault) {
    double track = 0;
    if (!TakeValue(arguments, "--track", TrackOf, fault, track))
        return std::nullopt;
    if (track == 0)
        return [](SUBTITLES&) {
        };
    return [track, codePage = arguments.Value("--code-page")](
               const std::string& film, SUBTITLES& titles, FileStyle& style, std::string& reason) {
        return TitlesOfFilm(film, static_cast<int>(track), codePage, titles, style, reason);
    };
}

std::optional<Task> PrepareTracks(const Arguments& /*arguments*/, std::string& /*fault*/) {
    return PrintTracks;
}

std::optional<Task> PrepareShift(const Arguments& arguments, std::string& fault) {
    const auto amount = ValueOf(arguments, "--by", TimeOf, fault);
    if (!amount)
        return std::nullopt;
    return [amount = *amount](SUBTITLES& titles) {
        ShiftTitles(titles, AllTitles(titles), amount);
    };
}

std::optional<Task> PrepareByTitles(const Arguments& arguments, std::string& fault) {
    const auto first = ValueOf(arguments, "--first", TimeOf, fault);
    const auto last = first ? ValueOf(arguments, "--last", TimeOf, fault) : std::nullopt;
    if (!last)
        return std::nullopt;
    if (*last <= *first) {
        fault = "--last must be later than --first";
        return std::nullopt;
    }
    return MapAll([first = *first, last = *last](const SUBTITLES& titles) {
        return MapByTitles(titles.StartTime(1), titles.StartTime(titles.Count()), first, last);
    });
}

std::optional<Task> PrepareByAmount(const Arguments& arguments, std::string& fault) {
    const auto amount = ValueOf(arguments, "--amount", TimeOf, fault);
    if (!amount)
        return std::nullopt;
    return MapAll([amount = *amount](const SUBTITLES& titles) {
        return MapByAmount(titles.StartTime(titles.Count()), amount);
    });
}

std::optional<Task> PrepareByRates(const Arguments& arguments, std::string& fault) {
    const auto from = ValueOf(arguments, "--from-rate", RateOf, fault);
    const auto to = from ? ValueOf(arguments, "--to-rate", RateOf, fault) : std::nullopt;
    if (!to)
        return std::nullopt;
    return MapAll([from = *from, to = *to](const SUBTITLES&) { return MapByRates(from, to); });
}

std::optional<Task> PrepareStretch(const Arguments& arguments, std::string& fault) {
    const bool byTitles = arguments.Has("--first") || arguments.Has("--last");
    const bool byAmount = arguments.Has("--amount");
    const bool byRates = arguments.Has("--from-rate") || arguments.Has("--to-rate");
    if (byTitles + byAmount + byRates != 1) {
        fault =
            "stretch needs either --first and --last, or --amount, or --from-rate and --to-rate";
        return std::nullopt;
    }
    if (byTitles)
        return PrepareByTitles(arguments, fault);
    return byAmount ? PrepareByAmount(arguments, fault) : PrepareByRates(arguments, fault);
}

std::optional<Task> PrepareCorrect(const Arguments& arguments, std::string& fault) {
    const bool spelling = arguments.Has("--spelling");
    const bool italics = arguments.Has("--italics");
    if (!spelling && !italics) {
        fault = "correct needs --spelling, --italics or both";
        return std::nullopt;
    }
    return [spelling, italics](SUBTITLES& titles) {
        if (spelling)
            CorrectSpelling(titles);
        if (italics)
            ConvertItalics(titles);
    };
}

std::optional<Task> PrepareSound(const Arguments& arguments, std::string& fault) {
    double track = 0;
    SoundStretch stretch;
    double milliseconds = stretch.step * 1000;
    if (!TakeValue(arguments, "--track", TrackOf, fault, track) ||
        !TakeValue(arguments, "--from", TimeOf, fault, stretch.from) ||
        !TakeValue(arguments, "--to", TimeOf, fault, stretch.to) ||
        !TakeValue(arguments, "--step", RateOf, fault, milliseconds))
        return std::nullopt;
    stretch.step = milliseconds / 1000;
    return [track, stretch](const std::string& film, std::ostream& out, std::string& reason) {
        return PrintSound(film, static_cast<int>(track), stretch, out, reason);
    };
}

std::optional<Task> PrepareSpeech(const Arguments& arguments, std::string& fault) {
    double track = 0;
    if (!TakeValue(arguments, "--track", TrackOf, fault, track))
        return std::nullopt;
    return [track](const std::string& film, SUBTITLES& titles, FileStyle& /*style*/,
                   std::string& reason) {
        return TitlesOfSpeech(film, static_cast<int>(track), titles, reason);
    };
}

constexpr std::array<Command, 7> All{
    {{"convert", "[--track N]",
      "Load a file, or the subtitles in a film, and save it in the format that the second\n"
      "    name tells.",
      ConvertOptions, PrepareConvert},
     {"tracks",
      "FILM",
      "List the subtitles in a film: number, language, kind, number of titles and name, parted\n"
      "    by tabs.",
      {},
      PrepareTracks},
     {"shift", "--by TIME", "Show all titles later, or earlier.", ShiftOptions, PrepareShift},
     {"stretch", "--first TIME --last TIME | --amount TIME | --from-rate RATE --to-rate RATE",
      "Fit all titles to a longer or shorter film.", StretchOptions, PrepareStretch},
     {"correct", "[--spelling] [--italics]", "Correct the texts of all titles.", CorrectOptions,
      PrepareCorrect},
     {"sound", "[--track N] [--from TIME] [--to TIME] [--step MS] FILM",
      "Print how a film sounds: time, least and greatest sample, loudness in dB and the\n"
      "    probability of speech for each step, parted by tabs.",
      SoundOptions, PrepareSound},
     {"speech", "[--track N] FILM OUT", "Write titles \"...\" where someone speaks in a film.",
      SpeechOptions, PrepareSpeech}}};

} // namespace

std::span<const Command> Commands() {
    return All;
}

std::span<const Option> CommonOptions() {
    return Common;
}
