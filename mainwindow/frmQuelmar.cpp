#include "mainwindow/frmQuelmar.h"

#include "listeditor/frmList.h"
#include "mainwindow/transportstrip.h"
#include "mainwindow/windowplace.h"
#include "model/numbers.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"
#include "platform/settings.h"
#include "platform/twips.h"
#include "platform/updown.h"
#include "player/mediaplayercontrol.h"
#include "player/mpvplayer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr std::int32_t MinimumWidth = 10000;
constexpr std::int32_t MinimumHeight = 5000;
constexpr QSize DesignSize(1000, 680);
constexpr double DefaultFrameRate = 25;

constexpr int DisplayInterval = 50;

/// The strip lies in the player's control bar, at its left end.
constexpr int ButtonStripOffsetTop =
    (MediaPlayerControl::ControlBarHeight + TransportStrip::Size.height()) / 2;
constexpr int ButtonStripOffsetLeft = MediaPlayerControl::StripLeft;

QSize MinimumSize() {
    return {ToPixels(MinimumWidth), ToPixels(MinimumHeight)};
}

double StoredFrameRate(const QString& text) {
    const std::optional<double> number = Number(text.toStdString());
    const double rate = number ? RoundTime(*number) : 0;
    return rate > 0 && std::isfinite(rate) ? rate : DefaultFrameRate;
}

QTimer* MakeTimer(QWidget* window, const char* name, int interval) {
    auto* timer = new QTimer(window);
    timer->setObjectName(QString::fromLatin1(name));
    timer->setInterval(interval);
    return timer;
}

} // namespace

frmQuelmar::frmQuelmar()
    : frmQuelmar(MakeMpvPlayer()) {}

frmQuelmar::frmQuelmar(std::unique_ptr<Player> player)
    : m_player(std::move(player)) {
    setObjectName(QStringLiteral("frmQuelmar"));
    setMinimumSize(MinimumSize());
    MakeControls();
    Timer1 = MakeTimer(this, "Timer1", DisplayInterval);
    Timer1->setTimerType(Qt::PreciseTimer);
    tmrPosButtons = MakeTimer(this, "tmrPosButtons", FirstRepeatInterval);
    tmrUDTime = MakeTimer(this, "tmrUDTime", TimeSpinner::NextInterval);
    tmrRelease = MakeTimer(this, "tmrRelease", 0);
    tmrRelease->setTimerType(Qt::PreciseTimer);
    tmrRelease->setSingleShot(true);
    ConnectControls();
    ConnectPlayer();
    Form_Load();
    qApp->installEventFilter(this);
}

frmQuelmar::~frmQuelmar() {
    qApp->removeEventFilter(this);
    // The list editor and the player control refer to the titles and the player: they are
    // destroyed first.
    m_player->disconnect(this);
    delete m_list.data();
    delete std::exchange(MP, nullptr);
}

void frmQuelmar::ConnectControls() {
    const auto on = [this](auto* sender, auto signal, auto handler) {
        connect(sender, signal, this, [this, handler](auto... arguments) {
            Guarded([&] { (this->*handler)(arguments...); });
        });
    };
    const auto onClick = [this](QPushButton* button, void (frmQuelmar::*handler)()) {
        connect(button, &QPushButton::clicked, this,
                [this, handler] { Guarded([&] { (this->*handler)(); }); });
    };
    const auto onChange = [this](QLineEdit* box, void (frmQuelmar::*handler)()) {
        connect(box, &QLineEdit::textChanged, this,
                [this, handler] { Guarded([&] { (this->*handler)(); }); });
    };
    onChange(txtAVI, &frmQuelmar::txtAVI_Change);
    onChange(txtSRT, &frmQuelmar::txtSRT_Change);
    onChange(txtTime, &frmQuelmar::txtTime_Change);
    onClick(cmdBrowseAVI, &frmQuelmar::cmdBrowseAVI_Click);
    onClick(cmdBrowseSRT, &frmQuelmar::cmdBrowseSRT_Click);
    onClick(cmdSave, &frmQuelmar::cmdSave_Click);
    onClick(cmdExit, &frmQuelmar::cmdExit_Click);
    onClick(cmdSelStart, &frmQuelmar::cmdSelStart_Click);
    onClick(cmdSelEnd, &frmQuelmar::cmdSelEnd_Click);
    onClick(cmdBlue, &frmQuelmar::cmdBlue_Click);
    onClick(cmdGreen, &frmQuelmar::cmdGreen_Click);
    onClick(cmdAdjust, &frmQuelmar::cmdAdjust_Click);
    onClick(cmdEdit, &frmQuelmar::cmdEdit_Click);
    connect(optShow, &QRadioButton::toggled, this,
            [this](bool chosen) { chosen ? optShow_Click() : optPosition_Click(); });
    on(UDTime, &UpDown::MouseDown, &frmQuelmar::UDTime_MouseDown);
    on(UDTime, &UpDown::MouseUp, &frmQuelmar::UDTime_MouseUp);
    on(UDTime, &UpDown::DownClick, &frmQuelmar::UDTime_DownClick);
    on(UDTime, &UpDown::UpClick, &frmQuelmar::UDTime_UpClick);
    on(picButtons, &TransportStrip::MouseMove, &frmQuelmar::picButtons_MouseMove);
    on(picButtons, &TransportStrip::MouseDown, &frmQuelmar::picButtons_MouseDown);
    on(picButtons, &TransportStrip::MouseUp, &frmQuelmar::picButtons_MouseUp);
    on(picButtons, &TransportStrip::EnabledChanged, &frmQuelmar::picButtons_EnabledChange);
    const auto onTimer = [this](QTimer* timer, void (frmQuelmar::*handler)()) {
        connect(timer, &QTimer::timeout, this,
                [this, handler] { Guarded([&] { (this->*handler)(); }); });
    };
    onTimer(Timer1, &frmQuelmar::Timer1_Timer);
    onTimer(tmrPosButtons, &frmQuelmar::tmrPosButtons_Timer);
    onTimer(tmrUDTime, &frmQuelmar::tmrUDTime_Timer);
    onTimer(tmrRelease, &frmQuelmar::tmrRelease_Timer);
    Subt.UndoChangedListLength = [this] {
        Subt_UndoChangedListLength();
    };
    Subt.UndoPossible = [this](bool possible) {
        Subt_UndoPossible(possible);
    };
}

