#pragma once

#include <QString>

/// The text of a title from the raw text of a multi-line box: its lines joined by
/// carriage return + line feed.
QString TitleTextOf(const QString& rawBoxText);
