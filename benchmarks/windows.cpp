// Drives the real windows and prints what a person waits for. Every start is a
// process of its own: this program runs itself, once for each figure and run, in
// turns, and takes medians. `windows [RUNS]`; offscreen unless QT_QPA_PLATFORM says otherwise.

#include "benchmarks/generating.h"
#include "benchmarks/growing.h"
#include "dialogs/frmEdit.h"
#include "formats/recoverycopy.h"
#include "formats/save.h"
#include "listeditor/frmList.h"
#include "mainwindow/frmQuelmar.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractTableModel>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Counts[] = {1500, 32700, 1000000};
constexpr const char* Memory = "memory, MB";
// Milliseconds for a title. What is quicker moves memory, which is at hand for few
// titles and far away for a million: that is not the list's growth.
constexpr double SpeedOfMemory = 1e-5;

double Milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

double Since(Clock::time_point start) {
    return Milliseconds(Clock::now() - start);
}

/// Kilobytes of memory that belong to this process now.
double ResidentKilobytes() {
    QFile status("/proc/self/statm");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').at(1).toDouble() * 4;
}

class Rows : public QAbstractTableModel {
  public:
    explicit Rows(int count)
        : m_count(count) {}
    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : m_count;
    }
    int columnCount(const QModelIndex&) const override { return 3; }
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? QVariant(QString::number(index.row())) : QVariant();
    }

  private:
    int m_count;
};

/// Lets everything happen that is due: painting, posted calls, short timers.
void Settle() {
    for (int quiet = 0; quiet < 3; ++quiet)
        QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void Print(const char* name, double value) {
    std::printf("%s %.4f\n", name, value);
}

/// The moment at which the parent started this process, on the same clock.
Clock::time_point ProcessStart(const char* text) {
    return Clock::time_point(Clock::duration(std::strtoll(text, nullptr, 10)));
}

void BareTable(Clock::time_point start, int rows) {
    Rows model(rows);
    QTableView view;
    view.setModel(&model);
    view.resize(900, 640);
    view.show();
    Settle();
    Print("start", Since(start));
}

void EmptyStart(Clock::time_point start) {
    frmQuelmar window;
    window.show();
    Settle();
    Print("start", Since(start));
}

void FilledStart(Clock::time_point start, const QString& film, const QString& subtitles) {
    frmQuelmar window;
    window.show();
    Settle();
    Connection connection = window.document().Subscribe([&](const Change&) {
        Print("titles are in", Since(start));
        connection = {};
    });
    window.OpenFiles(film, subtitles);
    Settle();
    Print("film is ready too", Since(start));
}

frmList* OpenEditor(frmQuelmar& window) {
    window.findChild<QAbstractButton*>("cmdEdit")->click();
    for (QWidget* top : QApplication::topLevelWidgets())
        if (auto* list = qobject_cast<frmList*>(top))
            return list;
    return nullptr;
}

double Timed(const std::function<void()>& act) {
    const auto start = Clock::now();
    act();
    Settle();
    return Since(start);
}

/// The work of one command alone, without the painting that follows.
double Worked(const std::function<void()>& act) {
    const auto start = Clock::now();
    act();
    return Since(start);
}

/// Presses the OK of the modal dialog that is about to open, after filling in what is given.
void AnswerNext(const std::map<QString, QString>& texts) {
    QTimer::singleShot(0, [texts] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        for (const auto& [name, text] : texts)
            dialog->findChild<QLineEdit*>(name)->setText(text);
        dialog->findChild<QAbstractButton*>("cmdOK")->click();
    });
}

void Editor(const QString& file, int count) {
    frmQuelmar window;
    window.show();
    window.OpenFiles({}, file);
    window.findChild<QAbstractButton*>("cmdEdit")->setEnabled(true);
    Settle();
    const double before = ResidentKilobytes();
    frmList* list = nullptr;
    Print("open", Timed([&] { list = OpenEditor(window); }));
    Print(Memory, (ResidentKilobytes() - before) / 1024);
    double longest = 0;
    for (int copy = 0; copy < 50; ++copy)
        longest = std::max(longest,
                           Worked([&] { const RecoveryBody body(window.Subt, window.Notes()); }));
    Print("laid out for the recovery copy, worst of 50", longest);
    auto* rows = list->findChild<QAbstractItemView*>("LV");
    rows->setCurrentIndex(rows->model()->index(count / 2, 0));
    Print("edit one (Longer)", Worked([&] { list->DoCommand("Longer"); }));
    Print("insert one", Worked([&] { list->DoCommand("Insert"); }));
    Print("undo one", Worked([&] { list->DoCommand("Undo"); }));
    rows->selectAll();
    Print("Later on all", Timed([&] { list->DoCommand("Later"); }));
    AnswerNext({{"txtSec", "2.000"}});
    Print("shift all", Timed([&] { list->DoCommand("Shift"); }));
    AnswerNext({});
    Print("stretch all", Timed([&] { list->DoCommand("Stretch"); }));
    Print("spelling of all", Timed([&] { list->DoCommand("Spelling"); }));
}