void frmQuelmar::ConnectPlayer() {
    connect(m_player.get(), &Player::PlayStateChange, this,
            [this](int /*old*/, int now) { Guarded([&] { MP_PlayStateChange(now); }); });
    connect(m_player.get(), &Player::PositionChange, this,
            [this](double /*old*/, double now) { Guarded([&] { MP_PositionChange(now); }); });
    connect(m_player.get(), &Player::ReadyStateChange, this, [this] { EnableMediaControls(); });
    connect(m_player.get(), &Player::Activated, this, [this] { setFocus(); });
}

void frmQuelmar::Form_Load() {
    setWindowTitle(QStringLiteral("Quelmar V" QUELMAR_VERSION));
    EnableMediaControls();
    ReadSettings();
    Form_Resize();
    MP->setGeometry(0, 0, width(), PB->y());
    picButtons->move(ButtonStripOffsetLeft, MP->height() - ButtonStripOffsetTop);
    picButtons->raise();
    optShow_Click();
    ActionKey = SpaceKey;
    m_document.SubtitlesChanged = false;
    setFocus();
}

void frmQuelmar::ReadSettings() {
    const Settings settings;
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens << screen->availableGeometry();
    const QRect design = DesignPlace(DesignSize, MinimumSize(),
                                     QGuiApplication::primaryScreen()->availableGeometry());
    const auto read = [&](NumberSetting name, int designed) {
        return ToPixels(settings.Dword(name, ToTwips(designed)));
    };
    const QRect remembered(read("Left", design.left()), read("Top", design.top()),
                           read("Width", design.width()), read("Height", design.height()));
    const QRect place = WindowPlace(remembered, design, MinimumSize(), screens);
    move(place.topLeft());
    resize(place.size());
    DLG.FileName = settings.String("MRU");
    m_document.FrameRate = StoredFrameRate(settings.String("LastFrameRate"));
    m_codePage = settings.String("CodePage").toStdString();
    m_lagMilliseconds = settings.Dword("LagMs");
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
                       QString::fromStdString(NumberText(RoundTime(m_document.FrameRate))));
    settings.SetString("MRU", DLG.FileName);
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
    MP->resize(width(), PB->y());
    if (MP->height() > ButtonStripOffsetTop)
        picButtons->move(picButtons->x(), MP->height() - ButtonStripOffsetTop);
}

bool frmQuelmar::Form_Unload() {
    if (frmList* list = OpenList())
        list->close();
    if (m_document.SubtitlesChanged) {
        if (!AskYesNo(this, QStringLiteral("Save subtitles?"), MessageIcon::Question))
            emit SaveDeclined();
        else if (!SaveSubtitles())
            return false;
    }
    WriteSettings();
    return true;
}

void frmQuelmar::cmdExit_Click() {
    close();
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
    // Sent by the base class's constructor too, before there are controls.
    if (picButtons == nullptr)
        return;
    switch (event->type()) {
    case QEvent::ActivationChange:
        // A key that is held now will be released in another window.
        if (!isActiveWindow() && !m_keyRepeat.Waiting())
            m_keyRepeat.Reset();
        break;
    case QEvent::PaletteChange:
        DrawToolIcons();
        break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
        Form_Resize();
        break;
    default:
        break;
    }
}
