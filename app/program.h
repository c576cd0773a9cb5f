#pragma once

#include "mainwindow/frmQuelmar.h"
#include "mainwindow/recovery.h"
#include "platform/recoverystore.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>

/// The main window with its recovery copies, and how the program ends: when the
/// window is closed, or with a report of a run-time error.
class Program {
  public:
    explicit Program(std::unique_ptr<frmQuelmar> window = std::make_unique<frmQuelmar>());
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    frmQuelmar& Window() { return *m_window; }
    Recovery& Copies() { return m_recovery; }
    RecoveryStore& Store() { return m_store; }

    /// Shows the window, runs `opened` after its first paint, and answers the exit code.
    int Run(std::function<void()> opened);

  private:
    [[noreturn]] void EndWithReport(const std::string& report);

    std::unique_ptr<frmQuelmar> m_window;
    RecoveryStore m_store;
    Recovery m_recovery;
};

/// Offers work of runs that did not end normally, then opens the files named.
int RunProgram(const QStringList& files);
/// Lists what can be recovered and restores what the user chooses.
int RunRecovery();
