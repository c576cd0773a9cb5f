#include "mainwindow/frmQuelmar.h"

#include "listeditor/frmList.h"
#include "mainwindow/displaypanel.h"
#include "mainwindow/filedrops.h"
#include "mainwindow/filepanel.h"
#include "mainwindow/frmKeys.h"
#include "mainwindow/handlers.h"
#include "mainwindow/keyplacer.h"
#include "mainwindow/mainactions.h"
#include "mainwindow/namedfiles.h"
#include "mainwindow/panelcontrols.h"
#include "mainwindow/soundlane.h"
#include "mainwindow/spokenwindow.h"
#include "mainwindow/subtitlefiles.h"
#include "mainwindow/titlefit.h"
#include "mainwindow/transportbuttons.h"
#include "mainwindow/windowplace.h"
#include "model/numbers.h"
#include "model/step.h"
#include "model/times.h"
#include "model/versions.h"
#include "platform/beside.h"
#include "platform/fontscale.h"
#include "platform/messageboxes.h"
#include "platform/settings.h"
#include "platform/twips.h"
#include "player/mediaplayercontrol.h"
#include "player/mpvplayer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <cmath>
#include <utility>

namespace {

constexpr std::int32_t MinimumWidth = 10000;
constexpr std::int32_t MinimumHeight = 5000;
/// With texts of the usual size, whose panels have that height.
constexpr QSize DesignSize(1000, 680);
constexpr int DesignPanelHeight = 156;

QSize MinimumSize() {
    return {ToPixels(MinimumWidth), ToPixels(MinimumHeight)};
}

double StoredFrameRate(const QString& text) {
    const std::optional<double> number = Number(text.toStdString());
    const double rate = number ? RoundTime(*number) : 0;
    return rate > 0 && std::isfinite(rate) ? rate : DefaultFrameRate;
}

} // namespace

frmQuelmar::frmQuelmar()
    : frmQuelmar(MakeMpvPlayer()) {}

frmQuelmar::frmQuelmar(std::unique_ptr<Player> player) {
    SpeakMainWindow();
    m_state.player = std::move(player);
    setObjectName(QStringLiteral("frmQuelmar"));
    setMinimumSize(MinimumSize());
    MP = std::make_unique<MediaPlayerControl>(*m_state.player, this);
    Named(MP.get(), "MP", tr("Media player"),
          QStringLiteral("Right-click for a player options menu, or move the mouse out to get rid "
                         "of this text"));
    m_files = std::make_unique<SubtitleFiles>(m_state, this);
    PB = std::make_unique<FilePanel>(m_state, *m_files, this);
    PB2 = std::make_unique<DisplayPanel>(m_state, this);
    m_transport = std::make_unique<TransportButtons>(*m_state.player, this);
    m_keys = std::make_unique<KeyPlacer>(m_state, *PB2, ActionKey, this);
    m_actions = std::make_unique<MainActions>(m_state, *PB2, *m_keys, *m_transport, this);
    m_lane = std::make_unique<SoundLane>(m_state, *MP,
                                         SoundLane::Host{[this] { OpenEditor(); },
                                                         [this] {
                                                             return ShownTitle();
                                                         }},
                                         this);
    m_drops = new FileDrops(this);
    m_drops->Take(*this);
    m_fit = std::make_unique<TitleFit>(m_state, *m_lane, *MP, *this, this);
    tmrListen = new QTimer(this);
    tmrListen->setObjectName("tmrListen");
    tmrListen->setSingleShot(true);
    tmrListen->setTimerType(Qt::PreciseTimer);
    NameKeys();
    ConnectParts();
    Form_Load();
}

frmQuelmar::~frmQuelmar() {
    m_state.player->disconnect(this);
    m_fit.reset();
    m_lane.reset();
    delete m_state.list.data();
}

