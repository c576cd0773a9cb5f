#pragma once

#include <string>
#include <string_view>

/// The text of a sample of an MP4 file's "mov_text" track, as a title holds it: lines joined by
/// CR LF, italics and bold as tags. Any bytes; of damaged styles the text is left.
std::string MovText(std::string_view sample);
