#pragma once

#include "base/filestamp.h"
#include "formats/save.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

class CommonDialog;
class QWidget;

/// The document, as far as a save needs it.
struct SaveJob {
    const SUBTITLES& titles;
    const FileStyle& style;
    const std::string& codePage;
    /// As the file box shows it; empty for a document without a name.
    QString name;
    std::function<double()> askFrameRate;
    std::function<void()> beforeWriting;
};

/// Saves a document with the questions around that: for the name, for styles that the
/// format leaves out, and when the file is no longer the one that was opened.
class FileSaver {
  public:
    FileSaver(QWidget* window, CommonDialog& dialog)
        : m_window(window)
        , m_dialog(dialog) {}

    /// Another document stands: from this file, or from none when the name is empty.
    void Opened(const QString& file);
    /// Shows what there is to tell. Nothing: refused or cancelled, nothing was written.
    std::optional<SaveResult> Save(const SaveJob& job);

  private:
    bool ChooseName(const SaveJob& job);
    bool AskAboutLosses(const SaveJob& job);
    bool AskAboutStyles(const SUBTITLES& titles);
    bool AskAboutChange(bool& again);

    QWidget* m_window;
    CommonDialog& m_dialog;
    std::filesystem::path m_file;
    FileStamp m_stamp;
    bool m_stylesAnswered = false;
    bool m_keepStyles = false;
    std::string m_lossesAnswered;
};
