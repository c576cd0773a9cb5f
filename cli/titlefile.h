#pragma once

#include "fit/fit.h"
#include "formats/guess.h"
#include "formats/load.h"
#include "model/times.h"

#include <filesystem>
#include <string>
#include <vector>

/// How files are read and written.
struct FileManners {
    /// Frames a second of files that count frames; greater than 0.
    double frameRate = DefaultFrameRate;
    /// Of files that are not Unicode.
    std::string codePage{GuessedPage};
    /// Take what could be read of a corrupt file.
    bool partial = false;
    /// The rate was given: a file's own is not asked.
    bool frameRateGiven = false;
    /// Read a wild file tolerantly, in the first of its languages.
    bool repair = false;
};

/// Names on the command line are UTF-8.
std::filesystem::path PathOf(const std::string& utf8);
std::string NameOf(const std::filesystem::path& path);

/// A subtitle file, loaded.
class TitleFile {
  public:
    /// false, with the reason in `message`, when there are no titles to work with. Else
    /// `message` is what is to be told of the file, if anything.
    bool Load(const std::filesystem::path& file, const FileManners& manners, std::string& message);
    /// The file was corrupt or needed mending, and what the strict reading gave was taken.
    bool Damaged() const { return m_damaged; }

    std::vector<FitTitle> Titles() const;
    /// One for each title.
    void SetTimes(const std::vector<FitTimes>& times);

    /// false, with the reason in `message`, when it was not written.
    bool Save(const std::filesystem::path& file, const FileManners& manners,
              std::string& message) const;

  private:
    SUBTITLES m_titles;
    FileStyle m_style;
    double m_frameRate = DefaultFrameRate;
    bool m_damaged = false;
};
