#pragma once

#include "model/document.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QPushButton;
class TypedBox;

/// Rates that are known beside the document's; 0: not known.
struct KnownRates {
    double film = 0;
    /// What the subtitle file says of itself.
    double file = 0;
};

/// Asks for the frames per second of a frame-counting file. Known rates are offered, and
/// nothing more until they are taken. Closed by its close box, it leaves the rate as it is.
class frmFrameRate : public QDialog {
    Q_OBJECT

  public:
    frmFrameRate(Document& document, const KnownRates& known, QWidget* parent);
    ~frmFrameRate() override;

  private:
    void Form_Load();
    void cmdOK_Click();
    void cmdFilmRate_Click();
    void cmdFileRate_Click();
    void LayOut();
    void Take(double rate);

    Document& m_document;
    const KnownRates m_known;
    QComboBox* cboFramerate;
    QPushButton* cmdOK;
    QPushButton* cmdFilmRate;
    QPushButton* cmdFileRate;
    std::unique_ptr<TypedBox> m_typed;
};
