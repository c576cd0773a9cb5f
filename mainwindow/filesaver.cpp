#include "mainwindow/filesaver.h"

#include "base/savejournal.h"
#include "formats/subrip.h"
#include "mainwindow/patientfiles.h"
#include "mainwindow/savename.h"
#include "platform/commondialogs.h"
#include "platform/messageboxes.h"
#include "platform/paths.h"
#include "platform/settings.h"

#include <QFileInfo>
#include <QObject>

namespace {

/// Message boxes break lines at line feeds.
QString MessageText(const std::string& message) {
    return QString::fromStdString(message).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

bool IsSubRip(const QString& name) {
    const Format* format = FormatByName(name.toStdString());
    return format != nullptr && format->name == SubRipFormat().name;
}

QString NameInQuotes(const QString& file) {
    return QStringLiteral("“%1”").arg(QFileInfo(file).fileName());
}

} // namespace

void FileSaver::Opened(const QString& file) {
    m_file = file.isEmpty() ? std::filesystem::path() : PathOf(file);
    m_stamp = m_file.empty() ? FileStamp() : StampPatiently(m_window, m_file);
    m_stylesAnswered = false;
    m_lossesAnswered.clear();
}

std::optional<SaveResult> FileSaver::Save(const SaveJob& job) {
    const std::string refusal = SaveRefusal(job.titles);
    if (!refusal.empty()) {
        ShowMessage(m_window, MessageText(refusal));
        return std::nullopt;
    }
    if (!ChooseName(job))
        return std::nullopt;
    FileStyle style = job.style;
    style.subRipStyles = m_keepStyles;
    SaveHooks hooks;
    hooks.askFrameRate = job.askFrameRate;
    hooks.beforeWriting = job.beforeWriting;
    hooks.journalFolder = StateFolder();
    const std::filesystem::path file = PathOf(m_dialog.FileName);
    hooks.beside = BesideFor(m_window, file);
    const SaveResult result = SaveTitles(file, job.codePage, job.titles, style, hooks);
    if (result.written) {
        m_file = file;
        m_stamp = StampPatiently(m_window, file);
    }
    if (!result.message.empty())
        ShowMessage(m_window, MessageText(result.message), MessageIcon::None,
                    QString::fromStdString(result.details));
    return result;
}

bool FileSaver::ChooseName(const SaveJob& job) {
    bool again = true;
    while (again) {
        again = false;
        const auto name = AskSaveName(m_window, m_dialog, job.name);
        if (!name || !AskAboutLosses(job) || (IsSubRip(*name) && !AskAboutStyles(job.titles)))
            return false;
        if (!AskAboutChange(again) && !again)
            return false;
    }
    return true;
}

/// What another format left beside the titles.
bool FileSaver::AskAboutLosses(const SaveJob& job) {
    const Format* format = FormatByName(m_dialog.FileName.toStdString(), job.style);
    const std::string notKept = format == nullptr ? "" : NotKept(*format, job.titles, job.style);
    if (notKept.empty() || notKept == m_lossesAnswered)
        return true;
    if (AskChoice(m_window, QString::fromStdString(notKept),
                  {QObject::tr("Save without"), QObject::tr("Cancel")}) == 1)
        return false;
    m_lossesAnswered = notKept;
    return true;
}

bool FileSaver::AskAboutStyles(const SUBTITLES& titles) {
    Settings settings;
    m_keepStyles = settings.Dword("SubRipStyles") == 1;
    const std::int32_t styled = m_keepStyles || m_stylesAnswered ? 0 : TitlesWithStyles(titles);
    if (styled == 0)
        return true;
    const QString text =
        styled == 1
            ? QObject::tr(
                  "SubRip files are written without italics and bold: 1 title loses its own.")
            : QObject::tr(
                  "SubRip files are written without italics and bold: %1 titles lose theirs.")
                  .arg(styled);
    const int answer =
        AskChoice(m_window, text,
                  {QObject::tr("Save without"), QObject::tr("Keep them"), QObject::tr("Cancel")});
    if (answer == 2)
        return false;
    m_stylesAnswered = true;
    m_keepStyles = answer == 1;
    if (m_keepStyles)
        settings.SetDword("SubRipStyles", 1);
    return true;
}

bool FileSaver::AskAboutChange(bool& again) {
    const QString& name = m_dialog.FileName;
    const std::filesystem::path file = PathOf(name);
    if (!m_stamp.there)
        return true;
    // By another path it is the same file too.
    const FileStamp now = StampPatiently(m_window, file);
    const bool same = file == m_file || (now.there && now.number == m_stamp.number &&
                                         now.number != 0 && now.device == m_stamp.device);
    if (!same || now == m_stamp)
        return true;
    const QString text = now.there ? QObject::tr("%1: Changed on the disk since it was opened.")
                                   : QObject::tr("%1: Removed from the disk since it was opened.");
    const int answer =
        AskChoice(m_window, text.arg(NameInQuotes(name)),
                  {QObject::tr("Save over it"), QObject::tr("Save as..."), QObject::tr("Cancel")});
    again = answer == 1;
    return answer == 0;
}
