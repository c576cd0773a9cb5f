#pragma once

#include <string>
#include <string_view>

/// Titles carry the tags <i>, </i>, <b>, </b>; MicroDVD files the codes {y:i},
/// {y:b} and {y}, of which the last ends every style that is on. All procedures
/// append to `out` and take time in proportion to the text, whatever it holds.

/// Which styles the codes of a title have switched on so far.
struct OpenStyles {
    bool italic = false;
    bool bold = false;
};

/// Converts in rounds, as long as any code is left: the first {y:i}, the first
/// {y:b} and the first {y} of the text. So a {y} late in the text may be met
/// before a {y:i} in front of it, and closes only what earlier rounds opened.
void MicroDVDCodesToTags(std::string_view text, OpenStyles& open, std::string& out);
/// Ends the title: appends the closing tags of what is open, italics first.
void CloseOpenTags(OpenStyles& open, std::string& out);

/// Lines are joined by "|" in the result.
void TagsToMicroDVDCodes(std::string_view text, std::string& out);
/// The text with "<br>" for each line break.
void LineBreaksToTags(std::string_view text, std::string& out);
/// Without <i>, <b>, </i> and </b>: each kind removed in turn, exact in letter case.
void StripTags(std::string_view text, std::string& out);
