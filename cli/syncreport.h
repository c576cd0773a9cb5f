#pragma once

#include "cli/reference.h"

#include <string>

/// "right", "fitted" or "unsure".
const char* VerdictName(FitVerdict verdict);

/// To the nearest multiple of the step: 0.97, 1.0427.
std::string RoundedText(double value, double step);

/// The answer as JSON: verdict, confidence, what it was fitted by, the pieces (title
/// numbers from 1, new = old x rate + offset in seconds), the titles without a place and
/// those that would start before 0, and how long it took.
std::string ReportOf(const Fit& fit, const char* by, const FitSeconds& seconds);

/// The same in one line for people: "fitted: 2 pieces, -2.410 s, rate 1.0427, sure 0.97".
std::string SummaryOf(const Fit& fit);
