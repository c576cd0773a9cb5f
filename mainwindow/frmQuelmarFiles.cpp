#include "mainwindow/frmQuelmar.h"

#include "formats/load.h"
#include "mainwindow/fileexists.h"
#include "mainwindow/frmFrameRate.h"
#include "mainwindow/frmLoading.h"
#include "mainwindow/startingname.h"
#include "mainwindow/transportstrip.h"
#include "model/step.h"
#include "platform/messageboxes.h"
#include "platform/updown.h"
#include "player/mediaplayercontrol.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>

namespace {

const QString MediaFilter =
    QStringLiteral("Video and Audio Files|*.avi;*.mpg;*.mpeg;*.asf;*.mov;*.wav;*.mp3|"
                   "Video files (avi, mpg, asf, mov)|*.avi;*.mpg;*.mpeg;*.asf;*.mov|"
                   "Audio Files (wav, mp3)|*.wav;*.mp3|"
                   "AVI files (*.avi)|*.avi|"
                   "MPEG files (*.mpg)|*.mpg;*.mpeg|"
                   "ASF files (*.asf)|*.asf|"
                   "QuickTime files (*.mov)|*.mov|"
                   "MPeg layer 3 files (*.mp3)|*.mp3|"
                   "Windows WAV audio|*.wav|"
                   "All Files (*.*)|*.*");

/// A shorter text names no subtitle file: one letter and an extension.
constexpr int ShortestName = 5;

constexpr double FirstSubtitleStart = 1;
constexpr double FirstSubtitleEnd = 2;

std::filesystem::path PathOf(const QString& name) {
#ifdef Q_OS_WIN
    return name.toStdWString();
#else
    return QFile::encodeName(name).toStdString();
#endif
}

bool Exists(const QString& name) {
    return FileExists(name.toStdString());
}

/// Message boxes break lines at line feeds.
QString MessageText(const std::string& message) {
    return QString::fromStdString(message).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

} // namespace

void frmQuelmar::OpenFiles(const QString& media, const QString& subtitles) {
    // The subtitles are there at once; the player takes its time.
    if (!subtitles.isEmpty())
        txtSRT->setText(subtitles);
    if (!media.isEmpty())
        txtAVI->setText(media);
}

void frmQuelmar::cmdBrowseAVI_Click() {
    PrepareStartingName();
    DLG.Filter = MediaFilter;
    DLG.Title = QStringLiteral("Select an existing media file");
    DLG.PickedExtension.clear();
    DLG.FileMustExist = true;
    if (DLG.ShowOpen(this))
        txtAVI->setText(DLG.FileName);
    AVIFileOK = m_player->ReadyState() != 0;
    for (QWidget* control : {static_cast<QWidget*>(txtTime), static_cast<QWidget*>(UDTime),
                             static_cast<QWidget*>(MP), static_cast<QWidget*>(picButtons)})
        control->setEnabled(AVIFileOK);
    picButtons->Picture(AVIFileOK ? StripPictureEnabled : StripPictureDisabled);
}

void frmQuelmar::txtAVI_Change() {
    m_document.MediaFile = txtAVI->text().toStdString();
    AVIFileOK = Exists(txtAVI->text());
    if (AVIFileOK) {
        m_player->FileName(txtAVI->text());
        Form_Resize();
    }
    EnableMediaControls();
}

/// The player's answer decides, also where it holds an earlier file.
void frmQuelmar::EnableMediaControls() {
    AVIFileOK = m_player->ReadyState() != 0;
    MP->setEnabled(AVIFileOK);
    txtTime->setEnabled(AVIFileOK);
    UDTime->setEnabled(AVIFileOK);
    picButtons->setEnabled(AVIFileOK && m_player->State() != Player::Playing);
    cmdBlue->setEnabled(AVIFileOK && m_document.ListWindowOpen);
    cmdGreen->setEnabled(cmdBlue->isEnabled());
    cmdAdjust->setEnabled(cmdBlue->isEnabled());
}

void frmQuelmar::cmdBrowseSRT_Click() {
    if (m_document.SubtitlesChanged) {
        if (AskSaveFirst() && !SaveSubtitles())
            return;
        m_document.SubtitlesChanged = false;
    }
    PrepareStartingName();
    DLG.Filter = QString::fromStdString(FormatFilter());
    DLG.Title = QStringLiteral("Select an existing file or enter a new filename");
    DLG.PickedExtension.clear();
    DLG.FileMustExist = false;
    if (!DLG.ShowOpen(this))
        return;
    // Emptied first, so that the same file is read again.
    txtSRT->clear();
    txtSRT->setText(DLG.FileName);
    if (!Exists(DLG.FileName) &&
        AskYesNo(this,
                 QStringLiteral("This file does not yet exist.\nDo you want to start a new file?"),
                 MessageIcon::Question))
        StartNewFile();
}

void frmQuelmar::txtSRT_Change() {
    m_document.SubtitleFile = txtSRT->text().toStdString();
    if (m_document.SubtitlesChanged && AskSaveFirst())
        SaveSubtitles();
    m_subtitleFileExists = Exists(txtSRT->text());
    if (m_subtitleFileExists && txtSRT->text().size() >= ShortestName)
        LoadSubtitles();
}

bool frmQuelmar::AskSaveFirst() {
    const bool save =
        AskYesNo(this, QStringLiteral("You have changed subtitles.\nSave them first?"),
                 MessageIcon::Question);
    if (!save)
        emit SaveDeclined();
    return save;
}

void frmQuelmar::PrepareStartingName() {
    DLG.FileName = QString::fromStdString(StartingName(DLG.FileName.toStdString()));
}

void frmQuelmar::StartNewFile() {
    const Step step(Subt, "New file", Step::Undo::Emptied);
    m_document.BeginOther();
    Subt.Clear();
    m_document.Style = {};
    Subt.Add(FirstSubtitleStart, FirstSubtitleEnd, "First subtitle");
    Subt.UndoEnabled(true);
    cmdEdit->setEnabled(true);
    cmdSave->setEnabled(true);
    m_saver.Opened({});
    m_document.Saved();
}

void frmQuelmar::LoadSubtitles() {
    const LoadResult result = LoadDocument();
    if (!result.message.empty())
        ShowMessage(this, MessageText(result.message));
}

LoadResult frmQuelmar::LoadDocument() {
    const Step step(Subt);
    std::optional<frmLoading> loading;
    LoadHooks hooks;
    hooks.askFrameRate = [this](std::optional<double> /*named*/) {
        return AskFrameRate();
    };
    hooks.loading = [&] {
        loading.emplace(this);
    };
    hooks.progress = [&](double done) {
        return !loading || loading->Progress(done);
    };
    bool replaced = false;
    hooks.replacing = [&] {
        replaced = true;
        m_document.BeginOther();
    };
    LoadResult result =
        LoadTitles(PathOf(txtSRT->text()), m_codePage, Subt, m_document.Style, hooks);
    loading.reset();
    if (result.outcome != LoadOutcome::NotOpened) {
        cmdEdit->setEnabled(true);
        cmdSave->setEnabled(true);
    }
    if (replaced) {
        m_saver.Opened(txtSRT->text());
        m_document.SubtitlesChanged = false;
        m_document.Saved();
    }
    return result;
}

bool frmQuelmar::SaveSubtitles() {
    DLG.Filter = QString::fromStdString(FormatFilter());
    const std::optional<SaveResult> result =
        m_saver.Save({.titles = Subt,
                      .style = m_document.Style,
                      .codePage = m_codePage,
                      .name = txtSRT->text(),
                      .askFrameRate = [this] { return AskFrameRate(); },
                      .beforeWriting =
                          [this] {
                              emit FileEmptying();
                          }});
    if (!result)
        return false;
    // What is in no file is unsaved work, whatever it was before.
    m_document.SubtitlesChanged = !result->written;
    if (result->proven)
        m_document.Saved();
    return result->written;
}

void frmQuelmar::cmdSave_Click() {
    SaveSubtitles();
}

double frmQuelmar::AskFrameRate() {
    frmFrameRate dialog(m_document, this);
    dialog.exec();
    return m_document.FrameRate;
}
