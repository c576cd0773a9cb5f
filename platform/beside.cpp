#include "platform/beside.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace {

constexpr auto Patience = std::chrono::milliseconds(250);
/// What is back by then shows no window, which would only flash up.
constexpr auto Unshown = std::chrono::milliseconds(750);
constexpr auto PollInterval = std::chrono::milliseconds(20);

/// What the window's thread and the work share.
class Run {
  public:
    explicit Run(QString place)
        : where(std::move(place)) {}

    void Perform(const std::function<void()>& work) {
        std::exception_ptr thrown;
        try {
            work();
        } catch (...) {
            thrown = std::current_exception();
        }
        const std::lock_guard guard(m_mutex);
        m_thrown = thrown;
        m_done = true;
        m_changed.notify_all();
    }
    bool Wait(std::chrono::milliseconds patience) {
        std::unique_lock guard(m_mutex);
        return m_changed.wait_for(guard, patience, [this] { return m_done; });
    }
    bool Done() { return Wait(std::chrono::milliseconds(0)); }
    void Rethrow() {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
    }

    const QString where;

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_done = false;
    std::exception_ptr m_thrown;
};

/// Those that were given up and have not come back. Used by the window's thread alone.
std::vector<std::shared_ptr<Run>>& Hanging() {
    static std::vector<std::shared_ptr<Run>> runs;
    return runs;
}

bool HangsAt(const QString& where) {
    std::erase_if(Hanging(), [](const auto& run) { return run->Done(); });
    for (const auto& run : Hanging())
        if (run->where == where)
            return true;
    return false;
}

/// Says what is waited for; accepted when it came, rejected by its Cancel button.
class frmWaiting : public QDialog {
  public:
    frmWaiting(QWidget* parent, const QString& waitingFor, Run& run)
        : QDialog(parent) {
        setObjectName("frmWaiting");
        setWindowTitle(QStringLiteral("Quelmar"));
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(32, 20, 32, 16);
        layout->setSpacing(12);
        auto* Label1 = new QLabel(QObject::tr("Waiting for %1").arg(waitingFor), this);
        Label1->setObjectName("Label1");
        Label1->setTextFormat(Qt::PlainText);
        auto* cmdCancel = new QPushButton(QObject::tr("Cancel"), this);
        cmdCancel->setObjectName("cmdCancel");
        layout->addWidget(Label1, 0, Qt::AlignHCenter);
        layout->addWidget(cmdCancel, 0, Qt::AlignHCenter);
        connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
        auto* poll = new QTimer(this);
        connect(poll, &QTimer::timeout, this, [this, &run] {
            if (run.Done())
                accept();
        });
        poll->start(PollInterval);
    }
};

/// Paints and plays on; what the user does meanwhile waits.
void WaitUnshown(Run& run) {
    const QDeadlineTimer patience(Unshown);
    while (!patience.hasExpired() && !run.Wait(PollInterval))
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

bool RunBeside(QWidget* parent, const QString& where, const QString& waitingFor,
               std::function<void()> work) {
    if (HangsAt(where))
        return false;
    const auto run = std::make_shared<Run>(where);
    try {
        std::thread([run, work = std::move(work)] { run->Perform(work); }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    if (!run->Wait(Patience))
        WaitUnshown(*run);
    if (!run->Done()) {
        frmWaiting(parent, waitingFor, *run).exec();
        if (!run->Done()) {
            Hanging().push_back(run);
            return false;
        }
    }
    run->Rethrow();
    return true;
}