/// Opens the list editor and stays, for who looks from outside at how long that takes.
int StayInEditor(const QString& file) {
    frmQuelmar window;
    window.show();
    window.OpenFiles({}, file);
    window.findChild<QAbstractButton*>("cmdEdit")->setEnabled(true);
    OpenEditor(window);
    return QApplication::exec();
}

/// What the display timer costs while a film plays and no title changes.
void Tick(const QString& film, const QString& subtitles) {
    frmQuelmar window;
    window.show();
    window.OpenFiles(film, subtitles);
    Settle();
    window.findChild<QAbstractButton*>("mpPlay")->click();
    Settle();
    auto* timer = window.findChild<QTimer*>("Timer1");
    constexpr int ticks = 500;
    Clock::duration spent{};
    for (int i = 0; i < ticks; ++i) {
        // Far enough apart that each one has a new time to show.
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        QTimerEvent due(timer->timerId());
        const auto start = Clock::now();
        QCoreApplication::sendEvent(timer, &due);
        spent += Clock::now() - start;
    }
    Print(timer->isActive() ? "one tick" : "one tick, not playing", Milliseconds(spent) / ticks);
}

/// What a person sees of a title that no screen can hold.
void Huge(const QString& film, const QString& subtitles) {
    frmQuelmar window;
    window.show();
    window.OpenFiles(film, {});
    Settle();
    Print("read", Timed([&] { window.OpenFiles({}, subtitles); }));
    window.findChild<QAbstractButton*>("mpPlay")->click();
    Settle();
    Print("shown with the film", Timed([&] { window.MediaPosition(1.5); }));
    frmList* list = nullptr;
    Print("list editor", Timed([&] { list = OpenEditor(window); }));
    auto* rows = list->findChild<QAbstractItemView*>("LV");
    Print("its row selected", Timed([&] { rows->setCurrentIndex(rows->model()->index(0, 0)); }));
    Print("edited in its row", Timed([&] { rows->edit(rows->model()->index(0, 0)); }));
    rows->setFocus();
    Print("edit dialog", Timed([&] { (new frmEdit(*list, list))->show(); }));
}

int Child(const QStringList& arguments) {
    const auto start = ProcessStart(arguments.at(3).toLatin1().constData());
    const QString& mode = arguments.at(2);
    if (mode == "bare")
        BareTable(start, arguments.at(4).toInt());
    else if (mode == "empty")
        EmptyStart(start);
    else if (mode == "filled")
        FilledStart(start, arguments.at(4), arguments.at(5));
    else if (mode == "editor")
        Editor(arguments.at(4), arguments.at(5).toInt());
    else if (mode == "stay")
        return StayInEditor(arguments.at(4));
    else if (mode == "huge")
        Huge(arguments.at(4), arguments.at(5));
    else if (mode == "tick")
        Tick(arguments.at(4), arguments.at(5));
    std::fflush(stdout);
    // The windows are measured, not their closing with unsaved titles.
    std::_Exit(0);
}

struct Series {
    QString title;
    QStringList arguments;
    std::map<std::string, std::vector<double>> figures;
    std::vector<std::string> order;
};

void RunOnce(Series& series) {
    QProcess child;
    child.setProcessChannelMode(QProcess::SeparateChannels);
    QStringList arguments{"--child", series.arguments.first(),
                          QString::number(Clock::now().time_since_epoch().count())};
    arguments += series.arguments.mid(1);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    child.waitForFinished(-1);
    const QByteArray output = child.readAllStandardOutput();
    for (const QByteArray& line : output.split('\n')) {
        const auto blank = line.lastIndexOf(' ');
        if (blank < 0)
            continue;
        const std::string name = line.left(blank).toStdString();
        if (!series.figures.contains(name))
            series.order.push_back(name);
        series.figures[name].push_back(line.mid(blank + 1).toDouble());
    }
}

