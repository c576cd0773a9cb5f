#pragma once

#include <QString>

#include <cstdint>

/// "today at 14:05", "yesterday at 09:30", or the date. Both in seconds since 1970; a
/// moment that no calendar knows is "at an unknown time".
QString MomentText(std::int64_t time, std::int64_t now);
