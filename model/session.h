#pragma once

#include "model/subtitles.h"

/// What all windows share about the document at hand. The main window owns it;
/// the list editor and the dialogs reach it by reference.
struct Session {
    SUBTITLES Subt;
    /// The titles were changed since the last load or save.
    bool SubtitlesChanged = false;
    /// The list editor is loaded.
    bool ListWindowOpen = false;
    /// The find dialog is loaded.
    bool FindOpen = false;
    /// Frames per second of MicroDVD files; greater than 0.
    double FrameRate = 25;
    /// Two media positions in seconds, the new starts of the marked titles.
    double BlueMark = 0;
    double GreenMark = 0;
};
