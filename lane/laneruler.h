#pragma once

#include <string>

/// The marks of a time ruler, in seconds: labelled ones, and plain ones between them.
struct RulerSteps {
    double labelled = 1;
    double plain = 1;
};

/// Round steps that leave each label at least `room` pixels.
RulerSteps RulerStepsFor(double secondsPerPixel, double room);

/// "0:05", "1:02:03", and "0:05.2" where the labelled marks lie closer than a second.
std::string RulerLabel(double seconds, double labelled);
