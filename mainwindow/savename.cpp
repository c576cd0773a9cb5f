#include "mainwindow/savename.h"

#include "formats/format.h"
#include "mainwindow/patientfiles.h"
#include "mainwindow/subtitlefiles.h"
#include "platform/commondialogs.h"
#include "platform/messageboxes.h"
#include "platform/paths.h"

#include <QFileInfo>
#include <QObject>

namespace {

bool TellsFormat(const QString& name) {
    return FormatByName(name.toStdString()) != nullptr;
}

void Prepare(CommonDialog& dialog, const QString& document) {
    dialog.Title.clear();
    dialog.PickedExtension.clear();
    dialog.PickedFilter.clear();
    if (document.trimmed().isEmpty()) {
        dialog.FileName = StartingName(dialog.FileName);
        return;
    }
    dialog.FileName = document.trimmed();
    if (TellsFormat(document))
        dialog.PickedExtension = '.' + QFileInfo(document.trimmed()).suffix().toLower();
}

/// The name with the extension of the picked filter, when the user wants it.
std::optional<QString> Completed(QWidget* parent, const CommonDialog& dialog) {
    const QFileInfo file(dialog.FileName);
    const QString& extension = dialog.PickedExtension;
    const QString refusal = QObject::tr("“%1” does not tell the format.").arg(file.fileName());
    if (!TellsFormat(extension)) {
        ShowMessage(parent, refusal, MessageIcon::Exclamation);
        return std::nullopt;
    }
    const QString name = dialog.FileName + extension;
    if (!AskYesNo(parent,
                  refusal + QObject::tr(" Save it as “%1”?").arg(file.fileName() + extension),
                  MessageIcon::Question))
        return std::nullopt;
    if (FileExistsPatiently(parent, name) &&
        !AskYesNo(parent,
                  QObject::tr("“%1” already exists.\nDo you want to replace it?")
                      .arg(file.fileName() + extension),
                  MessageIcon::Question))
        return std::nullopt;
    return name;
}

/// The dialog asks before a file is replaced, but finds none whose name is no text.
bool MayReplace(QWidget* parent, const QString& name) {
    return !IsNoText(name) || !FileExistsPatiently(parent, name) ||
           AskYesNo(parent,
                    QObject::tr("“%1” already exists.\nDo you want to replace it?")
                        .arg(QFileInfo(name).fileName()),
                    MessageIcon::Question);
}

} // namespace

std::optional<QString> AskSaveName(QWidget* parent, CommonDialog& dialog, const QString& document) {
    Prepare(dialog, document);
    while (dialog.ShowSave(parent)) {
        if (!TellsFormat(dialog.FileName)) {
            const auto name = Completed(parent, dialog);
            if (!name)
                continue;
            dialog.FileName = *name;
        }
        if (!MayReplace(parent, dialog.FileName))
            continue;
        return dialog.FileName;
    }
    return std::nullopt;
}
