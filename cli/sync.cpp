#include "cli/sync.h"

#include "base/codepages.h"
#include "base/wholefile.h"
#include "cli/arguments.h"
#include "cli/library.h"
#include "cli/syncreport.h"

#include <array>
#include <charconv>
#include <iomanip>

namespace {

constexpr std::array<Option, 10> Options{
    {{"--by", "KIND", "sound, titles or auto: the film's text track if it fits its sound"},
     {"--track", "N", "the sound track, or with --by titles the text track, from 1"},
     {"--report", "FILE", "write what was found as JSON"},
     {"--library", "FOLDER", "fit all subtitle files to the films beside them"},
     {"--jobs", "N", "so many films at a time (1)"},
     {"--dry-run", "", "with --library: write nothing"},
     {"--repair", "", "read wild files tolerantly"},
     {"--partial", "", "take what could be read of a file that is corrupt or needs --repair"},
     {"--frame-rate", "RATE", "frames per second of MicroDVD files (25)"},
     {"--code-page", "NAME", "how a file that is not Unicode is read (guessed)"}}};

/// A whole number from 1 on.
std::optional<int> CountOf(const std::string& text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size() && number >= 1;
    return whole ? std::optional(number) : std::nullopt;
}

ExitCode Complain(std::ostream& err, const std::string& fault) {
    err << "quelmar-cli: " << fault << "\nTry 'quelmar-cli --help'.\n";
    return ExitCode::WrongArguments;
}

void Say(std::ostream& err, const std::string& name, std::string message) {
    std::erase(message, '\r');
    err << "quelmar-cli: " << name << ": " << message << '\n';
}

/// The options that say how to fit; false and the fault when they make no sense.
bool Understand(const Arguments& arguments, Reference::Wish& wish, std::string& fault) {
    const std::string& by = arguments.Value("--by");
    if (by == "sound")
        wish.by = FitBy::Sound;
    else if (by == "titles")
        wish.by = FitBy::Titles;
    else if (arguments.Has("--by") && by != "auto")
        fault = "--by takes sound, titles or auto";
    if (arguments.Has("--track")) {
        wish.track = CountOf(arguments.Value("--track")).value_or(0);
        if (wish.track == 0)
            fault = "--track takes a number from 1 on";
    }
    if (arguments.Has("--frame-rate")) {
        const std::optional<double> rate = RateOf(arguments.Value("--frame-rate"));
        wish.manners.frameRate = rate.value_or(0);
        wish.manners.frameRateGiven = true;
        if (!rate)
            fault = "Illegal frame rate!";
    }
    if (arguments.Has("--code-page"))
        wish.manners.codePage = arguments.Value("--code-page");
    if (wish.manners.codePage != GuessedPage && !CodePage::Knows(wish.manners.codePage))
        fault = "unknown encoding " + wish.manners.codePage;
    wish.manners.partial = arguments.Has("--partial");
    wish.manners.repair = arguments.Has("--repair");
    return fault.empty();
}

ExitCode FitOne(const Arguments& arguments, Reference::Wish wish, std::ostream& out,
                std::ostream& err) {
    const std::string& referenceName = arguments.Files()[0];
    const std::string& in = arguments.Files()[1];
    const std::string& result = arguments.Files()[2];
    std::string message;
    TitleFile file;
    const bool loaded = file.Load(PathOf(in), wish.manners, message);
    if (!message.empty())
        Say(err, in, message);
    if (!loaded)
        return ExitCode::Failed;
    wish.file = PathOf(referenceName);
    message.clear();
    const std::optional<Reference> reference = Reference::Open(wish, message);
    if (!reference) {
        Say(err, referenceName, message);
        return ExitCode::Failed;
    }
    FitSeconds seconds;
    const std::vector<FitTitle> titles = file.Titles();
    const Fit fit = reference->FitTo(titles, seconds);
    if (arguments.Has("--report")) {
        const std::string& name = arguments.Value("--report");
        if (!WriteWholeFile(PathOf(name), ReportOf(fit, reference->Kind(), seconds), false)) {
            Say(err, name, "cannot be written");
            return ExitCode::Failed;
        }
    }
    if (fit.verdict == FitVerdict::Unsure) {
        Say(err, in, "no fit that can be trusted was found, so nothing is written");
        return ExitCode::Unsure;
    }
    if (fit.verdict == FitVerdict::Fitted)
        file.SetTimes(ApplyFit(titles, fit));
    if (!file.Save(PathOf(result), wish.manners, message)) {
        Say(err, result, message);
        return ExitCode::Failed;
    }
    out << in << ": " << SummaryOf(fit) << '\n';
    return file.Damaged() ? ExitCode::Failed : ExitCode::Done;
}

ExitCode FitMany(const Arguments& arguments, const Reference::Wish& wish, std::ostream& out,
                 std::ostream& err) {
    LibraryWish library;
    library.folder = PathOf(arguments.Value("--library"));
    library.fit = wish;
    library.dryRun = arguments.Has("--dry-run");
    if (arguments.Has("--jobs")) {
        const std::optional<int> jobs = CountOf(arguments.Value("--jobs"));
        if (!jobs)
            return Complain(err, "--jobs takes a number from 1 on");
        library.jobs = static_cast<unsigned>(*jobs);
    }
    std::error_code error;
    if (!std::filesystem::is_directory(library.folder, error)) {
        Say(err, arguments.Value("--library"), "is no folder");
        return ExitCode::Failed;
    }
    return FitLibrary(library, out, err) ? ExitCode::Done : ExitCode::Failed;
}

} // namespace

ExitCode RunSync(std::span<const std::string> words, std::ostream& out, std::ostream& err) {
    std::string fault;
    const std::optional<Arguments> arguments = Arguments::Parse(words, Options, fault);
    Reference::Wish wish;
    if (!arguments || !Understand(*arguments, wish, fault))
        return Complain(err, fault);
    if (arguments->Has("--library")) {
        if (!arguments->Files().empty())
            return Complain(err, "sync --library takes no file names");
        if (arguments->Has("--report"))
            return Complain(err, "--report goes with one file");
        return FitMany(*arguments, wish, out, err);
    }
    if (arguments->Has("--jobs") || arguments->Has("--dry-run"))
        return Complain(err, "--jobs and --dry-run go with --library");
    if (arguments->Files().size() != 3)
        return Complain(err, "sync needs three file names: REFERENCE IN OUT");
    return FitOne(*arguments, wish, out, err);
}

void PrintSyncHelp(std::ostream& out) {
    constexpr int NameWidth = 22;
    out << "  sync REFERENCE IN OUT\n"
        << "  sync --library FOLDER [--jobs N] [--dry-run]\n"
        << "    Fit the titles to a film, a sound file or a right subtitle file. Nothing is\n"
        << "    written, and the exit status is 3, when no fit can be trusted.\n";
    for (const Option& option : std::span(Options).first(6)) {
        std::string name(option.name);
        if (!option.value.empty())
            name += " " + std::string(option.value);
        out << "    " << std::left << std::setw(NameWidth) << name << option.help << '\n';
    }
}
