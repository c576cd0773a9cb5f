#pragma once

#include "dialogs/listdialog.h"
#include "editing/edittitle.h"

#include <cstdint>

class QLineEdit;
class QPlainTextEdit;

/// "Edit subtitle": text, start and duration of the list editor's current title.
class frmEdit : public ListDialog {
    Q_OBJECT

  public:
    frmEdit(TitleList& list, QWidget* parent);

    QPlainTextEdit* txtSubt;
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

    /// The title's text as the box holds it, lines joined as titles join them.
    QString Text() const;

    std::int32_t m_index = 0;
    QString m_loadedText;
    QString m_loadedInBox;
    OpenMarks m_open;
};
