#include "mainwindow/mainstate.h"

#include "listeditor/frmList.h"

frmList* MainState::OpenList() const {
    return document.ListWindowOpen ? list.data() : nullptr;
}
