#pragma once

#include <QString>
#include <QStringList>

/// What the program was called for.
struct CommandLine {
    enum class Task { Run, Recover, Demo, Help, Version, Wrong };

    Task task = Task::Run;
    QStringList files;
    /// Where the demonstration leaves what it made.
    QString demoFolder;
    /// What is wrong with a wrong one.
    QString complaint;

    /// The arguments without the program's name.
    static CommandLine Parse(const QStringList& arguments);
    static QString HelpText();
};