void frmQuelmar::ConnectParts() {
    const Player* player = m_state.player.get();
    connect(player, &Player::ReadyStateChange, this, &frmQuelmar::EnableMediaControls);
    connect(player, &Player::Activated, this, [this] { setFocus(); });
    connect(tmrListen, &QTimer::timeout, this, &frmQuelmar::tmrListen_Timer);
    connect(m_drops, &FileDrops::Dropped, this, &frmQuelmar::Open);
    connect(PB.get(), &FilePanel::MediaNamed, this, &frmQuelmar::MediaNamed);
    connect(PB.get(), &FilePanel::MediaBrowsed, this, &frmQuelmar::MediaBrowsed);
    connect(PB.get(), &FilePanel::ModeChosen, this, [this](DisplayMode mode) {
        PB2->Mode(mode);
        m_actions->Refresh();
    });
    On(MP.get(), &MediaPlayerControl::SubtitlesWanted, PB.get(), &FilePanel::OpenSubtitlesInFilm);
    connect(PB.get(), &FilePanel::Note, MP.get(), &MediaPlayerControl::ShowNote);
    connect(PB.get(), &FilePanel::EditClicked, this, &frmQuelmar::OpenEditor);
    connect(PB.get(), &FilePanel::ExitClicked, this, &QWidget::close);
    const SubtitleFiles* files = m_files.get();
    connect(files, &SubtitleFiles::SaveDeclined, this, &frmQuelmar::SaveDeclined);
    connect(files, &SubtitleFiles::FileEmptying, this, &frmQuelmar::FileEmptying);
    connect(m_keys.get(), &KeyPlacer::Placed, MP.get(), &MediaPlayerControl::ShowNote);
    connect(PB2.get(), &DisplayPanel::TitleOnPicture, MP.get(), &MediaPlayerControl::ShowTitle);
    connect(player, &Player::PlayStateChange, m_actions.get(), &MainActions::Refresh);
    connect(m_actions.get(), &MainActions::OtherWindow, this, &frmQuelmar::OtherWindow);
    connect(m_actions.get(), &MainActions::ShowKeys, this, &frmQuelmar::ShowKeys);
    connect(m_actions.get(), &MainActions::LaneWanted, m_lane.get(), &SoundLane::Toggle);
    connect(m_actions.get(), &MainActions::FitWanted, m_fit.get(), &TitleFit::Open);
    connect(MP.get(), &MediaPlayerControl::SnapChosen, this, &frmQuelmar::SnapChosen);
    connect(m_keys.get(), &KeyPlacer::PlacingSince, m_lane.get(), &SoundLane::Placing);
    connect(m_lane.get(), &SoundLane::RoomChanged, this, &frmQuelmar::Form_Resize);
    m_connection = m_state.document.Subscribe(
        [this](const Change& change) { Guarded([&] { Document_Change(change); }); });
    Subt.UndoChangedListLength = [this] {
        Subt_UndoChangedListLength();
    };
    Subt.UndoPossible = [this](bool possible) {
        Subt_UndoPossible(possible);
    };
}

void frmQuelmar::Form_Load() {
    setWindowTitle(QStringLiteral("Quelmar V" QUELMAR_VERSION));
    EnableMediaControls();
    ReadSettings();
    Form_Resize();
    MP->setGeometry(0, 0, width(), PB->y());
    PlaceStrip();
    m_transport->picButtons->raise();
    ActionKey = SpaceKey;
    m_state.document.SubtitlesChanged = false;
    setFocus();
}

/// Larger texts take their room from the screen, not from the picture.
QSize frmQuelmar::FirstSize() {
    const QSize files = PB->NeededSize();
    const QSize display = PB2->NeededSize();
    const int panels = qMax(files.height(), display.height());
    return {qMax(DesignSize.width(), files.width() + display.width() + 1),
            DesignSize.height() + qMax(0, panels - DesignPanelHeight) + MP->BarHeight() -
                MediaPlayerControl::ControlBarHeight};
}

void frmQuelmar::ReadSettings() {
    const Settings settings;
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens << screen->availableGeometry();
    const QRect design = DesignPlace(FirstSize(), MinimumSize(),
                                     QGuiApplication::primaryScreen()->availableGeometry());
    const auto read = [&](NumberSetting name, int designed) {
        return ToPixels(settings.Dword(name, ToTwips(designed)));
    };
    const QRect remembered(read("Left", design.left()), read("Top", design.top()),
                           read("Width", design.width()), read("Height", design.height()));
    const QRect place = WindowPlace(remembered, design, MinimumSize(), screens);
    move(place.topLeft());
    resize(place.size());
    m_state.DLG.FileName = settings.String("MRU");
    MP->TitlesOnPicture(settings.Dword("ShowOnPicture") != 0);
    MP->SnapToSpeech(settings.Dword("SnapSpeech") != 0);
    SnapChosen();
    m_state.document.FrameRate = StoredFrameRate(settings.String("LastFrameRate"));
}

