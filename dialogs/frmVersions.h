#pragma once

#include "dialogs/listdialog.h"

#include <cstddef>
#include <optional>

class QPushButton;
class QTreeWidget;

/// "Earlier versions": what the document was before its latest steps. The list editor
/// shows the chosen one; OK goes back to it, anything else leaves the document as it is.
class frmVersions : public ListDialog {
    Q_OBJECT

  public:
    frmVersions(TitleList& list, QWidget* parent);

    QTreeWidget* lstVersions;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;

    void cmdOK_Click();
    void cmdCancel_Click();

  private:
    void LayOut();
    void Form_Load();
    void Form_Unload() override;
    void lstVersions_Change();
    /// The age of the version in the current line.
    std::optional<std::size_t> Current() const;

    bool m_shown = false;
};
