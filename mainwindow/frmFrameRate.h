#pragma once

#include "model/document.h"

#include <QDialog>

class QComboBox;
class QPushButton;

/// Asks for the frames per second of a frame-counting file. Closed by its close
/// box, it leaves the rate as it is.
class frmFrameRate : public QDialog {
    Q_OBJECT

  public:
    frmFrameRate(Document& document, QWidget* parent);

  private:
    void Form_Load();
    void cmdOK_Click();

    Document& m_document;
    QComboBox* cboFramerate;
    QPushButton* cmdOK;
};