void frmQuelmar::WriteSettings() const {
    Settings settings;
    if (!isMinimized() && !isMaximized() && !isFullScreen()) {
        settings.SetDword("Left", ToTwips(x()));
        settings.SetDword("Top", ToTwips(y()));
        settings.SetDword("Width", ToTwips(width()));
        settings.SetDword("Height", ToTwips(height()));
    }
    settings.SetString("LastFrameRate",
                       QString::fromStdString(NumberText(RoundTime(m_state.document.FrameRate))));
    settings.SetString("MRU", m_state.DLG.FileName);
    settings.SetDword("ShowOnPicture", MP->TitlesOnPicture() ? 1 : 0);
    settings.SetDword("SnapSpeech", MP->SnapToSpeech() ? 1 : 0);
    m_lane->WriteSettings();
}

/// They lie side by side even where the first one has to be narrow for that.
void frmQuelmar::SizePanels() {
    const QSize display = PB2->NeededSize();
    PB->Narrow(false);
    if (PB->NeededSize().width() + display.width() >= width()) {
        PB->Narrow(true);
        PB->Narrow(PB->NeededSize().width() + display.width() < width());
    }
    QSize files = PB->NeededSize();
    if (PB->Narrow())
        files.setWidth(width() - display.width() - 1);
    const int height = qMax(files.height(), display.height());
    PB->resize(files.width(), height);
    PB2->resize(display.width(), height);
}

void frmQuelmar::Form_Resize() {
    if (isMinimized())
        return;
    if (width() < MinimumSize().width())
        return resize(MinimumSize().width(), height());
    if (height() < MinimumSize().height())
        return resize(width(), MinimumSize().height());
    SizePanels();
    PB->move(0, height() - PB->height());
    if (PB->width() + PB2->width() < width()) {
        // The display group takes what room there is: subtitles are long.
        PB2->setGeometry(PB->width(), PB->y(), width() - PB->width() - 1, PB2->height());
    } else {
        PB2->move(PB->pos());
        PB2->raise();
    }
    MP->resize(width(), m_lane ? m_lane->LayOut(width(), PB->y()) : PB->y());
    PlaceStrip();
}

/// The strip lies in the player's control bar, at its left end.
void frmQuelmar::PlaceStrip() {
    QWidget* strip = m_transport->picButtons;
    const int ButtonStripOffsetTop = (MP->BarHeight() + strip->height()) / 2;
    const int ButtonStripOffsetLeft = Scaled(MediaPlayerControl::StripLeft, *this);
    if (MP->height() > ButtonStripOffsetTop)
        strip->move(ButtonStripOffsetLeft, MP->height() - ButtonStripOffsetTop);
}

bool frmQuelmar::Form_Unload() {
    if (frmList* list = m_state.OpenList())
        list->close();
    if (m_files->Changed()) {
        const Decision decision = AskDecision(this, QStringLiteral("Save subtitles?"));
        if (decision == Decision::None || (decision == Decision::Yes && !m_files->SaveSubtitles()))
            return false;
        if (decision == Decision::No)
            emit SaveDeclined();
    }
    WriteSettings();
    return true;
}

void frmQuelmar::closeEvent(QCloseEvent* event) {
    event->ignore();
    Guarded([&] { event->setAccepted(Form_Unload()); });
    if (event->isAccepted())
        emit Closed();
}

void frmQuelmar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Form_Resize();
}

void frmQuelmar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // Sent by the base class's constructor too, before there are parts.
    if (m_actions == nullptr)
        return;
    switch (event->type()) {
    case QEvent::ActivationChange:
        if (QApplication::activeWindow() != this)
            m_keys->KeyboardLost();
        break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
        // When the parts have heard of it, too.
        QMetaObject::invokeMethod(this, &frmQuelmar::Form_Resize, Qt::QueuedConnection);
        Form_Resize();
        break;
    default:
        break;
    }
}

