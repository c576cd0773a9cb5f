#include "mainwindow/transportbuttons.h"

#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"

#include <QCursor>
#include <QTimer>

namespace {

constexpr int FirstRepeatInterval = 750;
constexpr int NextRepeatInterval = 250;

} // namespace

TransportButtons::TransportButtons(Player& player, QWidget* window)
    : QObject(window)
    , m_player(player)
    , tmrPosButtons(MakeTimer(this, "tmrPosButtons", FirstRepeatInterval)) {
    auto* IMGL = new StripPictures(this);
    IMGL->setObjectName(QStringLiteral("IMGL"));
    picButtons = Named(new TransportStrip(*IMGL, window), "picButtons", tr("Transport buttons"));
    On(picButtons, &TransportStrip::MouseMove, this, &TransportButtons::picButtons_MouseMove);
    On(picButtons, &TransportStrip::MouseDown, this, &TransportButtons::picButtons_MouseDown);
    On(picButtons, &TransportStrip::MouseUp, this, &TransportButtons::picButtons_MouseUp);
    On(picButtons, &TransportStrip::EnabledChanged, this,
       &TransportButtons::picButtons_EnabledChange);
    On(picButtons, &TransportStrip::Pressed, this, &TransportButtons::picButtons_Pressed);
    On(tmrPosButtons, &QTimer::timeout, this, &TransportButtons::tmrPosButtons_Timer);
    On(&player, &Player::PlayStateChange, this, &TransportButtons::MP_PlayStateChange);
}

void TransportButtons::MediaEnabled(bool enabled) {
    picButtons->setEnabled(enabled && m_player.State() != Player::Playing);
}

void TransportButtons::MP_PlayStateChange(int /*oldState*/, int newState) {
    picButtons->setEnabled(newState != Player::Playing && m_player.ReadyState() != 0);
}

void TransportButtons::picButtons_MouseMove(bool mouseHeld, double x, double y) {
    picButtons->Picture(m_strip.MouseMove(picButtons->isEnabled(), mouseHeld, x, y));
}

void TransportButtons::picButtons_MouseDown() {
    if (const auto picture = m_strip.MouseDown(picButtons->isEnabled())) {
        picButtons->Picture(*picture);
        tmrPosButtons->start(FirstRepeatInterval);
    }
}

void TransportButtons::picButtons_MouseUp() {
    tmrPosButtons->stop();
    Step(m_strip.ButtonUnderMouse());
}

void TransportButtons::Step(std::int16_t button) {
    if (const auto target = StripTarget(button, m_player.CurrentPosition(),
                                        m_player.SelectionStart(), m_player.SelectionEnd()))
        m_player.CurrentPosition(*target);
}

void TransportButtons::picButtons_EnabledChange() {
    if (!picButtons->isEnabled())
        tmrPosButtons->stop();
    const QPoint mouse = picButtons->mapFromGlobal(QCursor::pos());
    const bool over = picButtons->isVisible() && picButtons->rect().contains(mouse);
    const QPointF place = over ? picButtons->StripPlace(mouse) : QPointF(-1, -1);
    picButtons_MouseMove(false, place.x(), place.y());
}

void TransportButtons::picButtons_Pressed(std::int16_t button) {
    Step(button);
}

void TransportButtons::tmrPosButtons_Timer() {
    picButtons_MouseUp();
    tmrPosButtons->start(NextRepeatInterval);
}
