#pragma once

#include "mainwindow/displaywalker.h"
#include "mainwindow/mainstate.h"

#include <QString>
#include <QWidget>

class QAction;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class SubtitleFiles;

/// The panel at the bottom left (`PB`): the two files, what to show while playing, and
/// the buttons for the list editor, for saving and for the end.
class FilePanel : public QWidget {
    Q_OBJECT

  public:
    FilePanel(MainState& state, SubtitleFiles& files, QWidget* parent);

    /// Names both files, as if they were typed; an empty name is left out.
    void OpenFiles(const QString& media, const QString& subtitles);
    /// The titles are there already: the subtitle file is named, but not read, and the film
    /// is opened as soon as its disk answers.
    void NameFiles(const QString& media, const QString& subtitles);

    /// There is a document that can be edited and saved.
    void DocumentOpened();
    /// Asks which of the film's subtitles are to be opened.
    void OpenSubtitlesInFilm();
    void EditEnabled(bool enabled);
    /// Laid out for a narrow window it is higher and less wide.
    void Narrow(bool narrow);
    bool Narrow() const { return m_narrow; }
    /// The size that its texts need.
    QSize NeededSize() const;

  signals:
    /// A short word about what was done.
    void Note(const QString& text);
    /// The box names another film; if there is such a file, the player has it.
    void MediaNamed();
    /// The dialog for the film was closed.
    void MediaBrowsed();
    void ModeChosen(DisplayMode mode);
    void EditClicked();
    void ExitClicked();

  private:
    void LayOut();
    void ConnectControls();
    /// The film that the box names.
    void OpenFilm(bool there);
    /// Without reading it.
    void NameSubtitles(const QString& name);

    void cmdBrowseAVI_Click();
    void txtAVI_Change();
    void cmdBrowseSRT_Click();
    void txtSRT_Change();
    void optShow_Click();
    void optPosition_Click();
    void cmdEdit_Click();
    void cmdSave_Click();
    void cmdExit_Click();
    void Files_Mended(const QString& what);
    void Files_ReadIn(const QString& codePage, bool guessed);
    void txtSRT_ContextMenu(const QPoint& place);
    void actReadAs_Trigger();
    void actMended_Trigger();

    MainState& m_state;
    /// The media dialog's filter that was used last.
    QString m_filter = QStringLiteral("All films and sound");
    SubtitleFiles& m_files;

    QGridLayout* m_modes;
    QGridLayout* m_commands;
    bool m_narrow = true;
    QLabel* Label2;
    QLineEdit* txtAVI;
    QPushButton* cmdBrowseAVI;
    QLabel* Label3;
    QLineEdit* txtSRT;
    /// In the box while the titles are those of the tolerant reading.
    QAction* actMended;
    /// In the box while the file's code page is a guess, and in the box's menu.
    QAction* actGuessed;
    QAction* actReadAs;
    QPushButton* cmdBrowseSRT;
    QLabel* Label6;
    QRadioButton* optShow;
    QRadioButton* optPosition;
    QPushButton* cmdEdit;
    QPushButton* cmdSave;
    QPushButton* cmdExit;
};
