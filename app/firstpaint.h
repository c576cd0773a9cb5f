#pragma once

#include <QObject>

#include <functional>

class QWidget;

/// Runs something once the window has been painted for the first time (or, where it
/// is never painted, a little later): the window appears without waiting for it.
class AfterFirstPaint : public QObject {
    Q_OBJECT

  public:
    AfterFirstPaint(QWidget& window, std::function<void()> action);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Run();

    std::function<void()> m_action;
};
