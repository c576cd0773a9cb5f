#include "cli/commandline.h"

#include "base/ascii.h"
#include "base/codepages.h"
#include "base/runtimeerror.h"
#include "base/savejournal.h"
#include "cli/commands.h"
#include "cli/repair.h"
#include "cli/sync.h"
#include "cli/titlefile.h"
#include "formats/load.h"
#include "formats/save.h"
#include "model/times.h"
#include "tracks/filmname.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <vector>

namespace {

constexpr std::string_view Program = "quelmar-cli";

/// Messages have line breaks of two characters; a terminal wants one.
void Say(std::ostream& err, std::string message) {
    std::erase(message, '\r');
    err << Program << ": " << message << '\n';
}

std::vector<Option> OptionsOf(const Command& command) {
    std::vector<Option> options(command.options.begin(), command.options.end());
    options.insert(options.end(), CommonOptions().begin(), CommonOptions().end());
    return options;
}

void PrintRow(std::ostream& out, const std::string& name, std::string_view help) {
    constexpr int NameWidth = 22;
    out << "    " << std::left << std::setw(NameWidth) << name << help << '\n';
}

std::string ExtensionsOf(const Format& format) {
    std::string extensions;
    for (const std::string& extension : format.extensions)
        extensions += (extensions.empty() ? "" : " ") + extension;
    return extensions;
}

void PrintOption(std::ostream& out, const Option& option) {
    std::string name(option.name);
    if (!option.value.empty()) {
        name += ' ';
        name += option.value;
    }
    PrintRow(out, name, option.help);
}

void PrintHelp(std::ostream& out) {
    out << "Usage: " << Program << " COMMAND [OPTIONS] IN OUT\n"
        << "Loads the subtitle file IN and saves it as OUT, in the format that the\n"
        << "extension of OUT names:\n";
    for (const Format& format : Formats())
        PrintRow(out, ExtensionsOf(format), format.name);
    out << '\n';
    for (const Command& command : Commands()) {
        out << "  " << command.name << (command.usage.empty() ? "" : " ") << command.usage
            << "\n    " << command.help << '\n';
        for (const Option& option : command.options)
            PrintOption(out, option);
        out << '\n';
    }
    PrintSyncHelp(out);
    out << "\n  With every command:\n";
    for (const Option& option : CommonOptions())
        PrintOption(out, option);
    out << "\n  --help, --version\n\n"
        << "TIME is hh:mm:ss,mmm or a number of seconds. Exit status: 0 done, 1 the file was\n"
        << "corrupt, needs --repair, was refused or not written or does not give the titles\n"
        << "back, 2 wrong arguments, 3 no fit can be trusted.\n";
}

ExitCode Complain(std::ostream& err, const std::string& fault) {
    Say(err, fault);
    err << "Try '" << Program << " --help'.\n";
    return ExitCode::WrongArguments;
}

/// One run of a command on its two files.
class Job {
  public:
    Job(const Arguments& arguments, double frameRate, std::ostream& err)
        : m_arguments(arguments)
        , m_frameRate(frameRate)
        , m_codePage(arguments.Has("--code-page") ? arguments.Value("--code-page")
                                                  : std::string(GuessedPage))
        , m_err(err) {}

    ExitCode Run(const Task& task, std::ostream& out) {
        if (const auto* report = std::get_if<Report>(&task))
            return Told((*report)(In(), out, m_fault)) ? ExitCode::Done : ExitCode::Failed;
        if (const auto* source = std::get_if<Source>(&task))
            return Told((*source)(In(), m_titles, m_style, m_fault)) && Save() ? ExitCode::Done
                                                                               : ExitCode::Failed;
        return Change(std::get<Edit>(task));
    }

  private:
    const std::string& In() const { return m_arguments.Files().front(); }

    bool Told(bool done) {
        if (!done)
            Say(m_err, In() + ": " + m_fault);
        return done;
    }

    ExitCode Change(const Edit& edit) {
        const LoadOutcome loaded = Load();
        const bool usable = loaded == LoadOutcome::Complete ||
                            (loaded == LoadOutcome::Corrupt && m_arguments.Has("--partial"));
        if (!usable)
            return ExitCode::Failed;
        // No one takes steps back here.
        m_titles.UndoEnabled(false);
        edit(m_titles);
        const bool saved = Save();
        return saved && loaded == LoadOutcome::Complete ? ExitCode::Done : ExitCode::Failed;
    }

