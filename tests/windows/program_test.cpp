#include "app/commandline.h"
#include "app/firstpaint.h"
#include "mainwindow/frmRecover.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <csignal>
#endif

namespace {

TEST(CommandLine, TellsItsTask) {
    using Task = CommandLine::Task;
    const struct {
        QStringList arguments;
        Task task;
    } rows[] = {
        {{}, Task::Run},
        {{"film.avi"}, Task::Run},
        {{"film.avi", "film.srt"}, Task::Run},
        {{"film.avi", "film.srt", "more"}, Task::Run},
        {{"--help"}, Task::Help},
        {{"-h", "film.avi"}, Task::Help},
        {{"--version"}, Task::Version},
        {{"-v"}, Task::Version},
        {{"--recover"}, Task::Recover},
        {{"--recover", "film.avi"}, Task::Wrong},
        {{"--demo", "folder"}, Task::Demo},
        {{"--demo"}, Task::Wrong},
        {{"--demo", "folder", "film.avi"}, Task::Wrong},
        {{"--unknown"}, Task::Wrong},
        {{"--", "--help"}, Task::Run},
    };
    for (const auto& row : rows) {
        const CommandLine line = CommandLine::Parse(row.arguments);
        EXPECT_EQ(line.task, row.task) << row.arguments.join(' ').toStdString();
        EXPECT_EQ(line.complaint.isEmpty(), row.task != Task::Wrong)
            << row.arguments.join(' ').toStdString();
    }
}

TEST(CommandLine, NamesTheFiles) {
    const CommandLine line = CommandLine::Parse({"a film.avi", "its.srt"});
    EXPECT_EQ(line.files, (QStringList{"a film.avi", "its.srt"}));
    EXPECT_EQ(CommandLine::Parse({"--demo", "there"}).demoFolder.toStdString(), "there");
}

struct Result {
    int code = -1;
    QString output;
    QString errors;
};

Result Call(const QStringList& arguments, const QStringList& environment = {},
            const char* name = QUELMAR_PROGRAM) {
    QProcess program;
    program.setEnvironment(QProcess::systemEnvironment() + environment);
    program.start(QString::fromLocal8Bit(name), arguments);
    EXPECT_TRUE(program.waitForFinished(60000));
    return {program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
            QString::fromLocal8Bit(program.readAllStandardOutput()),
            QString::fromLocal8Bit(program.readAllStandardError())};
}

TEST(Program, AnswersWithoutADisplay) {
    const QStringList noDisplay{"QT_QPA_PLATFORM=xcb", "DISPLAY="};
    const Result help = Call({"--help"}, noDisplay);
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.output.startsWith("Usage: quelmar [FILM] [SUBTITLES]\n"));
    EXPECT_TRUE(help.output.contains("in any\norder"));
    const Result version = Call({"--version"}, noDisplay);
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.output.toStdString(), "quelmar " QUELMAR_VERSION "\n");
}

TEST(Program, RefusesWrongArguments) {
    const Result result = Call({"--nonsense"});
    EXPECT_EQ(result.code, 2);
    EXPECT_TRUE(result.errors.contains("quelmar: Unknown option 'nonsense'."));
    EXPECT_EQ(Call({"-platform", "offscreen", "--version"}).code, 0);
}

TEST(Program, HasNothingToRecoverAtFirst) {
    const QTemporaryDir state;
    const Result result = Call({"--recover"}, {"XDG_STATE_HOME=" + state.path()});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output.toStdString(), "There is no unsaved work.\n");
}

QString WriteTitles(const QTemporaryDir& home) {
    QFile subtitles(home.filePath("film.srt"));
    EXPECT_TRUE(subtitles.open(QIODevice::WriteOnly));
    for (int i = 1; i < 10; ++i)
        subtitles.write("1\n00:00:01,000 --> 00:00:02,000\nText\n\n");
    return subtitles.fileName();
}

