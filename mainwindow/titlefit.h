#pragma once

#include "dialogs/fithost.h"
#include "mainwindow/mainstate.h"

#include <QObject>

#include <memory>
#include <optional>

class EditorHost;
class FitHint;
class MediaPlayerControl;
class SoundLane;

/// Fitting the titles to the film's sound from the main window: the button and the
/// line in the player's bar, and the dialog that they open, with the list editor or without.
class TitleFit : public QObject {
    Q_OBJECT

  public:
    TitleFit(MainState& state, SoundLane& lane, MediaPlayerControl& control, EditorHost& host,
             QWidget* window);
    ~TitleFit() override;

    /// The film's sound, to fit titles to; nothing without a film that can be heard.
    std::optional<FitSource> FilmSound() const;
    /// Opens the dialog, where there are a sound and titles.
    void Open();
    /// The film, its sound or the titles are others.
    void Refresh();

  private:
    void Document_Change(const Change& change);

    MainState& m_state;
    const SoundLane& m_lane;
    MediaPlayerControl& m_control;
    EditorHost& m_host;
    QWidget* const m_window;
    Connection m_connection;
    std::unique_ptr<FitHint> m_hint;
};
