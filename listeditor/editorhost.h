#pragma once

#include "dialogs/fithost.h"
#include "model/document.h"

#include <QRect>
#include <QString>

#include <cstdint>
#include <optional>

/// What the list editor needs of the main window.
class EditorHost {
  public:
    virtual ~EditorHost() = default;

    virtual Document& document() = 0;
    /// Moves the player, in seconds; does nothing without media.
    virtual void MediaPosition(double seconds) = 0;
    /// Plays this part of the film, in seconds, and pauses; nothing without media.
    virtual void Listen(double from, double to) = 0;
    /// Where the player is, in seconds; nothing without media.
    virtual std::optional<double> FilmPosition() const { return std::nullopt; }
    /// Where the film's picture, the bar and the sound under it are on the screen; empty where
    /// there is none.
    virtual QRect FilmPlace() const { return {}; }
    /// The picture alone.
    virtual QRect PicturePlace() const { return FilmPlace(); }
    /// The film's sound, to fit titles to; nothing without a film that can be heard.
    virtual std::optional<FitSource> FilmSound() const { return std::nullopt; }
    /// Shows these titles on the picture and the lane in place of the document's, until
    /// `ShowOwn`. As many as the document has.
    virtual void ShowInstead(const SUBTITLES& titles) = 0;
    virtual void ShowOwn() = 0;
    /// The title that the main window is showing or about to show; at least 1.
    virtual std::int32_t ShownTitle() const = 0;
    /// Tells people shortly what was done, over the film's picture.
    virtual void Say(const QString& /*what*/) {}
    /// Enables or disables `cmdEdit`, `cmdAdjust`, `cmdGreen` and `cmdBlue` together.
    virtual void EditButtonsEnabled(bool enabled) = 0;
};
