#pragma once

#include "dialogs/listdialog.h"
#include "dialogs/titlebox.h"
#include "editing/edittitle.h"

#include <cstdint>

class QLineEdit;

/// "Edit subtitle": text, start and duration of the list editor's current title.
class frmEdit : public ListDialog {
    Q_OBJECT

  public:
    frmEdit(TitleList& list, QWidget* parent);

    TitleBox* txtSubt;
    QWidget* PB;
    QLineEdit* txtStart;
    QLineEdit* txtDuration;
    QPushButton* cmdB;
    QPushButton* cmdI;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;

    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdB_Click();
    void cmdI_Click();

  private:
    void LayOut();
    void Form_Load();
    void Form_Unload() override;
    void UpdateTagButtons();
    void InsertMark(const QString& mark);

    std::int32_t m_index = 0;
    OpenMarks m_open;
};
