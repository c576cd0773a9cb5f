#include "platform/commondialogs.h"

#include "platform/beside.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QLineEdit>
#include <QStringList>

namespace {

// "*.mpg;*.mpeg" becomes "*.mpg *.MPG *.mpeg *.MPEG": dialogs of the desktop mind
// letter case where the file system does.
QString Patterns(const QString& patterns) {
    QStringList result;
    for (const QString& pattern : patterns.split(';', Qt::SkipEmptyParts)) {
        const QString trimmed = pattern.trimmed();
#ifdef Q_OS_WIN
        result << trimmed;
#else
        result << (trimmed == "*.*" ? QStringLiteral("*") : trimmed);
        if (trimmed.toUpper() != trimmed)
            result << trimmed.toUpper();
#endif
    }
    return result.join(' ');
}

QStringList NameFilters(const QString& filter) {
    const QStringList parts = filter.split('|');
    QStringList result;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        result << parts[i] + " (" + Patterns(parts[i + 1]) + ")";
    return result;
}

// The file's folder, or the nearest one above it that is there.
QDir StartFolder(const QFileInfo& file) {
    QString path = file.absolutePath();
    while (!QFileInfo(path).isDir()) {
        const QString parent = QFileInfo(path).absolutePath();
        if (parent == path)
            return QDir::current();
        path = parent;
    }
    return QDir(path);
}

// ".srt" of "*.srt;*.txt", nothing of "*.*".
QString FirstExtension(const QString& patterns) {
    const QString first = patterns.section(';', 0, 0).trimmed();
    return first.startsWith("*.") && first != "*.*" ? first.mid(1).toLower() : QString();
}

QString FilterWith(const CommonDialog& settings) {
    const QStringList parts = settings.Filter.split('|');
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        if (settings.PickedFilter.isEmpty()
                ? FirstExtension(parts[i + 1]) == settings.PickedExtension
                : parts[i] == settings.PickedFilter)
            return NameFilters(settings.Filter).at(i / 2);
    return {};
}

// The dialog may answer the filter's text with its patterns or without them.
void TakePicked(const QFileDialog& dialog, CommonDialog& settings) {
    const QString picked = dialog.selectedNameFilter();
    const QStringList parts = settings.Filter.split('|');
    const QStringList filters = NameFilters(settings.Filter);
    for (qsizetype i = 0; i < filters.size(); ++i)
        if (picked == filters[i] || picked == parts[2 * i]) {
            settings.PickedFilter = parts[2 * i];
            settings.PickedExtension = FirstExtension(parts[2 * i + 1]);
            return;
        }
}

/// Looks at the name that was typed before the toolkit does, which would stand still where
/// the disk does not answer. A dialog of the desktop has a process of its own.
class FileDialog : public QFileDialog {
  public:
    using QFileDialog::QFileDialog;

  protected:
    void accept() override {
        const auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (name == nullptr || name->text().isEmpty())
            return QFileDialog::accept();
        const QFileInfo file(directory().absoluteFilePath(name->text()));
        const auto answer =
            AskBeside<bool>(this, file.path(), file.filePath(), [path = file.filePath()] {
                static_cast<void>(QFileInfo(path).isDir());
                return true;
            });
        if (answer)
            QFileDialog::accept();
    }
};

bool Run(QFileDialog& dialog, CommonDialog& settings) {
    QString& fileName = settings.FileName;
    // The filters' texts name the patterns themselves.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(NameFilters(settings.Filter));
    if (!settings.PickedExtension.isEmpty() || !settings.PickedFilter.isEmpty())
        dialog.selectNameFilter(FilterWith(settings));
    if (!fileName.isEmpty()) {
        const QFileInfo file(fileName);
        const auto folder = AskBeside<QDir>(dialog.parentWidget(), file.path(), fileName,
                                            [file] { return StartFolder(file); });
        dialog.setDirectory(folder.value_or(QDir::home()));
        dialog.selectFile(file.fileName());
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    fileName = QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
    TakePicked(dialog, settings);
    return true;
}

} // namespace

bool CommonDialog::ShowOpen(QWidget* parent) {
    FileDialog dialog(parent, Title);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(FileMustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    return Run(dialog, *this);
}

bool CommonDialog::ShowSave(QWidget* parent) {
    FileDialog dialog(parent, Title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    return Run(dialog, *this);
}

std::optional<QFont> ChooseFont(QWidget* parent, const QFont& current) {
    bool chosen = false;
    const QFont font = QFontDialog::getFont(&chosen, current, parent);
    return chosen ? std::optional(font) : std::nullopt;
}
