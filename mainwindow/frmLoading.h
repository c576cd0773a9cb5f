#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

/// The splash window over the main window while a file is read. Reading blocks the
/// window thread; after 0.3 s `Progress` lets this window paint and take a click on
/// its Cancel button, while all other windows wait.
class frmLoading : public QWidget {
    Q_OBJECT

  public:
    /// Shown and painted when it returns.
    explicit frmLoading(QWidget* mainWindow);

    /// How much is done, 0 to 1. false: the user cancelled.
    bool Progress(double done);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void Form_Load(const QWidget& mainWindow);
    void cmdCancel_Click();
    void ShowProgress();
    void ProcessOwnEvents(const std::function<void()>& process);

    QLabel* Label1;
    QProgressBar* prgDone;
    QPushButton* cmdCancel;
    QElapsedTimer m_sinceShown;
    QElapsedTimer m_sinceEvents;
    bool m_cancelled = false;
};
