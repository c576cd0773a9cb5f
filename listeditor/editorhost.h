#pragma once

#include "model/document.h"

#include <cstdint>

/// What the list editor needs of the main window.
class EditorHost {
  public:
    virtual ~EditorHost() = default;

    virtual Document& document() = 0;
    /// Moves the player, in seconds; does nothing without media.
    virtual void MediaPosition(double seconds) = 0;
    /// The title that the main window is showing or about to show; at least 1.
    virtual std::int32_t ShownTitle() const = 0;
    /// Enables or disables `cmdEdit`, `cmdAdjust`, `cmdGreen` and `cmdBlue` together.
    virtual void EditButtonsEnabled(bool enabled) = 0;
};
