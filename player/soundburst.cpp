#include "player/soundburst.h"

void SoundBurst::Ask(double position) {
    m_due = true;
    m_position = position;
}

void SoundBurst::Cancel() {
    m_due = false;
    m_sounding = false;
}

void SoundBurst::Restarted(Moment now, bool more) {
    if (!m_due)
        return;
    m_due = more;
    m_sounding = true;
    m_end = now + Length;
}

bool SoundBurst::Expire(Moment now) {
    if (!m_sounding || now < m_end)
        return false;
    m_sounding = false;
    return true;
}
