#pragma once

#include <chrono>
#include <cstdint>

class QInputEvent;

/// How long ago an input event happened, by its own time stamp; 0 when the stamp
/// is missing or cannot be right (events made by tests carry none). At most two seconds.
std::chrono::milliseconds EventAge(const QInputEvent& event);

/// The event's time stamp where `EventAge` can trust it, else 0.
std::uint64_t TrueStamp(const QInputEvent& event);
