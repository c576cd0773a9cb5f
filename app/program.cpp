#include "app/program.h"

#include "app/firstpaint.h"
#include "app/interrupted.h"
#include "app/openmark.h"
#include "base/savejournal.h"
#include "mainwindow/frmRecover.h"
#include "platform/errorgate.h"

#include <QApplication>
#include <QDateTime>
#include <QMessageBox>
#include <QSessionManager>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

Program::Program(std::unique_ptr<frmQuelmar> window)
    : m_window(std::move(window))
    , m_recovery(*m_window, m_store) {
    InstallErrorReporter([this](const std::string& report) { EndWithReport(report); });
    // When the user logs out nobody may be there to answer questions.
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, &m_recovery, [this] { m_recovery.Flush(); },
        Qt::DirectConnection);
    QObject::connect(m_window.get(), &frmQuelmar::Closed, qApp, &QApplication::quit,
                     Qt::QueuedConnection);
}

Program::~Program() {
    InstallErrorReporter(nullptr);
}

int Program::Run(std::function<void()> opened) {
    new AfterFirstPaint(*m_window, std::move(opened));
    m_window->show();
    return QApplication::exec();
}

// Ends on the spot: whatever the failed handler and those that called it still meant
// to do would work on a state that is not known.
void Program::EndWithReport(const std::string& report) {
    QString text = QString::fromStdString(report);
    if (m_recovery.Flush())
        text += "\n\n" + QObject::tr("Your unsaved work is kept, and will be offered when the "
                                     "program is started again.");
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Quelmar"), text, QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.exec();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

namespace {

constexpr auto Grace = std::chrono::seconds(5);

/// Threads that wait for a disk which does not answer must not keep the program.
void EndSoon(int code) {
    std::thread([code] {
        std::this_thread::sleep_for(Grace);
        std::_Exit(code);
    }).detach();
}

} // namespace

int RunProgram(const QStringList& files) {
    Program program;
    program.Store().Probe();
    const OpenMark mark(program.Window().document(), program.Window(), program.Store().Folder());
    frmQuelmar& window = program.Window();
    window.OpenElsewhere = [&window](const QString& subtitles) {
        return OpenMark::IsSetElsewhere(window, subtitles, RecoveryStore::DefaultFolder());
    };
    const int code = program.Run([&] {
        OfferInterruptedSaves(program.Window(), StateFolder());
        if (!program.Copies().OfferOrphans())
            program.Window().Open(files);
    });
    EndSoon(code);
    return code;
}

int RunRecovery() {
    std::vector<RecoverableWork> works = FindRecoverableWork(RecoveryStore::DefaultFolder());
    const std::int64_t now = QDateTime::currentSecsSinceEpoch();
    for (const RecoverableWork& work : works)
        std::puts(WorkText(work, now).toLocal8Bit().constData());
    if (works.empty())
        std::puts("There is no unsaved work.");
    std::fflush(stdout);
    if (works.empty())
        return EXIT_SUCCESS;
    frmRecover dialog(works);
    if (dialog.exec() != QDialog::Accepted || !dialog.Chosen())
        return EXIT_SUCCESS;
    Program program;
    const OpenMark mark(program.Window().document(), program.Window(), program.Store().Folder());
    const int code = program.Run([&] {
        RecoverableWork& work = works[*dialog.Chosen()];
        program.Copies().Restore(work.orphan, std::move(work.document));
        // The others are free for whoever asks next.
        works.clear();
    });
    EndSoon(code);
    return code;
}
