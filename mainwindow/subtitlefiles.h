#pragma once

#include "mainwindow/filesaver.h"
#include "mainwindow/mainstate.h"
#include "platform/messageboxes.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

struct LoadResult;
struct MendOffer;
class QWidget;

/// Reads and writes the document's titles, with the questions and dialogs around that.
class SubtitleFiles : public QObject {
    Q_OBJECT

  public:
    SubtitleFiles(MainState& state, QWidget* window);

    /// The file dialog starts at its last name without the extension.
    void PrepareStartingName();
    /// Asks about changes and for a file to open or to begin. Nothing: neither.
    std::optional<QString> Browse();
    /// Asks about changes. false: nothing was decided, so the titles must stay. Whatever
    /// else becomes of them, they may give way.
    bool SaveIfWished();

    /// There is work to lose: the document says so, or its titles are not those of the
    /// last load, save or answered question.
    bool Changed() const;
    /// Of a film, asks which of its subtitles. false: the document is the one it was.
    bool LoadSubtitles(const QString& name);
    /// Asks for a code page, and reads the file at hand once more in that.
    void ReadAs();
    /// One title from 1 s to 2 s in place of the document.
    void StartNewFile();
    /// false: the titles are not in a file.
    bool SaveSubtitles();

  signals:
    /// There is a document that can be edited and saved.
    void Opened();
    /// The file was read in this code page; empty: it is Unicode.
    void ReadIn(const QString& codePage, bool guessed);
    void SaveDeclined();
    void FileEmptying();
    /// The document is the tolerant reading of its file, with what was mended (empty: it is
    /// what the file holds).
    void Mended(const QString& what);

  private:
    Decision AskSaveFirst();
    bool LoadSubtitles(const QString& name, const std::string& codePage);
    LoadResult LoadDocument(const QString& name, const std::string& codePage);
    bool LoadFromFilm(const QString& film);
    void Offer(const MendOffer& offer);
    /// The titles are there, and no file holds them yet.
    void OpenedWithoutFile();
    /// `named`: what the file says of itself.
    double AskFrameRate(std::optional<double> named = {});
    /// The titles as they are now need no question any more.
    void Settle();

    MainState& m_state;
    QWidget* m_window;
    std::string m_codePage;
    FileSaver m_saver;
    Connection m_connection;
    /// The open dialog's filter that was used last.
    QString m_filter = QStringLiteral("All subtitle files");
    /// The titles that need no question, and the count of their changes; nothing before
    /// the first file.
    std::optional<std::size_t> m_settledTitles;
    std::uint64_t m_settledChanges = 0;
};

/// The name that a file dialog opens on: the last one cut before its first ".",
/// wherever in the path that is, ready for another extension.
QString StartingName(const QString& lastName);
