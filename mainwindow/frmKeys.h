#pragma once

#include "mainwindow/mainactions.h"

#include <QDialog>

class QPushButton;
class QTreeWidget;

/// All keys of the program, one to a line. It may stay open beside the other windows.
class frmKeys : public QDialog {
    Q_OBJECT

  public:
    frmKeys(const std::vector<MainActions::Line>& lines, QWidget* parent);

  private:
    void cmdClose_Click();

    QTreeWidget* lstKeys;
    QPushButton* cmdClose;
};
