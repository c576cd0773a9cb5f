#pragma once

#include <QDialog>
#include <QPoint>
#include <QRect>
#include <QString>

#include <cstdint>

class QLabel;
class QLineEdit;

/// The name that a positioning key is shown by.
QString KeyName(std::int16_t keyCode);

/// Where the dialog goes: centred across the key's box, and above its top by half
/// of what it is wider. `box` is relative to the main window.
QPoint PickKeyPlace(QPoint mainWindow, const QRect& box, int dialogWidth);

/// Lets the user choose the positioning key: the first key released in it is
/// taken, whichever it is, and closes it.
class frmPickKey : public QDialog {
    Q_OBJECT

  public:
    frmPickKey(QWidget* mainWindow, QLineEdit& txtKey, std::int16_t& actionKey);

  protected:
    bool event(QEvent* event) override;

  private:
    void Form_Load(const QWidget& mainWindow);
    void Form_KeyUp(std::int16_t keyCode);

    QLabel* Label1;
    QLineEdit& m_txtKey;
    std::int16_t& m_actionKey;
};
