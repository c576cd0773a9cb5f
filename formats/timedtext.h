#pragma once

#include "formats/format.h"

/// XML with a root element tt. All but the times is kept byte for byte: the source is
/// kept, and what has changed is patched in place.
Format TimedTextFormat();

/// Does a text that begins so have the root element tt?
bool IsTimedText(std::string_view text);

/// A title's text as the content of an element; `prefix` leads the names of elements,
/// `stylePrefix` those of attributes of style (empty: declared where it is used).
std::string TextToTimedText(std::string_view text, std::string_view prefix,
                            std::string_view stylePrefix);
