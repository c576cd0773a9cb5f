#pragma once

#include "base/filestamp.h"
#include "base/wholefile.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <optional>

class QWidget;

/// What a window asks of the disk, without standing still where the disk does not answer
/// (see platform/beside.h). What is given up counts as not there.

/// As `FileExists`.
bool FileExistsPatiently(QWidget* window, const QString& name);
/// The same for a film, whose beginning has been read then.
bool FilmAnswersPatiently(QWidget* window, const QString& name);
/// The same without a word: `answered` is called with the answer, at once when it comes at
/// once, and never when the disk never answers or `window` is gone.
void WhenFilmAnswers(QWidget* window, const QString& name, std::function<void(bool)> answered);
std::optional<FileBytes> ReadWholeFilePatiently(QWidget* window, const std::filesystem::path& file);
FileStamp StampPatiently(QWidget* window, const std::filesystem::path& file);
/// For `SaveHooks::beside`.
std::function<bool(std::function<void()>)> BesideFor(QWidget* window,
                                                     const std::filesystem::path& file);
