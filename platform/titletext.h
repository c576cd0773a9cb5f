#pragma once

#include <QString>

#include <string>
#include <string_view>

/// A title's text for a window, and back. Unlike `QString`'s own conversions they keep
/// half a character of UTF-16 (see base/utf8.h).
QString TitleToQt(std::string_view text);
std::string TitleFromQt(const QString& shown);
