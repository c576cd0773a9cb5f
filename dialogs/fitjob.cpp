#include "dialogs/fitjob.h"

#include "sound/background.h"

#include <QMetaObject>

#include <exception>
#include <utility>

FitJob::FitJob(FitSource source, std::vector<FitTitle> titles, std::vector<FitAnchor> anchors,
               Haste haste)
    : m_source(std::move(source))
    , m_titles(std::move(titles))
    , m_anchors(std::move(anchors))
    , m_haste(haste)
    , m_thread([this] { Work(); }) {}

FitJob::~FitJob() {
    m_cancelled = true;
    m_thread.join();
}

void FitJob::Work() {
    FitOptions options;
    if (m_haste == Haste::None) {
        WorkInBackground();
        options.threads = 1;
    }
    try {
        const FitSource::Got got =
            m_source.get([this](const char* phase, double done) { return Tell(phase, done); });
        if (got.reference)
            m_fit = FindFit(
                m_titles, *got.reference, m_anchors,
                [this](double done) { return Tell("Fitting the titles", done); }, options);
        else
            m_why = QString::fromStdString(got.why);
    } catch (const std::exception& error) {
        m_why = QString::fromUtf8(error.what());
    }
    m_fit.cancelled = m_fit.cancelled || m_cancelled;
    QMetaObject::invokeMethod(this, &FitJob::Finished, Qt::QueuedConnection);
}

// A window is told of whole percents: more would only keep it busy.
bool FitJob::Tell(const char* phase, double done) {
    const int percent = static_cast<int>(done * 100);
    if (m_haste == Haste::Waited && (phase != m_toldPhase || percent != m_toldPercent)) {
        m_toldPhase = phase;
        m_toldPercent = percent;
        QMetaObject::invokeMethod(
            this, [this, name = QString::fromUtf8(phase), done] { emit Progressed(name, done); },
            Qt::QueuedConnection);
    }
    return !m_cancelled;
}
