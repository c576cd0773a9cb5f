#include "mainwindow/titlefit.h"

#include "dialogs/fitsources.h"
#include "dialogs/frmFit.h"
#include "listeditor/listfit.h"
#include "mainwindow/fithint.h"
#include "mainwindow/handlers.h"
#include "mainwindow/soundlane.h"
#include "platform/paths.h"
#include "platform/settings.h"
#include "player/mediaplayercontrol.h"

#include <utility>

TitleFit::TitleFit(MainState& state, SoundLane& lane, MediaPlayerControl& control, EditorHost& host,
                   QWidget* window)
    : QObject(window)
    , m_state(state)
    , m_lane(lane)
    , m_control(control)
    , m_host(host)
    , m_window(window) {
    m_connection = m_state.document.Subscribe(
        [this](const Change& change) { Guarded([&] { Document_Change(change); }); });
    On(&m_lane, &SoundLane::RoomChanged, this, &TitleFit::Refresh);
    On(&m_control, &MediaPlayerControl::FitClicked, this, &TitleFit::Open);
    if (Settings().Dword("FitHint") == 0)
        return;
    lane.MapAlways();
    m_hint = std::make_unique<FitHint>(state, lane, this);
    connect(m_hint.get(), &FitHint::Says, &control, &MediaPlayerControl::Hint);
}

TitleFit::~TitleFit() = default;

std::optional<FitSource> TitleFit::FilmSound() const {
    if (!m_lane.Audible())
        return std::nullopt;
    const auto film = PathOf(m_state.player->FileName());
    if (auto mapper = m_lane.Mapper())
        return SoundOf(film, std::move(mapper));
    return SoundOf(film, m_state.player->AudioTrack() + 1);
}

void TitleFit::Open() {
    auto sound = FilmSound();
    if (!sound || m_state.document.Subt.Count() == 0)
        return;
    ListFit fit(m_state.OpenList(), m_host);
    (new frmFit(fit, std::move(*sound), m_window))->exec();
}

void TitleFit::Refresh() {
    m_control.FitButton(m_lane.Audible(), m_state.document.Subt.Count() > 0);
}

void TitleFit::Document_Change(const Change& change) {
    if (change.kind != Change::Kind::Marks && change.kind != Change::Kind::Saved)
        Refresh();
}