TEST(Program, ARunTimeErrorEndsItAndKeepsTheWork) {
    const QTemporaryDir home;
    const Result result =
        Call({WriteTitles(home), home.filePath("saved.srt"), "1", "7"},
             {"XDG_STATE_HOME=" + home.path(), "XDG_CONFIG_HOME=" + home.path()}, QUELMAR_EDITED);
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(result.errors.contains(
        "Run-time error '6':\n\nOverflow\n\nYour unsaved work is kept, and will be offered when "
        "the program is started again."))
        << result.errors.toStdString();
    const auto works = FindRecoverableWork(home.filePath("Tevo/Quelmar"));
    ASSERT_EQ(works.size(), 1U);
    // The change right before the error is in it.
    EXPECT_EQ(works[0].document.titles.Text(1), "edit 7");
    EXPECT_FALSE(works[0].document.stamp.declined);
}

#ifdef Q_OS_LINUX

/// A display in memory that can be taken away.
class Display {
  public:
    Display() {
        m_server.start("Xvfb", {"-displayfd", "1"});
        EXPECT_TRUE(m_server.waitForReadyRead(20000)) << "Xvfb does not start";
        m_name = ":" + QString::fromLatin1(m_server.readLine()).trimmed();
    }
    ~Display() { End(); }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    QStringList Environment() const { return {"QT_QPA_PLATFORM=xcb", "DISPLAY=" + m_name}; }
    void End() {
        m_server.kill();
        m_server.waitForFinished();
    }

  private:
    QProcess m_server;
    QString m_name;
};

struct LogoutRow {
    const char* name;
    void (*end)(QProcess& program, Display& display);
};

class Logout : public testing::TestWithParam<LogoutRow> {};

TEST_P(Logout, KeepsTheWork) {
    const QTemporaryDir home;
    Display display;
    const QString copies = home.filePath("Tevo/Quelmar");
    QProcess program;
    program.setEnvironment(
        QProcess::systemEnvironment() + display.Environment() +
        QStringList{"XDG_STATE_HOME=" + home.path(), "XDG_CONFIG_HOME=" + home.path()});
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QUELMAR_EDITED, {WriteTitles(home), QString(), "1"});
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !QDir(copies).entryList({"*.recovery"}, QDir::Files).isEmpty(); }, 30000))
        << program.readAll().toStdString();
    GetParam().end(program, display);
    ASSERT_TRUE(program.waitForFinished(30000));
    const auto works = FindRecoverableWork(copies);
    ASSERT_EQ(works.size(), 1U);
    EXPECT_TRUE(works[0].document.titles.Text(1).starts_with("edit "));
    EXPECT_FALSE(works[0].document.stamp.declined);
}

INSTANTIATE_TEST_SUITE_P(Rows, Logout,
                         testing::Values(LogoutRow{"AskedToGo",
                                                   [](QProcess& program, Display&) {
                                                       program.terminate();
                                                   }},
                                         LogoutRow{"HungUp",
                                                   [](QProcess& program, Display&) {
                                                       ::kill(
                                                           static_cast<pid_t>(program.processId()),
                                                           SIGHUP);
                                                   }},
                                         LogoutRow{"WithoutItsDisplay",
                                                   [](QProcess&, Display& display) {
                                                       display.End();
                                                   }}),
                         [](const auto& row) { return std::string(row.param.name); });

#endif

TEST(FirstPaint, RunsOnceAfterIt) {
    QWidget window;
    int runs = 0;
    new AfterFirstPaint(window, [&] { ++runs; });
    EXPECT_EQ(runs, 0);
    window.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs > 0; }, 900));
    window.update();
    QTest::qWait(20);
    EXPECT_EQ(runs, 1);
}

TEST(FirstPaint, DoesNotWaitForAWindowThatIsNeverPainted) {
    QWidget window;
    int runs = 0;
    new AfterFirstPaint(window, [&] { ++runs; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs > 0; }, 30'000));
}

} // namespace
