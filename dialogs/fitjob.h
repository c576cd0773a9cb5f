#pragma once

#include "dialogs/fithost.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

/// Gets what titles are to be fitted to and finds the fit, on a thread of its own. What it
/// has to tell comes on the thread that made it. To stop, destroy it: at most 100 ms.
class FitJob : public QObject {
    Q_OBJECT

  public:
    FitJob(FitSource source, std::vector<FitTitle> titles, std::vector<FitAnchor> anchors);
    ~FitJob() override;

    /// After `Finished`.
    const Fit& Result() const { return m_fit; }
    /// Why there was nothing to fit to; empty when there was.
    const QString& Why() const { return m_why; }

  signals:
    /// What is being done, and how far it is, 0 to 1.
    void Progressed(const QString& phase, double done);
    void Finished();

  private:
    void Work();
    bool Tell(const char* phase, double done);

    const FitSource m_source;
    const std::vector<FitTitle> m_titles;
    const std::vector<FitAnchor> m_anchors;
    Fit m_fit;
    QString m_why;
    std::atomic<bool> m_cancelled = false;
    int m_toldPercent = -1;
    const char* m_toldPhase = nullptr;
    std::thread m_thread;
};
