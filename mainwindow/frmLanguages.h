#pragma once

#include "formats/tolerance.h"
#include "mainwindow/choicedialog.h"

/// Asks which language of a file that holds several is to be edited.
class frmLanguages : public ChoiceDialog {
    Q_OBJECT

  public:
    frmLanguages(const MendOffer& offer, QWidget* parent);
};
