// Lets the share die under the program and looks at what becomes of the window and of the
// work: quelmar_deadshare [faults|fuse] [STEP]. faults: calls on the share's files do not come
// back; with a STEP, every STEPth call of a save is tried. fuse: a share that is mounted and
// stops to answer; takes root and /dev/fuse.

#include "base/wholefile.h"
#include "formats/recoverycopy.h"
#include "platform/recoverystore.h"
#include "tests/reliability/dyingshare.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

namespace {

constexpr int Patience = 60'000;
/// Of a window that hangs; what it stands still at most is printed.
constexpr long long Frozen = 5000;
constexpr const char* Titles = "1\r\n00:00:01,000 --> 00:00:02,000\r\nOne\r\n\r\n";

QByteArray Bytes(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One program whose share dies.
class Trial {
  public:
    explicit Trial(bool stateOnShare = false)
        : m_state(stateOnShare ? Share() : In("state")) {
        for (const QString& folder : {Share(), In("state"), In("config")})
            QDir().mkpath(folder);
    }

    QString In(const QString& name) const { return m_folder.filePath(name); }
    QString Share() const { return In("share"); }

    void PutFiles() const {
        for (const auto& [name, bytes] : Files()) {
            QFile file(Share() + '/' + QString::fromStdString(name));
            if (file.open(QIODevice::WriteOnly))
                file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        }
    }
    static std::map<std::string, std::string> Files() {
        return {{"film.avi", Bytes(QUELMAR_FILM).toStdString()},
                {"film.srt", Titles},
                {"other.srt", Titles}};
    }

    /// `at`: the call from which on nothing comes back; 0 counts them, below 0 none is
    /// counted. `opened` is called when the share is to die.
    void Run(const QString& what, long at, const std::function<void()>& opened) {
        QProcess program;
        QStringList environment = QProcess::systemEnvironment();
        environment << "XDG_STATE_HOME=" + m_state << "XDG_CONFIG_HOME=" + In("config")
                    << "HOME=" + In("config");
        if (at >= 0)
            environment << "LD_PRELOAD=" QUELMAR_FAULTS << "QUELMAR_FAULT_FOLDER=" + Share()
                        << QStringLiteral("QUELMAR_FAULT=%1").arg(at == 0 ? "EIO" : "HANG")
                        << QStringLiteral("QUELMAR_FAULT_AT=%1").arg(at)
                        << "QUELMAR_FAULT_REPORT=" + In("calls");
        if (what != "restore")
            environment << "QUELMAR_FAULT_WAIT=1";
        program.setEnvironment(environment);
        program.setWorkingDirectory(In("config"));
        program.start(QUELMAR_STRANDED,
                      {what, Share() + "/film.avi", Share() + "/film.srt", Share() + "/other.srt",
                       Share() + "/film.srt", In("local.srt"), In("dead")});
        Listen(program, opened);
        m_ended = program.state() == QProcess::NotRunning &&
                  program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0;
        if (program.state() != QProcess::NotRunning)
            program.kill();
        program.waitForFinished();
    }

    long Calls() const { return Bytes(In("calls")).toLong(); }
    long long StoodStill() const { return m_stoodStill; }
    long long LeftIn() const { return m_leftIn; }
    std::string Loss() const {
        if (!m_wrong.isEmpty())
            return m_wrong.toStdString();
        if (!m_leaving)
            return "the window hung";
        if (!m_ended)
            return "the program did not end by itself";
        return m_stoodStill > Frozen ? "the window froze" : "";
    }
    bool CopyHolds(const std::string& text) const {
        for (const OrphanCopy& orphan : ClaimOrphans(In("state") + "/Tevo/Quelmar")) {
            const auto document = ReadRecoveryCopy(orphan.Bytes());
            if (document && document->titles.Text(1) == text)
                return true;
        }
        return false;
    }

  private:
    void Listen(QProcess& program, const std::function<void()>& opened) {
        QElapsedTimer waited;
        waited.start();
        QElapsedTimer left;
        while (!waited.hasExpired(Patience) && program.state() != QProcess::NotRunning) {
            program.waitForReadyRead(50);
            while (program.canReadLine()) {
                const QString line = QString::fromUtf8(program.readLine()).trimmed();
                if (line == "opened")
                    opened();
                else if (line.startsWith("wrong"))
                    m_wrong = line;
                else if (line.startsWith("stood still"))
                    m_stoodStill = line.section(' ', 3, 3).toLongLong();
                else if (line == "leaving") {
                    m_leaving = true;
                    left.start();
                }
            }
        }
        m_leftIn = left.isValid() ? left.elapsed() : -1;
    }

    const QTemporaryDir m_folder;
    const QString m_state;
    QString m_wrong;
    bool m_leaving = false;
    bool m_ended = false;
    long long m_stoodStill = -1;
    long long m_leftIn = -1;
};

bool Report(const char* name, const Trial& trial, const std::string& loss) {
    std::printf("%s: %s, stood still for at most %lld ms, ended after %lld ms\n", name,
                loss.empty() ? "good" : loss.c_str(), trial.StoodStill(), trial.LeftIn());
    std::fflush(stdout);
    return loss.empty();
}

std::string LossOfAll(const Trial& trial, bool stateLives) {
    if (const std::string loss = trial.Loss(); !loss.empty())
        return loss;
    if (!Bytes(trial.In("local.srt")).contains("edited"))
        return "what was saved elsewhere is not there";
    return !stateLives || trial.CopyHolds("again") ? "" : "what was edited last is nowhere";
}

bool TryFaults(bool stateOnShare) {
    Trial trial(stateOnShare);
    trial.PutFiles();
    trial.Run("all", 1, [&] { QFile(trial.In("dead")).open(QIODevice::WriteOnly); });
    return Report(stateOnShare ? "film, subtitles and state folder" : "film and subtitles", trial,
                  LossOfAll(trial, !stateOnShare));
}

bool TryRestore() {
    Trial trial;
    trial.PutFiles();
    SUBTITLES titles;
    titles.Add(1, 2, "kept");
    RecoveryNotes notes;
    notes.mediaFile = (trial.Share() + "/film.avi").toStdString();
    notes.subtitleFile = (trial.Share() + "/film.srt").toStdString();
    {
        RecoveryStore store(trial.In("state") + "/Tevo/Quelmar");
        store.Post([&] {
            return std::optional(
                SealRecoveryCopy({titles, notes}, {QDateTime::currentSecsSinceEpoch(), false}));
        });
    }
    trial.Run("restore", 1, [] {});
    std::string loss = trial.Loss();
    if (loss.empty() && !trial.CopyHolds("kept"))
        loss = "the work is gone";
    return Report("restoring", trial, loss);
}

bool TryFuse() {
    Trial trial;
    DyingShare share(trial.Share().toStdString(), Trial::Files());
    if (!share.Mounted()) {
        std::printf("no share can be mounted: that takes root and /dev/fuse\n");
        return false;
    }
    trial.Run("all", -1, [&] {
        share.Die();
        QFile(trial.In("dead")).open(QIODevice::WriteOnly);
    });
    return Report("film and subtitles, mounted", trial, LossOfAll(trial, true));
}

bool TrySave(long step) {
    Trial counting;
    counting.PutFiles();
    counting.Run("save", 0, [] {});
    const long calls = counting.Calls();
    const QByteArray wanted = Bytes(counting.Share() + "/film.srt");
    bool good = calls > 0 && wanted.contains("edited") && counting.Loss().empty();
    if (!good)
        std::printf("nothing is saved: %s\n", counting.Loss().c_str());
    for (long at = 1; at <= calls; at += step) {
        Trial trial;
        trial.PutFiles();
        trial.Run("save", at, [] {});
        std::string loss = trial.Loss();
        const QByteArray now = Bytes(trial.Share() + "/film.srt");
        if (loss.empty() && now != wanted && now != QByteArray(Titles))
            loss = "the file is neither the old one nor the new one";
        if (loss.empty() && now != wanted && !trial.CopyHolds("edited"))
            loss = "the titles are nowhere";
        const QByteArray name = "save, dead at call " + QByteArray::number(qlonglong(at));
        good = Report(name.constData(), trial, loss) && good;
    }
    return good;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool fuse = arguments.value(1) == "fuse";
    const long step = std::max(1, arguments.value(2, "1").toInt());
    bool good = true;
    if (fuse) {
        good = TryFuse();
    } else {
        for (const bool stateOnShare : {false, true})
            good = TryFaults(stateOnShare) && good;
        good = TryRestore() && good;
        good = TrySave(step) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
