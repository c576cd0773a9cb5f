#include "mainwindow/frmLoading.h"

#include "platform/errorgate.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Most files are read long before that: they show the label only.
constexpr qint64 ShowProgressAfter = 300;
constexpr qint64 EventInterval = 40;
constexpr int Steps = 1000;

} // namespace

frmLoading::frmLoading(QWidget* mainWindow)
    : QWidget(mainWindow, Qt::SplashScreen | Qt::FramelessWindowHint)
    , Label1(new QLabel(tr("Loading Subtitles"), this))
    , prgDone(new QProgressBar(this))
    , cmdCancel(new QPushButton(tr("Cancel"), this)) {
    setObjectName("frmLoading");
    setWindowTitle(tr("Quelmar"));
    setWindowModality(Qt::ApplicationModal);
    // Whoever types a file name goes on typing.
    setAttribute(Qt::WA_ShowWithoutActivating);
    Label1->setObjectName("Label1");
    Label1->setAlignment(Qt::AlignCenter);
    prgDone->setObjectName("prgDone");
    prgDone->setRange(0, Steps);
    prgDone->setTextVisible(false);
    cmdCancel->setObjectName("cmdCancel");

    prgDone->hide();
    cmdCancel->hide();
    auto* frame = new QFrame(this);
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(frame);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(32, 20, 32, 16);
    layout->setSpacing(12);
    layout->addWidget(Label1);
    layout->addWidget(prgDone);
    layout->addWidget(cmdCancel, 0, Qt::AlignHCenter);
    setMinimumWidth(280);
    connect(cmdCancel, &QPushButton::clicked, this,
            [this] { Guarded([this] { cmdCancel_Click(); }); });

    Form_Load(*mainWindow);
    m_sinceShown.start();
    ProcessOwnEvents([this] {
        // Showing lets events in on some platforms.
        show();
        QApplication::processEvents();
    });
    repaint();
}

void frmLoading::Form_Load(const QWidget& mainWindow) {
    adjustSize();
    move(mainWindow.frameGeometry().center() - rect().center());
}

void frmLoading::ShowProgress() {
    const QPoint centre = geometry().center();
    prgDone->show();
    cmdCancel->show();
    adjustSize();
    move(centre - rect().center());
}

void frmLoading::cmdCancel_Click() {
    m_cancelled = true;
}

bool frmLoading::Progress(double done) {
    if (m_cancelled)
        return false;
    if (!m_sinceShown.hasExpired(ShowProgressAfter) || !m_sinceEvents.hasExpired(EventInterval))
        return true;
    if (cmdCancel->isHidden())
        ShowProgress();
    prgDone->setValue(static_cast<int>(done * Steps));
    ProcessOwnEvents([] { QApplication::processEvents(); });
    return !m_cancelled;
}

// The window is modal, so no input reaches the others; their timers are held back
// below. (A timer event that is not delivered comes again after its interval.)
void frmLoading::ProcessOwnEvents(const std::function<void()>& process) {
    QApplication::instance()->installEventFilter(this);
    process();
    QApplication::instance()->removeEventFilter(this);
    m_sinceEvents.start();
}

bool frmLoading::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Timer)
        return false;
    for (const QObject* object = watched; object != nullptr; object = object->parent())
        if (object == this)
            return false;
    return true;
}

// The window is taken away by whoever reads the file.
void frmLoading::closeEvent(QCloseEvent* event) {
    if (event->spontaneous()) {
        event->ignore();
        cmdCancel_Click();
    }
}
