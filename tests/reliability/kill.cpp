// Kills the program at random moments while titles are edited, placed and saved, and
// looks at what is left: quelmar_kill [RUNS [SEED [power]]]. With "power" the disk loses
// its power as well: what was not flushed to it is gone. Fails when anything older than
// one second before the kill is all that can be recovered, when what is recovered was
// never in the list, or when a copy is torn.

#include "formats/load.h"
#include "formats/recoverycopy.h"
#include "platform/recoverystore.h"
#include "tests/reliability/powerless.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <random>
#include <vector>

namespace {

constexpr int MostLost = 1000;
constexpr int TitleCount = 1500;

struct Edit {
    long long moment = 0;
    std::uint64_t fingerprint = 0;
};

long long Now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void WriteSubtitles(const QString& name) {
    SUBTITLES titles;
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return;
    for (int i = 1; i <= TitleCount; ++i)
        file.write(QStringLiteral("%1\n00:%2:%3,000 --> 00:%2:%3,900\nTitle number %1\n\n")
                       .arg(i)
                       .arg(i / 60, 2, 10, QChar('0'))
                       .arg(i % 60, 2, 10, QChar('0'))
                       .toLatin1());
}

/// The edit that the titles were left by; 0 for the file as it was at first.
int EditOf(const SUBTITLES& titles) {
    int edit = 0;
    std::sscanf(titles.Text(1).c_str(), "edit %d", &edit);
    return edit;
}

struct Outcome {
    bool good = false;
    long long lost = 0;
    int edits = 0;
    bool copied = false;
};

std::map<int, Edit> Journal(const QByteArray& output) {
    std::map<int, Edit> journal;
    for (const QByteArray& line : output.split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 3)
            journal[words[0].toInt()] = {words[1].toLongLong(), words[2].toULongLong()};
    }
    return journal;
}

Outcome Complain(Outcome outcome, const char* what, int recovered) {
    std::printf("FAILED: %s (edit %d of %d)\n", what, recovered, outcome.edits);
    return outcome;
}

Outcome Examine(const QString& folder, const QString& saved, const QByteArray& output,
                long long killed) {
    const std::map<int, Edit> journal = Journal(output);
    Outcome outcome;
    outcome.edits = journal.empty() ? 0 : journal.rbegin()->first;

    int recovered = 0;
    for (const OrphanCopy& orphan : ClaimOrphans(folder)) {
        const auto document = ReadRecoveryCopy(orphan.Bytes());
        if (!document)
            return Complain(outcome, "a torn copy", 0);
        outcome.copied = true;
        recovered = std::max(recovered, EditOf(document->titles));
        // The last edit may have come into the copy before it was told of.
        const auto told = journal.find(EditOf(document->titles));
        const std::uint64_t is = RecoveryBody(document->titles, {}).TitlesFingerprint();
        if (told != journal.end() && told->second.fingerprint != is)
            return Complain(outcome, "a copy of titles that never were", recovered);
    }
    if (!outcome.copied && QFile::exists(saved)) {
        // Without a copy, the last save must have written everything.
        SUBTITLES titles;
        FileStyle style;
        const LoadResult result =
            LoadTitles(saved.toStdString(), "windows-1252", titles, style, {});
        if (result.outcome != LoadOutcome::Complete)
            return Complain(outcome, "neither a copy nor a whole file", 0);
        recovered = std::max(recovered, EditOf(titles));
    }
    for (const auto& [edit, told] : journal)
        if (edit > recovered) {
            outcome.lost = killed - told.moment;
            break;
        }
    if (outcome.lost > MostLost)
        return Complain(outcome, "more than a second was lost", recovered);
    outcome.good = true;
    return outcome;
}

Outcome KillOnce(std::mt19937& random, bool power) {
    const QTemporaryDir folder;
    std::optional<PowerlessDisk> disk;
    if (power && !disk.emplace(folder.path()).Mounted()) {
        std::puts("FAILED: no disk could be mounted, which takes root and loop devices");
        return {};
    }
    const QDir home(disk ? disk->Path() : folder.path());
    const QString subtitles = home.filePath("film.srt");
    const QString saved = home.filePath("saved.srt");
    WriteSubtitles(subtitles);
    if (disk)
        disk->Flush();
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_STATE_HOME", home.filePath("state"));
    environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QUELMAR_EDITED, {subtitles, saved, QString::number(random())});
    // Anywhere from the first edit on.
    if (!program.waitForReadyRead(20000)) {
        std::puts("FAILED: the program did not begin");
        return {};
    }
    QElapsedTimer running;
    running.start();
    const auto lifetime = static_cast<qint64>(random() % 2500);
    QByteArray output;
    while (running.elapsed() < lifetime) {
        program.waitForReadyRead(static_cast<int>(lifetime - running.elapsed()) + 1);
        output += program.readAllStandardOutput();
    }
    const long long killed = Now();
    program.kill();
    program.waitForFinished();
    output += program.readAllStandardOutput();
    if (disk && !disk->CutPower()) {
        std::puts("FAILED: the disk cannot be mounted any more");
        return {};
    }
    return Examine(home.filePath("state/Tevo/Quelmar"), saved, output, killed);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int runs = arguments.value(1, "200").toInt();
    std::mt19937 random(arguments.value(2, "1").toUInt());
    const bool power = arguments.value(3) == "power";
    std::vector<long long> lost;
    int good = 0;
    int copied = 0;
    long long edits = 0;
    for (int run = 1; run <= runs; ++run) {
        const Outcome outcome = KillOnce(random, power);
        good += outcome.good ? 1 : 0;
        copied += outcome.copied ? 1 : 0;
        edits += outcome.edits;
        lost.push_back(outcome.lost);
    }
    std::sort(lost.begin(), lost.end());
    std::printf("%d %s after %lld edits: %d recovered, %d from a copy and %d from the saved "
                "file; lost at most %lld ms of work, half of the time at most %lld ms\n",
                runs, power ? "power cuts" : "kills", edits, good, copied, runs - copied,
                lost.back(), lost[lost.size() / 2]);
    return good == runs ? EXIT_SUCCESS : EXIT_FAILURE;
}
