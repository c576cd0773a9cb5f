#pragma once

#include <string>
#include <string_view>

/// Moments and lengths are doubles in seconds on the media's clock; nothing finer
/// than a millisecond is shown or written. Negative times exist in memory only.

/// Pictures per second where neither a file nor a person says otherwise.
inline constexpr double DefaultFrameRate = 25;

/// Reads 'hh:mm:ss,mmm' ("." is taken where there is no ","), led by "-" when
/// negative. Never fails: a piece that is no number is left out of the value. The
/// fraction counts milliseconds, so '00:00:01,5' is 1.005 s.
double ParseTime(std::string_view text);

/// 'hh:mm:ss,mmm', led by "-" when negative. The seconds are rounded last and do
/// not carry: 59.9996 s gives '00:00:60,000'. 32768 hours or more are the
/// run-time error "Overflow".
std::string FormatTime(double seconds);
/// Appends what `FormatTime` gives; nothing on overflow.
void AppendTime(std::string& text, double seconds);

/// To the nearest millisecond, halves toward +infinity.
double RoundTime(double seconds);
