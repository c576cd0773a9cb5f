#pragma once

#include <QFont>
#include <QString>

#include <optional>

class QWidget;

/// The open, save and font dialogs. The chosen name stays in `FileName`, which is
/// where the next dialog starts; a cancelled dialog leaves it as it was.
class CommonDialog {
  public:
    /// "SAMI files (*.smi)|*.smi|SubRip files (*.srt)|*.srt": pairs of text and patterns.
    QString Filter;
    QString Title;
    QString FileName;
    /// ".srt": the filter that is picked when the dialog opens, and then the one that the
    /// user left it with, by its first pattern. Empty for one that takes all files; where
    /// no filter has it, the first one is picked.
    QString PickedExtension;
    /// The same by the filter's text; goes before the extension unless it is empty.
    QString PickedFilter;
    /// The open dialog takes existing files only.
    bool FileMustExist = false;

    /// false: cancelled.
    bool ShowOpen(QWidget* parent);
    /// Asks before an existing file is overwritten. false: cancelled.
    bool ShowSave(QWidget* parent);
};

/// Nothing when cancelled.
std::optional<QFont> ChooseFont(QWidget* parent, const QFont& current);
