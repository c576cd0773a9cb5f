#pragma once

#include "sound/soundmap.h"

#include <optional>

enum class SpeechEdge { Start, End };

/// Where speech starts (or ends) next to the time, at most `reach` seconds away. Nothing
/// where that is not sure: for a fifth of a second on either side of it the detector must
/// have little doubt that someone speaks, and that nobody does.
std::optional<double> SureSpeechEdge(const SoundMap& map, double time, SpeechEdge edge,
                                     double reach);

/// Times as they were recorded by key, each moved to the sure edge of speech within a
/// quarter of a second: the start to a start of speech, the end to an end. What would end
/// before it starts is left as it was recorded.
SpeechSpan SnappedToSpeech(const SoundMap& map, const SpeechSpan& recorded);