    LoadOutcome Load() {
        LoadHooks hooks;
        hooks.askFrameRate = [this](std::optional<double> named) {
            if (named && m_arguments.Has("--repair") && !m_arguments.Has("--frame-rate"))
                m_frameRate = *named;
            return m_frameRate;
        };
        const std::string& name = In();
        if (FormatByName(name) == nullptr && IsFilmName(name)) {
            Say(m_err, name + ": is a film; the command tracks lists its subtitles, and convert " +
                           "--track N takes one");
            return LoadOutcome::UnknownFormat;
        }
        const LoadResult result = LoadTitles(PathOf(name), m_codePage, m_titles, m_style, hooks);
        if (m_codePage == GuessedPage && !m_style.codePage.empty())
            Say(m_err, name + ": read as " + m_style.codePage + ", which is a guess");
        if (result.outcome == LoadOutcome::NotOpened)
            Say(m_err, name + ": cannot be opened");
        else if (result.offer && m_arguments.Has("--repair"))
            return Repair(name, *result.offer);
        else if (!result.message.empty())
            Say(m_err, name + ": " + result.message);
        if (!result.offer)
            return result.outcome;
        Say(m_err, name + ": " + RepairHint(*result.offer));
        return NeedsRepair(*result.offer, m_arguments.Has("--frame-rate")) ? LoadOutcome::Corrupt
                                                                           : result.outcome;
    }

    LoadOutcome Repair(const std::string& name, const MendOffer& offer) {
        std::string message;
        const bool taken =
            TakeRepaired(offer, m_arguments.Value("--language"), m_titles, m_style, message);
        if (!message.empty())
            Say(m_err, name + ": " + message);
        return taken ? LoadOutcome::Complete : LoadOutcome::Unusable;
    }

    bool Save() {
        const std::string& name = m_arguments.Files().back();
        const std::string refusal = SaveRefusal(m_titles);
        if (!refusal.empty()) {
            Say(m_err, name + ": " + refusal);
            return false;
        }
        SaveHooks hooks;
        hooks.askFrameRate = [this] {
            return m_frameRate;
        };
        hooks.journalFolder = StateFolder();
        m_style.subRipStyles = m_arguments.Has("--styles");
        if (const Format* format = FormatByName(name, m_style)) {
            const std::string notKept = NotKept(*format, m_titles, m_style);
            if (!notKept.empty())
                Say(m_err, name + ": " + notKept);
        }
        const SaveResult result = SaveTitles(PathOf(name), m_codePage, m_titles, m_style, hooks);
        if (!result.message.empty())
            Say(m_err, name + ": " + result.message);
        if (!result.details.empty())
            Say(m_err, result.details);
        return result.proven;
    }

    const Arguments& m_arguments;
    double m_frameRate;
    std::string m_codePage;
    std::ostream& m_err;
    SUBTITLES m_titles;
    FileStyle m_style;
    std::string m_fault;
};

ExitCode RunCommand(const Command& command, std::span<const std::string> words, std::ostream& out,
                    std::ostream& err) {
    std::string fault;
    const std::optional<Arguments> arguments = Arguments::Parse(words, OptionsOf(command), fault);
    if (!arguments)
        return Complain(err, fault);
    std::optional<double> rate = DefaultFrameRate;
    if (arguments->Has("--frame-rate"))
        rate = RateOf(arguments->Value("--frame-rate"));
    if (!rate)
        return Complain(err, "Illegal frame rate!");
    if (arguments->Has("--code-page") && arguments->Value("--code-page") != GuessedPage &&
        !CodePage::Knows(arguments->Value("--code-page")))
        return Complain(err, "unknown encoding " + arguments->Value("--code-page"));
    const std::optional<Task> task = command.prepare(*arguments, fault);
    if (!task)
        return Complain(err, fault);
    const bool one = std::holds_alternative<Report>(*task);
    if (arguments->Files().size() != (one ? 1 : 2))
        return Complain(err, std::string(command.name) +
                                 (one ? " needs one file name" : " needs two file names"));
    try {
        return Job(*arguments, *rate, err).Run(*task, out);
    } catch (const RuntimeError& error) {
        Say(err, error.what());
        return ExitCode::Failed;
    }
}

} // namespace

ExitCode RunCommandLine(std::span<const std::string> words, std::ostream& out, std::ostream& err) {
    const auto options = std::find(words.begin(), words.end(), "--");
    const auto asksFor = [&](std::string_view option) {
        return std::find(words.begin(), options, option) != options;
    };
    if (asksFor("--help")) {
        PrintHelp(out);
        return ExitCode::Done;
    }
    if (asksFor("--version")) {
        out << Program << " " << QUELMAR_VERSION << '\n';
        return ExitCode::Done;
    }
    if (words.empty())
        return Complain(err, "no command given");
    if (words.front() == "sync")
        return RunSync(words.subspan(1), out, err);
    for (const Command& command : Commands()) {
        if (command.name == words.front())
            return RunCommand(command, words.subspan(1), out, err);
    }
    return Complain(err, "unknown command " + words.front());
}