void frmQuelmar::Open(const QStringList& files) {
    if (files.empty())
        return;
    const QString where = QFileInfo(files.constFirst()).path();
    NamedFiles named = AskBeside<NamedFiles>(this, where, files.constFirst(), [files] {
                           return TellApart(files);
                       }).value_or(NamedFiles());
    if (named.subtitles.isEmpty() && !named.media.isEmpty()) {
        const QString beside = AskBeside<QString>(this, where, named.media, [=] {
                                   return SubtitlesBeside(named.media);
                               }).value_or(QString());
        if (!beside.isEmpty() && beside != QString::fromStdString(m_state.document.SubtitleFile) &&
            AskYesNo(this,
                     tr("“%1” lies beside the film.\nOpen these subtitles too?")
                         .arg(QFileInfo(beside).fileName()),
                     MessageIcon::Question))
            named.subtitles = beside;
    }
    if (!named.subtitles.isEmpty() && OpenElsewhere && OpenElsewhere(named.subtitles) &&
        !AskYesNo(this,
                  tr("“%1” is open in another window of this program.\nOpen it here too?")
                      .arg(QFileInfo(named.subtitles).fileName()),
                  MessageIcon::Question))
        named.subtitles.clear();
    OpenFiles(named.media, named.subtitles);
    if (!named.others.isEmpty())
        ShowMessage(this, LeftOutText(named.others));
}

void frmQuelmar::OpenFiles(const QString& media, const QString& subtitles) {
    PB->OpenFiles(media, subtitles);
}

void frmQuelmar::MediaNamed() {
    Form_Resize();
    EnableMediaControls();
}

/// The player's answer decides, also where it holds an earlier file.
void frmQuelmar::EnableMediaControls() {
    MediaBrowsed();
    PB2->Marks().Enabled(AVIFileOK && m_state.document.ListWindowOpen);
    m_actions->Refresh();
}

void frmQuelmar::MediaBrowsed() {
    AVIFileOK = m_state.player->ReadyState() != 0;
    MP->setEnabled(AVIFileOK);
    PB2->MediaEnabled(AVIFileOK);
    m_transport->MediaEnabled(AVIFileOK);
}

void frmQuelmar::OpenEditor() {
    if (frmList* list = m_state.OpenList()) {
        list->raise();
        list->activateWindow();
        return;
    }
    m_state.list = new frmList(*this, this);
    // A window of its own, which need not stay above this one and its film.
    m_state.list->addActions(m_actions->ForBothWindows());
    m_drops->Take(*m_state.list);
    m_state.list->winId();
    m_state.list->windowHandle()->setTransientParent(nullptr);
    m_state.list->show();
    PB2->Marks().ShowTips();
}

void frmQuelmar::SnapChosen() {
    if (!MP->SnapToSpeech())
        return m_keys->SnapTo({});
    m_lane->MapAlways();
    m_keys->SnapTo([this] { return m_lane->Map(); });
}

void frmQuelmar::OtherWindow() {
    if (const frmList* list = m_state.OpenList(); list == nullptr || !list->isActiveWindow())
        return m_state.document.Subt.Count() > 0 || list != nullptr ? OpenEditor() : void();
    raise();
    activateWindow();
}

void frmQuelmar::ShowKeys() {
    if (auto* shown = findChild<frmKeys*>()) {
        shown->raise();
        return shown->activateWindow();
    }
    (new frmKeys(m_actions->Lines(), this))->show();
}

void frmQuelmar::NameKeys() {
    const struct {
        const char* control;
        QStringList actions;
    } rows[] = {{"mpPlay", {"actPlay"}},
                {"mpStop", {"actStop"}},
                {"mpSlider", {"actFiveBack", "actFiveForward"}},
                {"mpMute", {"actMute"}},
                {"mpVolume", {"actLouder", "actQuieter"}},
                {"mpRate", {"actFaster", "actSlower"}},
                {"mpFit", {"actFit"}},
                {"mpLane", {"actLane"}}};
    const auto keys = [this](const QStringList& actions) {
        QStringList texts;
        for (const QString& action : actions)
            texts << m_actions->Keys(action.toLatin1());
        return texts;
    };
    for (const auto& row : rows)
        MP->NameKeys(row.control, keys(row.actions).join(QLatin1String(", ")));
    m_transport->picButtons->NameKeys(
        keys({"actStripStart", "actStripBack", "actStripForward", "actStripEnd"}));
    PB2->Marks().NameKeys({"Ctrl+B", "Ctrl+G", "Ctrl+J"});
}

