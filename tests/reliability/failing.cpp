// Makes every call that a save makes on its files fail in turn, in every way a disk, a
// signal or a kill can make it fail, and looks at what is left:
// quelmar_failing [cli|window] [STEP [power]]. With a STEP every STEPth call is tried, which
// is what the tests do for the window. With "power" the program is killed at each call, and
// the disk, which holds the file and the state folder, loses its power at that moment: what
// was not flushed to it is gone. That takes root.

#include "base/savejournal.h"
#include "base/wholefile.h"
#include "formats/recoverycopy.h"
#include "platform/recoverystore.h"
#include "tests/reliability/powerless.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr const char* SourceBytes = "1\r\n00:00:01,000 --> 00:00:02,000\r\nOne\r\n\r\n"
                                    "2\r\n00:00:03,000 --> 00:00:04,000\r\nTwo\r\n\r\n";
constexpr const char* OtherBytes = "the file that was there";
constexpr int Hung = 60;

enum class Target { New, Other, Source, Linked };

struct Scenario {
    const char* name;
    bool window;
    bool edited;
    Target target;
};

constexpr Scenario Scenarios[] = {
    {"command line, new file", false, true, Target::New},
    {"command line, over another file", false, true, Target::Other},
    {"command line, in place", false, true, Target::Source},
    {"command line, over a file of two names", false, true, Target::Linked},
    {"window, edited, new file", true, true, Target::New},
    {"window, edited, over another file", true, true, Target::Other},
    {"window, edited, in place", true, true, Target::Source},
    {"window, edited, over a file of two names", true, true, Target::Linked},
    {"window, unedited, new file", true, false, Target::New},
    {"window, unedited, over another file", true, false, Target::Other},
    {"window, unedited, in place", true, false, Target::Source},
    {"window, unedited, over a file of two names", true, false, Target::Linked}};

constexpr const char* Kinds[] = {"EIO", "ENOSPC", "EINTR", "SHORT", "KILL", "FULL"};

std::string Bytes(const fs::path& file) {
    const auto bytes = ReadWholeFile(file);
    return bytes ? std::string(bytes->View()) : std::string();
}

/// One program that saves, in a folder of its own.
class Trial {
  public:
    explicit Trial(const Scenario& scenario, bool power = false)
        : m_scenario(scenario)
        , m_disk(power ? std::make_unique<PowerlessDisk>(m_temporary.path()) : nullptr)
        , m_folder((m_disk ? m_disk->Path() + "/work" : m_temporary.path()).toStdString()) {
        fs::create_directories(m_folder);
        WriteWholeFile(m_folder / "source.srt", SourceBytes, false);
        if (scenario.target == Target::Other || scenario.target == Target::Linked)
            WriteWholeFile(Saved(), OtherBytes, false);
        if (scenario.target == Target::Linked)
            fs::create_hard_link(Saved(), m_folder / "other.srt");
        fs::create_directories(State());
        m_before = Bytes(Saved());
        if (m_disk)
            m_disk->Flush();
    }
    bool Ready() const { return !m_disk || m_disk->Mounted(); }

    /// How often the call could have failed.
    long Run(const char* kind, long at) {
        const fs::path report = m_temporary.path().toStdString() + "-calls";
        const std::vector<std::string> environment{
            "LD_PRELOAD=" QUELMAR_FAULTS,
            "QUELMAR_FAULT_FOLDER=" + m_folder.string(),
            std::string("QUELMAR_FAULT=") + kind,
            "QUELMAR_FAULT_AT=" + std::to_string(at),
            "QUELMAR_FAULT_REPORT=" + report.string(),
            "XDG_STATE_HOME=" + (m_folder / "state").string(),
            "XDG_CONFIG_HOME=" + m_folder.string() + "-config"};
        m_status = Execute(environment);
        if (m_disk && at > 0)
            m_disk->CutPower();
        const long calls = std::atol(Bytes(report).c_str());
        fs::remove(report);
        return calls;
    }

    fs::path Saved() const {
        return m_folder / (m_scenario.target == Target::Source ? "source.srt" : "saved.srt");
    }
    bool Killed() const { return WIFSIGNALED(m_status) && WTERMSIG(m_status) == SIGKILL; }
    bool Reported() const { return WIFEXITED(m_status); }
    int Code() const { return WEXITSTATUS(m_status); }

    /// Nothing, or what was lost. `wanted`: the file that a save gives.
    std::string Loss(const std::string& wanted, bool mayBeKilled) const {
        if (!Reported() && !(mayBeKilled && Killed()))
            return "the program crashed or hung";
        if (Reported() && Code() != 0 && (m_scenario.window || Code() != 1))
            return "the program said something else than it did";
        const std::string now = Bytes(Saved());
        const bool there = fs::exists(Saved());
        if (!m_scenario.window && Reported() && Code() == 0 && now != wanted)
            return "done, it said, and it was not";
        const auto torn = FindInterruptedSaves(State());
        const bool kept = std::any_of(torn.begin(), torn.end(), [&](const InterruptedSave& save) {
            return save.oldBytes == m_before && save.newBytes == wanted;
        });
        if (there && now != m_before && now != wanted && !kept)
            return "the file is neither the old one nor the new one";
        if (!there && m_scenario.target != Target::New)
            return "the file is gone";
        if (now == wanted || kept || !m_scenario.edited || !m_scenario.window)
            return {};
        return CopyHolds("edited") ? "" : "the titles are nowhere";
    }

