#pragma once

#include "dialogs/listdialog.h"

class ChosenTitles;
class MinuteSecondEntry;
class QLineEdit;
class QRadioButton;

/// "Shift all subtitles": moves the selected titles by one amount of time.
class frmShift : public ListDialog {
    Q_OBJECT

  public:
    frmShift(TitleList& list, QWidget* parent);

    QLineEdit* txtCurrent;
    QRadioButton* optBeginning;
    QRadioButton* optEnd;
    MinuteSecondEntry* Amount;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;
    ChosenTitles* Chosen;

    void cmdOK_Click();
    void optBeginning_Click();

  private:
    void LayOut();
    void Form_Load();
    void LimitToFirstStart();
};
