#include "app/commandline.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

CommandLine CommandLine::Parse(const QStringList& arguments) {
    const QCommandLineOption help(QStringList{"h", "help"});
    const QCommandLineOption version(QStringList{"v", "version"});
    const QCommandLineOption recover("recover");
    const QCommandLineOption demo("demo", {}, "folder");
    QCommandLineParser parser;
    parser.addOptions({help, version, recover, demo});

    CommandLine line;
    // The parser expects the program's name in front.
    if (!parser.parse(QStringList("quelmar") + arguments)) {
        line.task = Task::Wrong;
        line.complaint = parser.errorText();
        return line;
    }
    line.files = parser.positionalArguments();
    line.demoFolder = parser.value(demo);
    if (parser.isSet(help))
        line.task = Task::Help;
    else if (parser.isSet(version))
        line.task = Task::Version;
    else if ((parser.isSet(recover) || parser.isSet(demo)) && !line.files.empty()) {
        line.task = Task::Wrong;
        line.complaint = QStringLiteral("Too many file names.");
    } else if (parser.isSet(demo))
        line.task = Task::Demo;
    else if (parser.isSet(recover))
        line.task = Task::Recover;
    return line;
}

QString CommandLine::HelpText() {
    return QStringLiteral(
        "Usage: quelmar [FILM] [SUBTITLES]\n"
        "Fits the timing of a subtitle file to a film. The two files may be named in any\n"
        "order; they are told apart by what they hold. Any more files are left out.\n"
        "\n"
        "      --recover      show unsaved work that was kept, and restore it\n"
        "      --demo FOLDER  play the sample film, place three titles and save; the\n"
        "                     saved file and pictures of the window go to FOLDER\n"
        "  -h, --help         show this help\n"
        "  -v, --version      show the version\n");
}