QString WriteTitles(const QTemporaryDir& folder, int count) {
    QString name = folder.filePath(QString::number(count) + ".srt");
    SaveTitles(name.toStdString(), "windows-1252", GeneratedTitles(count), {}, {});
    return name;
}

std::map<QString, std::string> HugeTexts() {
    std::string marks = "e";
    for (int i = 0; i < 100'000; ++i)
        marks += "\xCC\x81";
    std::string lines;
    for (int i = 0; i < 1'000'000; ++i)
        lines += "x\r\n";
    return {{"a line of 5 MB", std::string(5'000'000, 'x')},
            {"a letter with 100,000 marks", marks},
            {"a title of a million lines", lines}};
}

QString WriteText(const QTemporaryDir& folder, const QString& name, const std::string& text) {
    SUBTITLES titles;
    titles.Add(1, 3, text);
    titles.Add(4, 5, "the next one");
    QString file = folder.filePath(name + ".srt");
    SaveTitles(file.toStdString(), "windows-1252", titles, {}, {});
    return file;
}

/// How the list editor's figures grow with the titles, by the least times of all runs.
/// Whether every one of them stays within the limit.
bool PrintGrowth(std::span<const Series> editors) {
    bool within = true;
    std::printf("\n| list editor, from titles to titles");
    for (std::size_t i = 1; i < std::size(Counts); ++i)
        std::printf(" | %d to %d", Counts[i - 1], Counts[i]);
    std::printf(" |\n|---|---|---|\n");
    for (const std::string& name : editors.front().order) {
        std::printf("| growth exponent: %s", name.c_str());
        for (std::size_t i = 1; i < std::size(Counts); ++i) {
            const double larger = editors[i].figures.at(name).front();
            const double exponent = GrowthExponent(larger / editors[i - 1].figures.at(name).front(),
                                                   static_cast<double>(Counts[i]) / Counts[i - 1]);
            const bool steep = exponent > MostGrowth && larger / Counts[i] > SpeedOfMemory;
            std::printf(" | %.2f%s", exponent, steep ? " MISSED" : "");
            within = within && !steep;
        }
        std::printf(" |\n");
    }
    // The window's own memory is the same for all, so the difference is the rows'.
    std::printf("| bytes a row");
    for (std::size_t i = 1; i < std::size(Counts); ++i)
        std::printf(" | %.0f", (editors[i].figures.at(Memory).front() -
                                editors[i - 1].figures.at(Memory).front()) *
                                   1024 * 1024 / (Counts[i] - Counts[i - 1]));
    std::printf(" |\n");
    return within;
}

int Parent(int runs) {
    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    qputenv("XDG_STATE_HOME", folder.path().toUtf8());
    const QString film = folder.filePath("film.avi");
    QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "testsrc=size=640x360:rate=25",
                                 "-t", "5", "-c:v", "mpeg4", film});
    std::vector<Series> all;
    all.push_back({"bare table, 1,500 rows", {"bare", "1500"}, {}, {}});
    all.push_back({"program, empty", {"empty"}, {}, {}});
    all.push_back(
        {"program, film and 1,500 titles", {"filled", film, WriteTitles(folder, 1500)}, {}, {}});
    all.push_back({"display timer", {"tick", film, WriteTitles(folder, 1500)}, {}, {}});
    for (const auto& [name, text] : HugeTexts())
        all.push_back({name, {"huge", film, WriteText(folder, name, text)}, {}, {}});
    const std::size_t editors = all.size();
    for (const int count : Counts)
        all.push_back({QString("list editor, %L1 titles").arg(count),
                       {"editor", WriteTitles(folder, count), QString::number(count)},
                       {},
                       {}});
    for (int run = 0; run < runs; ++run)
        for (Series& series : all)
            RunOnce(series);

    std::printf("| what | figure | median | least | most |\n|---|---|---|---|---|\n");
    for (Series& series : all)
        for (const std::string& name : series.order) {
            std::vector<double>& values = series.figures[name];
            std::sort(values.begin(), values.end());
            std::printf("| %s | %s | %.4f | %.4f | %.4f |\n", series.title.toUtf8().constData(),
                        name.c_str(), values[values.size() / 2], values.front(), values.back());
        }
    return PrintGrowth(std::span(all).subspan(editors)) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QUELMAR_AUDIO", "null");
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 3 && arguments.at(1) == "--child")
        return Child(arguments);
    return Parent(arguments.size() > 1 ? arguments.at(1).toInt() : 5);
}
