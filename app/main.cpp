#include "app/application.h"
#include "app/commandline.h"
#include "app/demo.h"
#include "app/program.h"
#include "platform/paths.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

void Print(FILE* to, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), to);
    std::fflush(to);
}

/// Answers that need no window, and no display either.
std::optional<int> AnswerAtOnce(const CommandLine& line) {
    switch (line.task) {
    case CommandLine::Task::Help:
        Print(stdout, CommandLine::HelpText());
        return EXIT_SUCCESS;
    case CommandLine::Task::Version:
        Print(stdout, QStringLiteral("quelmar " QUELMAR_VERSION "\n"));
        return EXIT_SUCCESS;
    case CommandLine::Task::Wrong:
        Print(stderr, "quelmar: " + line.complaint + "\n" + CommandLine::HelpText());
        return 2;
    default:
        return std::nullopt;
    }
}

QStringList Arguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
#ifdef Q_OS_WIN
        arguments << QString::fromLocal8Bit(argv[i]);
#else
        arguments << NameOfBytes(argv[i]);
#endif
    return arguments;
}

/// Without those that the toolkit took.
QStringList ArgumentsLeft(int argc, char** argv) {
#ifdef Q_OS_WIN
    Q_UNUSED(argc)
    Q_UNUSED(argv)
    return Application::arguments().mid(1);
#else
    return Arguments(argc, argv);
#endif
}

} // namespace

int main(int argc, char** argv) {
    const CommandLine early = CommandLine::Parse(Arguments(argc, argv));
    if (early.task != CommandLine::Task::Wrong)
        if (const auto answered = AnswerAtOnce(early))
            return *answered;
    // Takes out what the toolkit understands (-platform, -style).
    Application application(argc, argv);
    const CommandLine line = CommandLine::Parse(ArgumentsLeft(argc, argv));
    if (const auto answered = AnswerAtOnce(line))
        return *answered;
    switch (line.task) {
    case CommandLine::Task::Demo:
        return RunDemo(line.demoFolder);
    case CommandLine::Task::Recover:
        return RunRecovery();
    default:
        return RunProgram(line.files);
    }
}
