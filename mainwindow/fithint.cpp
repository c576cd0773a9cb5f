#include "mainwindow/fithint.h"

#include "dialogs/fitjob.h"
#include "dialogs/fitsources.h"
#include "dialogs/fitwords.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "mainwindow/soundlane.h"
#include "sound/soundmapper.h"

#include <algorithm>

namespace {

/// Opening has other things to do first.
constexpr int FirstWait = 400;
/// Of work on the titles: this long nothing must have changed.
constexpr int EditedWait = 3000;

bool SameTitles(const std::vector<FitTitle>& one, const std::vector<FitTitle>& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const FitTitle& a, const FitTitle& b) {
                          return a.start == b.start && a.end == b.end && a.text == b.text;
                      });
}

} // namespace

FitHint::FitHint(MainState& state, const SoundLane& lane, QObject* owner)
    : QObject(owner)
    , m_state(state)
    , m_lane(lane)
    , tmrHint(MakeTimer(this, "tmrHint", FirstWait))
    , m_document(state.document.Number()) {
    tmrHint->setSingleShot(true);
    On(tmrHint, &QTimer::timeout, this, &FitHint::tmrHint_Timer);
    On(&lane, &SoundLane::FilmChanged, this, &FitHint::FilmChanged);
    On(&lane, &SoundLane::SoundMapped, this, &FitHint::SoundMapped);
    m_connection = state.document.Subscribe(
        [this](const Change& change) { Guarded([&] { Document_Change(change); }); });
}

FitHint::~FitHint() = default;

void FitHint::Say(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    emit Says(text);
}

/// What was found out, or is being found out, is no longer of use.
void FitHint::Forget() {
    if (m_job)
        m_job->Cancel();
    m_titles.clear();
    Say({});
}

void FitHint::FilmChanged() {
    Forget();
    tmrHint->start(FirstWait);
}

void FitHint::SoundMapped() {
    tmrHint->start(FirstWait);
}

void FitHint::Document_Change(const Change& change) {
    if (change.kind == Change::Kind::Marks || change.kind == Change::Kind::Saved)
        return;
    m_edited = m_document == m_state.document.Number();
    m_document = m_state.document.Number();
    if (change.kind != Change::Kind::Text)
        Forget();
    tmrHint->start(m_edited ? EditedWait : FirstWait);
}

void FitHint::tmrHint_Timer() {
    const auto mapper = m_lane.Mapper();
    if (!mapper || mapper->Now() != SoundMapper::State::Complete)
        return;
    // Placing goes on while a film plays: it would be in vain to look in between.
    if (m_edited && m_state.player->State() == Player::Playing)
        return tmrHint->start(EditedWait);
    std::vector<FitTitle> titles = TitlesToFit(m_state.document.Subt);
    if (titles.empty() || SameTitles(titles, m_titles))
        return;
    Forget();
    if (m_job)
        return;
    m_titles = std::move(titles);
    m_job = std::make_unique<FitJob>(SoundOf({}, mapper), m_titles, std::vector<FitAnchor>(),
                                     FitJob::Haste::None);
    On(m_job.get(), &FitJob::Finished, this, &FitHint::JobFinished);
}

void FitHint::JobFinished() {
    FitJob* const job = m_job.release();
    job->deleteLater();
    if (job->Result().cancelled)
        return tmrHint->start(m_edited ? EditedWait : FirstWait);
    Say(QString::fromStdString(
        FitHintText(job->Result(), m_titles, m_state.player->PictureRate())));
}
