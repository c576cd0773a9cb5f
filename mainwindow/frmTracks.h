#pragma once

#include "mainwindow/choicedialog.h"

#include <QTimer>

class FilmTracks;

/// The subtitles in a film, to choose one of. Titles are counted while it is open.
class frmTracks : public ChoiceDialog {
    Q_OBJECT

  public:
    /// The tracks must be known by now.
    frmTracks(const FilmTracks& tracks, const QString& film, QWidget* parent);

  private:
    void Form_Load();
    void tmrCount_Timer();

    const FilmTracks& m_tracks;
    QTimer* tmrCount;
};

/// "English (eng)"; empty when the film does not tell.
QString LanguageName(const QString& code);
