#include "cli/commands.h"

#include "editing/corrections.h"
#include "editing/shift.h"
#include "editing/stretch.h"

#include <array>

namespace {

constexpr std::array<Option, 4> Common{
    {{"--partial", "", "write what could be read of a corrupt file"},
     {"--frame-rate", "RATE", "frames per second of MicroDVD files (25)"},
     {"--code-page", "NAME", "how a file that is not Unicode is read (windows-1252)"},
     {"--styles", "", "write italics and bold into SubRip files too"}}};

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

Edit MapAll(std::function<TimeMap(const SUBTITLES&)> mapFor) {
    return [mapFor = std::move(mapFor)](SUBTITLES& titles) {
        if (titles.Count() > 0)
            MapTitles(titles, AllTitles(titles), mapFor(titles));
    };
}

std::optional<Edit> PrepareConvert(const Arguments& /*arguments*/, std::string& /*fault*/) {
    return [](SUBTITLES&) {
    };
}

std::optional<Edit> PrepareShift(const Arguments& arguments, std::string& fault) {
    const auto amount = ValueOf(arguments, "--by", TimeOf, fault);
    if (!amount)
        return std::nullopt;
    return [amount = *amount](SUBTITLES& titles) {
        ShiftTitles(titles, AllTitles(titles), amount);
    };
}

std::optional<Edit> PrepareByTitles(const Arguments& arguments, std::string& fault) {
    const auto first = ValueOf(arguments, "--first", TimeOf, fault);
    const auto last = first ? ValueOf(arguments, "--last", TimeOf, fault) : std::nullopt;
    if (!last)
        return std::nullopt;
    return MapAll([first = *first, last = *last](const SUBTITLES& titles) {
        return MapByTitles(titles.StartTime(1), titles.StartTime(titles.Count()), first, last);
    });
}

std::optional<Edit> PrepareByAmount(const Arguments& arguments, std::string& fault) {
    const auto amount = ValueOf(arguments, "--amount", TimeOf, fault);
    if (!amount)
        return std::nullopt;
    return MapAll([amount = *amount](const SUBTITLES& titles) {
        return MapByAmount(titles.StartTime(titles.Count()), amount);
    });
}

std::optional<Edit> PrepareByRates(const Arguments& arguments, std::string& fault) {
    const auto from = ValueOf(arguments, "--from-rate", RateOf, fault);
    const auto to = from ? ValueOf(arguments, "--to-rate", RateOf, fault) : std::nullopt;
    if (!to)
        return std::nullopt;
    return MapAll([from = *from, to = *to](const SUBTITLES&) { return MapByRates(from, to); });
}

std::optional<Edit> PrepareStretch(const Arguments& arguments, std::string& fault) {
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

std::optional<Edit> PrepareCorrect(const Arguments& arguments, std::string& fault) {
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

constexpr std::array<Command, 4> All{
    {{"convert",
      "",
      "Load a file and save it in the format that the second name tells.",
      {},
      PrepareConvert},
     {"shift", "--by TIME", "Show all titles later, or earlier.", ShiftOptions, PrepareShift},
     {"stretch", "--first TIME --last TIME | --amount TIME | --from-rate RATE --to-rate RATE",
      "Fit all titles to a longer or shorter film.", StretchOptions, PrepareStretch},
     {"correct", "[--spelling] [--italics]", "Correct the texts of all titles.", CorrectOptions,
      PrepareCorrect}}};

} // namespace

std::span<const Command> Commands() {
    return All;
}

std::span<const Option> CommonOptions() {
    return Common;
}
