#pragma once

#include "dialogs/fithost.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>

/// Gets what titles are to be fitted to and finds the fit, on a thread of its own. What it
/// has to tell comes on the thread that made it. To stop, destroy it: at most 100 ms.
class FitJob : public QObject {
    Q_OBJECT

  public:
    /// Whether somebody waits for it: without haste it gives way to all others.
    enum class Haste : std::uint8_t { None, Waited };

    FitJob(FitSource source, std::vector<FitTitle> titles, std::vector<FitAnchor> anchors,
           Haste haste = Haste::Waited);
    ~FitJob() override;

    /// `Finished` comes within 100 ms; the result says that it was cancelled.
    void Cancel() { m_cancelled = true; }

    /// After `Finished`.
    const Fit& Result() const { return m_fit; }
    /// Why there was nothing to fit to; empty when there was.
    const QString& Why() const { return m_why; }

  signals:
    /// What is being done, and how far it is, 0 to 1. Not told without haste.
    void Progressed(const QString& phase, double done);
    void Finished();

  private:
    void Work();
    bool Tell(const char* phase, double done);

    const FitSource m_source;
    const std::vector<FitTitle> m_titles;
    const std::vector<FitAnchor> m_anchors;
    const Haste m_haste;
    Fit m_fit;
    QString m_why;
    std::atomic<bool> m_cancelled = false;
    int m_toldPercent = -1;
    const char* m_toldPhase = nullptr;
    std::thread m_thread;
};
