#pragma once

#include "dialogs/listdialog.h"
#include "editing/search.h"

class QLineEdit;
class QRadioButton;

/// "Find title": stays beside the list, hidden while another window is in use.
class frmFind : public ListDialog {
    Q_OBJECT

  public:
    frmFind(TitleList& list, QWidget* parent);

    QPushButton* cmdExit;
    QPushButton* cmdNext;
    QPushButton* cmdSearch;
    QRadioButton* optAny;
    QRadioButton* optExact;
    QRadioButton* optAll;
    QLineEdit* txtFind;

    /// Shows the dialog, its text ready to be typed over.
    void Open();

    void cmdSearch_Click();
    void cmdNext_Click();
    void cmdExit_Click();
    void txtFind_Change();

  protected:
    bool event(QEvent* event) override;

  private:
    void LayOut();
    void Form_Load();
    void Form_Unload() override;
    void Form_Deactivate();
    FindMode Mode() const;
    /// Shows the title found; false when the search ran to the end in vain.
    bool Show(TitleSearch::Result result);

    TitleSearch m_search;
    bool m_showsMessage = false;
};
