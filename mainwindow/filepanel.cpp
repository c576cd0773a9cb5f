#include "mainwindow/filepanel.h"

#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "mainwindow/patientfiles.h"
#include "mainwindow/subtitlefiles.h"
#include "platform/fontscale.h"
#include "platform/messageboxes.h"

#include <QAction>
#include <QGridLayout>
#include <QMenu>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStyle>

#include <utility>

namespace {

/// The design width.
constexpr int PanelWidth = 266;
constexpr int ShortestCommand = 56;
constexpr int BrowseButtonWidth = 28;
/// A shorter text names no subtitle file: one letter and an extension.
constexpr int ShortestName = 5;

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
                   "All Files (*.*)|*.*|"
                   "All films and sound|*.avi;*.mpg;*.mpeg;*.asf;*.wmv;*.mov;*.mp4;*.m4v;*.mkv;"
                   "*.webm;*.ts;*.m2ts;*.mts;*.vob;*.ogm;*.ogv;*.flv;*.3gp;*.wav;*.mp3;*.flac;"
                   "*.m4a;*.aac;*.opus;*.ogg;*.oga;*.wma;*.mka");

} // namespace

FilePanel::FilePanel(MainState& state, SubtitleFiles& files, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_files(files)
    , m_modes(new QGridLayout)
    , m_commands(new QGridLayout)
    , Label2(MakeLabel(this, "Label2", QStringLiteral("Media:")))
    , txtAVI(Named(new QLineEdit(this), "txtAVI", tr("Media file"),
                   QStringLiteral("Enter the media (AVI, MPG...) file path here, or click the "
                                  "button to browse")))
    , cmdBrowseAVI(
          MakeBrowseButton(this, "cmdBrowseAVI", QStringLiteral("Browse for the media file")))
    , Label3(MakeLabel(this, "Label3", QStringLiteral("Subtitle:")))
    , txtSRT(Named(new QLineEdit(this), "txtSRT", tr("Subtitle file"),
                   QStringLiteral("Enter the subtitle (SRT, SMI, SUB) file path here, or click "
                                  "the little button to browse")))
    , actMended(txtSRT->addAction(style()->standardIcon(QStyle::SP_MessageBoxInformation),
                                  QLineEdit::TrailingPosition))
    , actGuessed(txtSRT->addAction(style()->standardIcon(QStyle::SP_MessageBoxQuestion),
                                   QLineEdit::TrailingPosition))
    , actReadAs(new QAction(tr("&Read as..."), this))
    , cmdBrowseSRT(
          MakeBrowseButton(this, "cmdBrowseSRT", QStringLiteral("Browse for the subtitle file")))
    , Label6(MakeLabel(this, "Label6", QStringLiteral("When playing")))
    , optShow(Named(new QRadioButton(QStringLiteral("View subtitles"), this), "optShow", {},
                    QStringLiteral("Show the subtitles like they would occur in a player")))
    , optPosition(Named(new QRadioButton(QStringLiteral("Position Subtitles"), this), "optPosition",
                        {},
                        QStringLiteral("Show each subtitle ahead of time, and allow for placing "
                                       "it by pressing a key")))
    , cmdEdit(MakeButton(this, "cmdEdit", QStringLiteral("Edit Subtitles"),
                         QStringLiteral("Open the subtitle list for editing individual titles or "
                                        "groups")))
    , cmdSave(MakeButton(this, "cmdSave", QStringLiteral("Save Subtitles"),
                         QStringLiteral("Save the current version of the subtitles to a file")))
    , cmdExit(MakeButton(this, "cmdExit", QStringLiteral("Exit"), QStringLiteral("Exit Quelmar"))) {
    setObjectName(QStringLiteral("PB"));
    optShow->setChecked(true);
    cmdEdit->setEnabled(false);
    cmdSave->setEnabled(false);
    actMended->setObjectName("actMended");
    actMended->setText(tr("Mended"));
    actMended->setVisible(false);
    actGuessed->setObjectName("actGuessed");
    actGuessed->setText(tr("Read as..."));
    actReadAs->setObjectName("actReadAs");
    Files_ReadIn({}, false);
    txtSRT->setContextMenuPolicy(Qt::CustomContextMenu);
    Label2->setBuddy(txtAVI);
    Label3->setBuddy(txtSRT);
    LayOut();
    ConnectControls();
}

void FilePanel::LayOut() {
    QGridLayout* grid = MakePanelGrid(this, PanelMargin, PanelMargin / 2);
    grid->addWidget(Label2, 0, 0);
    grid->addWidget(txtAVI, 0, 1);
    grid->addWidget(cmdBrowseAVI, 0, 2);
    grid->addWidget(Label3, 1, 0);
    grid->addWidget(txtSRT, 1, 1);
    grid->addWidget(cmdBrowseSRT, 1, 2);
    m_modes->setSpacing(PanelGap);
    m_modes->setHorizontalSpacing(2 * PanelGap);
    m_modes->setColumnStretch(1, 1);
    grid->addLayout(m_modes, 2, 0, 1, 3);
    grid->setRowStretch(3, 1);
    m_commands->setSpacing(PanelGap);
    grid->addLayout(m_commands, 4, 0, 1, 3);
    Narrow(false);
}

void FilePanel::Narrow(bool narrow) {
    if (std::exchange(m_narrow, narrow) == narrow)
        return;
    m_modes->addWidget(Label6, 0, 0, 1, narrow ? 2 : 1);
    m_modes->addWidget(optShow, narrow ? 1 : 0, narrow ? 0 : 1, 1, narrow ? 2 : 1);
    m_modes->addWidget(optPosition, narrow ? 2 : 1, narrow ? 0 : 1, 1, narrow ? 2 : 1);
    m_commands->addWidget(cmdEdit, 0, 0);
    m_commands->addWidget(cmdSave, narrow ? 1 : 0, narrow ? 0 : 1);
    m_commands->addWidget(cmdExit, narrow ? 1 : 0, narrow ? 1 : 2);
    layout()->invalidate();
}

void FilePanel::ConnectControls() {
    On(txtAVI, &QLineEdit::textChanged, this, &FilePanel::txtAVI_Change);
    On(txtSRT, &QLineEdit::textChanged, this, &FilePanel::txtSRT_Change);
    On(cmdBrowseAVI, &QPushButton::clicked, this, &FilePanel::cmdBrowseAVI_Click);
    On(cmdBrowseSRT, &QPushButton::clicked, this, &FilePanel::cmdBrowseSRT_Click);
    On(cmdEdit, &QPushButton::clicked, this, &FilePanel::cmdEdit_Click);
    On(cmdSave, &QPushButton::clicked, this, &FilePanel::cmdSave_Click);
    On(cmdExit, &QPushButton::clicked, this, &FilePanel::cmdExit_Click);
    connect(optShow, &QRadioButton::toggled, this,
            [this](bool chosen) { chosen ? optShow_Click() : optPosition_Click(); });
    On(actMended, &QAction::triggered, this, &FilePanel::actMended_Trigger);
    On(&m_files, &SubtitleFiles::Opened, this, &FilePanel::DocumentOpened);
    On(&m_files, &SubtitleFiles::Mended, this, &FilePanel::Files_Mended);
    On(&m_files, &SubtitleFiles::ReadIn, this, &FilePanel::Files_ReadIn);
    On(actGuessed, &QAction::triggered, this, &FilePanel::actReadAs_Trigger);
    On(actReadAs, &QAction::triggered, this, &FilePanel::actReadAs_Trigger);
    On(txtSRT, &QWidget::customContextMenuRequested, this, &FilePanel::txtSRT_ContextMenu);
}

QSize FilePanel::NeededSize() const {
    for (QPushButton* browse : {cmdBrowseAVI, cmdBrowseSRT})
        browse->setFixedWidth(Scaled(BrowseButtonWidth, *browse));
    cmdExit->setFixedWidth(qMax(CaptionWidth(cmdExit), ShortestCommand));
    const QSize needed = layout()->minimumSize();
    return {qMax(PanelWidth, needed.width()), needed.height()};
}

void FilePanel::OpenFiles(const QString& media, const QString& subtitles) {
    // The subtitles are there at once; the player takes its time.
    const auto name = [](QLineEdit* box, const QString& file) {
        if (file.isEmpty())
            return;
        if (box->text() == file) {
            // The same once more is opened once more.
            const QSignalBlocker quiet(box);
            box->clear();
        }
        box->setText(file);
    };
    name(txtSRT, subtitles);
    name(txtAVI, media);
}

void FilePanel::NameFiles(const QString& media, const QString& subtitles) {
    const QSignalBlocker notRead(txtSRT);
    txtSRT->setText(subtitles);
    if (media == txtAVI->text())
        return;
    const QSignalBlocker notOpened(txtAVI);
    txtAVI->setText(media);
    m_state.document.MediaFile = media.toStdString();
    WhenFilmAnswers(this, media, [this, media](bool there) {
        if (media == txtAVI->text())
            OpenFilm(there);
    });
}

void FilePanel::OpenSubtitlesInFilm() {
    if (!m_files.SaveIfWished())
        return;
    const QString before = txtSRT->text();
    const QString film = m_state.player->FileName();
    NameSubtitles(film);
    if (!m_files.LoadSubtitles(film))
        NameSubtitles(before);
}

void FilePanel::NameSubtitles(const QString& name) {
    const QSignalBlocker notRead(txtSRT);
    txtSRT->setText(name);
    m_state.document.SubtitleFile = name.toStdString();
}

void FilePanel::DocumentOpened() {
    cmdEdit->setEnabled(true);
    cmdSave->setEnabled(true);
}

void FilePanel::EditEnabled(bool enabled) {
    cmdEdit->setEnabled(enabled);
}

void FilePanel::cmdBrowseAVI_Click() {
    CommonDialog& dialog = m_state.DLG;
    m_files.PrepareStartingName();
    dialog.Filter = MediaFilter;
    dialog.PickedFilter = m_filter;
    dialog.Title = QStringLiteral("Select an existing media file");
    dialog.PickedExtension.clear();
    dialog.FileMustExist = true;
    if (dialog.ShowOpen(window())) {
        m_filter = dialog.PickedFilter;
        txtAVI->setText(dialog.FileName);
    }
    emit MediaBrowsed();
}

void FilePanel::txtAVI_Change() {
    m_state.document.MediaFile = txtAVI->text().toStdString();
    OpenFilm(FilmAnswersPatiently(window(), txtAVI->text()));
}

void FilePanel::OpenFilm(bool there) {
    if (there)
        m_state.player->FileName(txtAVI->text());
    emit MediaNamed();
}

void FilePanel::cmdBrowseSRT_Click() {
    const auto name = m_files.Browse();
    if (!name)
        return;
    // Emptied first, so that the same file is read again.
    txtSRT->clear();
    txtSRT->setText(*name);
    if (!FileExistsPatiently(window(), *name) &&
        AskYesNo(window(),
                 QStringLiteral("This file does not yet exist.\nDo you want to start a new file?"),
                 MessageIcon::Question))
        m_files.StartNewFile();
}

void FilePanel::txtSRT_Change() {
    m_state.document.SubtitleFile = txtSRT->text().toStdString();
    if (!m_files.SaveIfWished())
        return;
    const QString name = txtSRT->text();
    if (FileExistsPatiently(window(), name) && name.size() >= ShortestName)
        m_files.LoadSubtitles(name);
}

void FilePanel::Files_Mended(const QString& what) {
    actMended->setVisible(!what.isEmpty());
    actMended->setToolTip(
        tr("The file was mended when it was read: %1.\nSaving writes it in the right form.")
            .arg(what));
}

void FilePanel::Files_ReadIn(const QString& codePage, bool guessed) {
    guessed = guessed && !codePage.isEmpty();
    actGuessed->setVisible(guessed);
    actReadAs->setEnabled(!codePage.isEmpty());
    if (codePage.isEmpty())
        return;
    const QString read = guessed ? tr("Read as %1, which is a guess.").arg(codePage)
                                 : tr("Read as %1.").arg(codePage);
    actGuessed->setToolTip(read + QLatin1Char('\n') + tr("Click to read it in another code page."));
    emit Note(read);
}

void FilePanel::txtSRT_ContextMenu(const QPoint& place) {
    QMenu* menu = txtSRT->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addSeparator();
    menu->addAction(actReadAs);
    menu->popup(txtSRT->mapToGlobal(place));
}

void FilePanel::actReadAs_Trigger() {
    m_files.ReadAs();
}

void FilePanel::actMended_Trigger() {
    ShowMessage(window(), actMended->toolTip());
}

void FilePanel::optShow_Click() {
    emit ModeChosen(DisplayMode::View);
}

void FilePanel::optPosition_Click() {
    emit ModeChosen(DisplayMode::Position);
}

void FilePanel::cmdEdit_Click() {
    emit EditClicked();
}

void FilePanel::cmdSave_Click() {
    m_files.SaveSubtitles();
}

void FilePanel::cmdExit_Click() {
    emit ExitClicked();
}
