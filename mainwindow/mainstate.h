#pragma once

#include "model/document.h"
#include "platform/commondialogs.h"
#include "player/player.h"

#include <QPointer>

#include <memory>

class frmList;

/// What the main window and its parts share: the document, the player, the file dialog
/// and the list editor.
struct MainState {
    Document document;
    std::unique_ptr<Player> player;
    CommonDialog DLG;
    QPointer<frmList> list;
    /// The play state that the player reported last is not "stopped".
    bool mediaActive = false;

    /// The list editor while it is loaded, else null.
    frmList* OpenList() const;
};
