#pragma once

#include <chrono>

class QInputEvent;

/// How long ago an input event happened, by its own time stamp; 0 when the stamp
/// is missing or cannot be right (events made by tests carry none). At most a second.
std::chrono::milliseconds EventAge(const QInputEvent& event);
