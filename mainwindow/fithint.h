#pragma once

#include "fit/fit.h"
#include "mainwindow/mainstate.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <vector>

class FitJob;
class SoundLane;

/// Says in a line how the titles fit the film's sound, once both are known. It finds out in
/// the background, without haste: a film that plays or a file that opens waits for nothing
/// here, and work on the titles ends what is being found out about them.
class FitHint : public QObject {
    Q_OBJECT

  public:
    FitHint(MainState& state, const SoundLane& lane, QObject* owner);
    ~FitHint() override;

  signals:
    /// Empty: there is nothing to say.
    void Says(const QString& text);

  private:
    void FilmChanged();
    void SoundMapped();
    void Document_Change(const Change& change);
    void tmrHint_Timer();
    void JobFinished();

    void Forget();
    void Say(const QString& text);

    MainState& m_state;
    const SoundLane& m_lane;
    Connection m_connection;
    QTimer* tmrHint;
    std::unique_ptr<FitJob> m_job;
    /// Of the titles that the job has, or that the line is about.
    std::vector<FitTitle> m_titles;
    QString m_text;
    std::uint32_t m_document = 0;
    /// The titles were changed since they were opened.
    bool m_edited = false;
};