  private:
    fs::path State() const { return m_folder / "state/Tevo/Quelmar"; }

    std::vector<std::string> Words() const {
        const std::string source = m_folder / "source.srt";
        if (m_scenario.window)
            return {QUELMAR_SAVER, source, Saved(), m_scenario.edited ? "edited" : "unedited"};
        return {QUELMAR_CLI, "shift", "--by", "1", source, Saved()};
    }

    int Execute(const std::vector<std::string>& environment) const {
        const std::vector<std::string> words = Words();
        const pid_t child = fork();
        if (child == 0) {
            for (const std::string& variable : environment)
                putenv(const_cast<char*>(variable.c_str()));
            if (m_scenario.window)
                setenv("QUELMAR_FAULT_WAIT", "1", 1);
            const int silence = open("/dev/null", O_WRONLY);
            dup2(silence, STDERR_FILENO);
            alarm(Hung);
            std::vector<char*> pointers;
            for (const std::string& word : words)
                pointers.push_back(const_cast<char*>(word.c_str()));
            pointers.push_back(nullptr);
            execv(pointers.front(), pointers.data());
            _exit(127);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return status;
    }

    bool CopyHolds(const std::string& firstText) const {
        for (const OrphanCopy& orphan : ClaimOrphans(QString::fromStdString(State().string()))) {
            const auto document = ReadRecoveryCopy(orphan.Bytes());
            if (document && document->titles.Text(1) == firstText)
                return true;
        }
        return false;
    }

    const Scenario& m_scenario;
    const QTemporaryDir m_temporary;
    const std::unique_ptr<PowerlessDisk> m_disk;
    const fs::path m_folder;
    std::string m_before;
    int m_status = 0;
};

struct Count {
    int tried = 0;
    int good = 0;
};

/// What a save gives that nothing goes wrong with.
std::string Wanted(const Scenario& scenario) {
    Trial trial(scenario);
    trial.Run("", 0);
    return Bytes(trial.Saved());
}

Count Try(const Scenario& scenario, const char* kind, const std::string& wanted, long step) {
    Count count;
    const bool full = std::string(kind) == "FULL";
    const long last = full ? static_cast<long>(2 * wanted.size()) : Trial(scenario).Run(kind, 0);
    // Not every kind begins with the first call: of few, others are wanted each time.
    static long turn = 0;
    for (long at = 1 + turn++ * 7 % std::max(1L, std::min(step, last)); at <= last; at += step) {
        Trial trial(scenario);
        trial.Run(kind, at);
        const std::string loss = trial.Loss(wanted, std::string(kind) == "KILL");
        ++count.tried;
        count.good += loss.empty() ? 1 : 0;
        if (!loss.empty())
            std::printf("FAILED: %s, %s at %ld: %s\n", scenario.name, kind, at, loss.c_str());
    }
    return count;
}

/// After the last call the program ends by itself, and what it said must hold.
Count TryPower(const Scenario& scenario, const std::string& wanted, long step) {
    Count count;
    const long last = Trial(scenario).Run("KILL", 0) + 1;
    for (long at = 1; at <= last; at += at < last ? std::min(step, last - at) : 1) {
        Trial trial(scenario, true);
        if (!trial.Ready()) {
            std::printf("no disk can be mounted: that takes root\n");
            return {1, 0};
        }
        trial.Run("KILL", at);
        const std::string loss = trial.Loss(wanted, true);
        ++count.tried;
        count.good += loss.empty() ? 1 : 0;
        if (!loss.empty())
            std::printf("FAILED: %s, power cut at %ld: %s\n", scenario.name, at, loss.c_str());
    }
    return count;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString only = arguments.value(1);
    const long step = std::max(1, arguments.value(2, "1").toInt());
    const bool power = arguments.value(3) == "power";
    Count all;
    for (const Scenario& scenario : Scenarios) {
        if (!only.isEmpty() && (only == "window") != scenario.window)
            continue;
        const std::string wanted = Wanted(scenario);
        if (wanted.empty() || wanted == OtherBytes) {
            std::printf("FAILED: %s saves nothing\n", scenario.name);
            return EXIT_FAILURE;
        }
        const auto add = [&](const char* kind, const Count& count) {
            std::printf("%s, %s: %d of %d\n", scenario.name, kind, count.good, count.tried);
            std::fflush(stdout);
            all.tried += count.tried;
            all.good += count.good;
        };
        if (power)
            add("power cut", TryPower(scenario, wanted, step));
        else
            for (const char* kind : Kinds)
                add(kind, Try(scenario, kind, wanted, step));
    }
    std::printf("%d of %d left the file whole and the titles within reach\n", all.good, all.tried);
    return all.good == all.tried && all.tried > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
