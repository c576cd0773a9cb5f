#include "app/interrupted.h"

#include "base/replacefile.h"
#include "base/savejournal.h"
#include "platform/beside.h"
#include "platform/messageboxes.h"

#include <QObject>
#include <QString>

#include <system_error>
#include <utility>
#include <vector>

namespace {

using Saves = std::vector<InterruptedSave>;

QString Shown(const std::filesystem::path& file) {
    return QString::fromStdU16String(file.u16string());
}

/// It lies elsewhere too, until it is whole.
bool Overwrite(const InterruptedSave& save, const std::string& bytes) {
    ReplaceHooks hooks;
    hooks.keep = [](std::string_view) {
        return true;
    };
    return ReplaceBytes(save.file, bytes, hooks) == ReplaceResult::Written;
}

void Offer(QWidget& window, const InterruptedSave& save) {
    const QString file = Shown(save.file);
    const int answer = AskChoice(
        &window,
        QObject::tr("The saving of “%1” was cut short, and the file may be damaged.\nWhat it held "
                    "before and what it was to hold are both kept.")
            .arg(file),
        {QObject::tr("Put back the old one"), QObject::tr("Finish the saving"),
         QObject::tr("Later")});
    if (answer == 2)
        return;
    const auto written = AskBeside<bool>(&window, Shown(save.file.parent_path()), file, [=] {
        return Overwrite(save, answer == 0 ? save.oldBytes : save.newBytes);
    });
    if (!written.value_or(false))
        return ShowMessage(&window, QObject::tr("“%1” cannot be written. It is asked about again "
                                                "at the next start.")
                                        .arg(file));
    std::error_code ignored;
    std::filesystem::remove(save.journal, ignored);
}

} // namespace

void OfferInterruptedSaves(QWidget& window, const std::filesystem::path& folder) {
    if (folder.empty())
        return;
    const auto saves = AskBeside<Saves>(&window, Shown(folder), Shown(folder),
                                        [folder] { return FindInterruptedSaves(folder); });
    if (!saves)
        return;
    for (const InterruptedSave& save : *saves)
        Offer(window, save);
}
