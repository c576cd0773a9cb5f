#include "player/pausewatch.h"

#include <utility>

std::optional<bool> PauseWatch::Tell(bool paused) {
    return std::exchange(m_told, paused) == paused ? std::nullopt : std::optional(paused);
}

void PauseWatch::Reported(bool paused) {
    m_reported = paused;
    m_doubted = true;
}

bool PauseWatch::Ask(bool moving) {
    if (!m_doubted || !m_reported || !moving)
        return false;
    m_doubted = false;
    return true;
}

PauseWatch::Finding PauseWatch::AnsweredPause(bool paused, bool moving) {
    if (!paused || !moving)
        return Finding::AsWished;
    m_told = true;
    return m_ended ? Finding::EndOfFile : Finding::Overtaken;
}
