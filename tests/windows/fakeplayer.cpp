#include "tests/windows/fakeplayer.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

void FakePlayer::Advance(double seconds) {
    if (m_state != Playing)
        return;
    m_position += seconds * m_rate;
    if (m_selectionStart >= 0 && m_selectionEnd >= 0 && m_position >= m_selectionEnd &&
        m_selectionEnd < MediaLength) {
        m_position = m_selectionEnd;
        Pause();
    } else if (m_position >= MediaLength) {
        Stop();
    }
}

void FakePlayer::FileName(const QString& name) {
    Opened << name;
    ChangeState(Stopped);
    m_name = name;
    m_position = 0;
    m_lastSeek = 0;
    m_selectionStart = -1;
    m_selectionEnd = -1;
    m_ready = 0;
    if (!AnswersLater)
        AnswerNow();
}

void FakePlayer::AnswerNow() {
    m_ready = RefusesFiles || !QFileInfo(m_name).isFile() ? 0 : 4;
    if (m_ready != 0)
        ChangeState(Paused);
    emit ReadyStateChange(m_ready);
    emit PropertiesChanged();
}

void FakePlayer::CurrentPosition(double seconds) {
    Seeks.push_back(seconds);
    if (m_ready != 0)
        MoveTo(std::clamp(seconds, 0.0, MediaLength));
}

void FakePlayer::Scrub(double seconds) {
    Scrubs.push_back(seconds);
    if (m_ready != 0)
        MoveTo(std::clamp(seconds, 0.0, MediaLength));
}

double FakePlayer::PositionBefore(std::chrono::milliseconds age) const {
    if (m_state != Playing)
        return m_position;
    return std::max(m_lastSeek, m_position - static_cast<double>(age.count()) / 1000 * m_rate);
}

void FakePlayer::Play() {
    if (m_ready == 0)
        return;
    if (m_selectionStart > m_position || (m_selectionEnd >= 0 && m_position >= m_selectionEnd))
        MoveTo(std::max(0.0, m_selectionStart));
    ChangeState(Playing);
}

void FakePlayer::Pause() {
    if (m_ready != 0)
        ChangeState(Paused);
}

void FakePlayer::Stop() {
    if (m_ready == 0)
        return;
    ChangeState(Stopped);
    MoveTo(std::max(0.0, m_selectionStart));
}

void FakePlayer::Rate(double rate) {
    m_rate = std::clamp(rate, 0.5, 2.0);
    emit PropertiesChanged();
}

void FakePlayer::Volume(int percent) {
    m_volume = std::clamp(percent, 0, 100);
    emit PropertiesChanged();
}

void FakePlayer::Muted(bool muted) {
    m_muted = muted;
    emit PropertiesChanged();
}

void FakePlayer::AudioTrack(int track) {
    m_track = track;
    emit PropertiesChanged();
}

void FakePlayer::Aspect(double ratio) {
    m_aspect = ratio;
    emit PropertiesChanged();
}

bool FakePlayer::DrawPicture(QImage& image) {
    if (m_ready == 0)
        return false;
    image.fill(QColor(64, 72, 84));
    return true;
}

void FakePlayer::ChangeState(PlayState state) {
    if (m_state == state)
        return;
    const PlayState old = m_state;
    m_state = state;
    emit PlayStateChange(old, state);
}

void FakePlayer::MoveTo(double position) {
    const double old = m_position;
    m_position = position;
    m_lastSeek = position;
    emit PositionChange(old, position);
}
