#pragma once

#include <QString>
#include <QStringList>

/// What the program was given to open.
struct NamedFiles {
    QString media;
    QString subtitles;
    /// One film and one subtitle file are opened; these are left, each once.
    QStringList others;
};

/// Tells films from subtitles, in whatever order they are named: subtitles are texts that
/// bear a subtitle format's extension or begin like one. What is not there is told by its
/// extension. Reads the beginning of each file.
NamedFiles TellApart(const QStringList& files);

/// Tells people which files were not opened; empty when there are none.
QString LeftOutText(const QStringList& others);

/// The subtitle file that lies beside a film and has its name; empty when there is none.
QString SubtitlesBeside(const QString& media);