RecoveryNotes frmQuelmar::Notes() const {
    RecoveryNotes notes;
    notes.mediaFile = m_state.document.MediaFile;
    notes.subtitleFile = m_state.document.SubtitleFile;
    notes.frameRate = m_state.document.FrameRate;
    notes.style = m_state.document.Style;
    notes.draft = m_state.document.Typed();
    return notes;
}

void frmQuelmar::RestoreDocument(RecoveredDocument document) {
    PB->NameFiles(QString::fromStdString(document.notes.mediaFile),
                  QString::fromStdString(document.notes.subtitleFile));
    Document& own = m_state.document;
    const Step step(Subt);
    own.BeginOther();
    own.SubtitleFile = document.notes.subtitleFile;
    Subt.Replace(std::move(document.titles));
    for (Version& version : document.earlier)
        own.Earlier().Restore(std::move(version));
    own.LeftTyped(std::move(document.notes.draft));
    own.Style = std::move(document.notes.style);
    if (document.notes.frameRate > 0)
        own.FrameRate = document.notes.frameRate;
    own.SubtitlesChanged = true;
    PB->DocumentOpened();
}

void frmQuelmar::MediaPosition(double seconds) {
    if (m_state.player->ReadyState() != 0)
        m_state.player->CurrentPosition(seconds);
}

void frmQuelmar::Listen(double from, double to) {
    if (m_state.player->ReadyState() == 0)
        return;
    m_state.player->CurrentPosition(from);
    m_state.player->Play();
    tmrListen->start(std::chrono::milliseconds(static_cast<int>((to - from) * 1000)));
}

void frmQuelmar::tmrListen_Timer() {
    m_state.player->Pause();
}

std::optional<double> frmQuelmar::FilmPosition() const {
    const Player& player = *m_state.player;
    return player.ReadyState() != 0 ? std::optional(player.CurrentPosition()) : std::nullopt;
}

QRect frmQuelmar::FilmPlace() const {
    // The lane lies under the picture, down to the panels.
    return {MP->mapToGlobal(QPoint()), QSize(width(), PB->y())};
}

QRect frmQuelmar::PicturePlace() const {
    return {MP->mapToGlobal(QPoint()), MP->size() - QSize(0, MP->BarHeight())};
}

std::optional<FitSource> frmQuelmar::FilmSound() const {
    return m_fit->FilmSound();
}

void frmQuelmar::ShowInstead(const SUBTITLES& titles) {
    PB2->ShowInstead(titles);
    m_lane->Propose(&titles);
}

void frmQuelmar::ShowOwn() {
    PB2->ShowOwn();
    m_lane->Propose(nullptr);
}

std::int32_t frmQuelmar::ShownTitle() const {
    return PB2->CurrentTitle();
}

void frmQuelmar::Say(const QString& what) {
    MP->ShowNote(what);
}

void frmQuelmar::EditButtonsEnabled(bool enabled) {
    PB->EditEnabled(enabled);
    PB2->Marks().Enabled(enabled);
    m_actions->Refresh();
}

// When the document went back, the titles are there already: the file box only names
// their file.
void frmQuelmar::Document_Change(const Change& change) {
    const Document& document = m_state.document;
    if (change.kind != Change::Kind::Replaced ||
        std::exchange(m_number, document.Number()) != document.Number())
        return;
    PB->NameFiles(QString::fromStdString(document.MediaFile),
                  QString::fromStdString(document.SubtitleFile));
    PB2->Refresh();
}

void frmQuelmar::Subt_UndoChangedListLength() {
    if (frmList* list = m_state.OpenList())
        list->LoadList();
}

void frmQuelmar::Subt_UndoPossible(bool possible) {
    if (frmList* list = m_state.OpenList())
        list->UndoPossible(possible);
}
