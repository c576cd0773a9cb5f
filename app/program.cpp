#include "app/program.h"

#include "app/firstpaint.h"
#include "app/interrupted.h"
#include "base/savejournal.h"
#include "mainwindow/frmRecover.h"
#include "platform/errorgate.h"

#include <QApplication>
#include <QDateTime>
#include <QMessageBox>
#include <QSessionManager>

#include <cstdio>
#include <cstdlib>
#include <utility>

Program::Program(std::unique_ptr<frmQuelmar> window)
    : m_window(std::move(window))
    , m_recovery(*m_window, m_store) {
    InstallErrorReporter([this](const std::string& report) { EndWithReport(report); });
    // When the user logs out nobody may be there to answer questions.
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, &m_recovery, &Recovery::Flush,
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

int RunProgram(const QString& media, const QString& subtitles) {
    Program program;
    program.Store().Probe();
    return program.Run([&] {
        OfferInterruptedSaves(program.Window(), StateFolder());
        if (!program.Copies().OfferOrphans())
            program.Window().OpenFiles(media, subtitles);
    });
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
    return program.Run([&] {
        RecoverableWork& work = works[*dialog.Chosen()];
        program.Copies().Restore(work.orphan, std::move(work.document));
        // The others are free for whoever asks next.
        works.clear();
    });
}
