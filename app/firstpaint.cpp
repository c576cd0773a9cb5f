#include "app/firstpaint.h"

#include "platform/errorgate.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace {

constexpr auto PatienceForPaint = std::chrono::seconds(1);

} // namespace

AfterFirstPaint::AfterFirstPaint(QWidget& window, std::function<void()> action)
    : QObject(&window)
    , m_action(std::move(action)) {
    window.installEventFilter(this);
    QTimer::singleShot(PatienceForPaint, this, &AfterFirstPaint::Run);
}

bool AfterFirstPaint::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        // Posted, so that the children are painted too and the picture is on the screen.
        QTimer::singleShot(0, this, &AfterFirstPaint::Run);
    }
    return false;
}

void AfterFirstPaint::Run() {
    if (m_action)
        Guarded(std::exchange(m_action, nullptr));
}
