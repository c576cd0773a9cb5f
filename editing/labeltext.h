#pragma once

#include <string>

/// The text with a blank for every carriage return and line feed that is not half
/// of a pair.
std::string BlanksForLoneBreaks(std::string text);
