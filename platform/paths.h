#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>

/// A file's name as windows show and keep it: the text that its bytes are. Of a name that is no
/// valid UTF-8 each other byte is a character for private use, U+EF80 to U+EFFF, so that
/// it comes back whole. (On Windows names are texts anyway.)
QString NameOfBytes(const QByteArray& bytes);
QString NameOf(const std::filesystem::path& file);

/// A file's name as the system wants it; what `NameOfBytes` made of bytes becomes those.
std::filesystem::path PathOf(const QString& name);

/// Does the name stand for bytes that are no text? The toolkit finds no such file.
bool IsNoText(const QString& name);
