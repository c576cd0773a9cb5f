#include "player/mediaplayercontrol.h"

#include "platform/fontscale.h"
#include "platform/icons.h"
#include "player/barbutton.h"
#include "player/jumpslider.h"
#include "player/mediamenu.h"
#include "player/mediapicture.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

// The handle moves by less than a pixel meanwhile, in a film of usual length.
constexpr int FollowMilliseconds = 100;
constexpr int ButtonSide = 26;
constexpr int IconSide = 16;
constexpr int VolumeWidth = 64;
constexpr int SmallestSlider = 48;
/// The line that is said in the bar leaves the slider this much.
constexpr int SliderBesideHint = 160;

constexpr auto KeysProperty = "keys";

/// "0:05", "1:02:03": whole seconds that have passed.
QString TimeText(double seconds) {
    const auto whole = static_cast<qint64>(std::max(0.0, seconds) + 0.0005);
    const auto two = [](qint64 n) {
        return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
    };
    if (whole < 3600)
        return QStringLiteral("%1:%2").arg(QString::number(whole / 60), two(whole % 60));
    return QStringLiteral("%1:%2:%3")
        .arg(QString::number(whole / 3600), two(whole / 60 % 60), two(whole % 60));
}

int Milliseconds(double seconds) {
    const double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::round(seconds * 1000), 0.0, most));
}

} // namespace

MediaPlayerControl::MediaPlayerControl(Player& player, QWidget* parent)
    : QWidget(parent)
    , m_player(player) {
    setFocusPolicy(Qt::NoFocus);
    m_picture = new MediaPicture(player, this);
    m_picture->setObjectName(QStringLiteral("mpPicture"));
    m_picture->setAccessibleName(tr("Picture"));
    m_picture->setToolTip(tr("Right-click for a player options menu, or move the mouse out to get "
                             "rid of this text"));
    MakeBar();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    // The window decides about the size; the bar makes do with it.
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(m_picture, 1);
    layout->addWidget(m_bar);
    m_follow.setInterval(FollowMilliseconds);
    Listen();
    ShowIcons();
    Refresh();
}

MediaPlayerControl::~MediaPlayerControl() = default;

QToolButton* MediaPlayerControl::MakeButton(const char* name, const QString& text) {
    auto* button = new BarButton(m_bar);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(text);
    ShowTip(*button, text);
    return button;
}

QLabel* MediaPlayerControl::MakeTime(const char* name, const QString& accessible) {
    auto* label = new QLabel(TimeText(0), m_bar);
    label->setObjectName(QLatin1String(name));
    label->setAccessibleName(accessible);
    return label;
}

void MediaPlayerControl::MakeBar() {
    m_bar = new QWidget(this);
    m_play = MakeButton("mpPlay", tr("Play"));
    m_stop = MakeButton("mpStop", tr("Stop"));
    m_slider = new JumpSlider(m_bar);
    m_slider->setObjectName(QStringLiteral("mpSlider"));
    m_slider->setAccessibleName(tr("Position"));
    m_elapsed = MakeTime("mpElapsed", tr("Elapsed time"));
    m_elapsed->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_slash = new QLabel(QStringLiteral("/"), m_bar);
    m_total = MakeTime("mpTotal", tr("Total time"));
    m_mute = MakeButton("mpMute", tr("Mute"));
    m_mute->setCheckable(true);
    m_volume = new JumpSlider(m_bar);
    m_volume->setObjectName(QStringLiteral("mpVolume"));
    m_volume->setAccessibleName(tr("Volume"));
    m_volume->setToolTip(tr("Volume"));
    m_volume->setRange(0, 100);
    m_rate = MakeButton("mpRate", tr("Playback rate"));
    m_rate->setPopupMode(QToolButton::InstantPopup);
    m_rates = new QMenu(m_rate);
    m_rate->setMenu(m_rates);
    m_hint = new QLabel(m_bar);
    m_hint->setObjectName(QStringLiteral("mpHint"));
    m_hint->setAccessibleName(tr("How the titles fit"));
    m_hint->setTextFormat(Qt::RichText);
    m_hint->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_hint->setFocusPolicy(Qt::TabFocus);
    m_hint->hide();
    m_fit = MakeButton("mpFit", tr("Fit the titles to the sound..."));
    m_fit->hide();
    m_lane = MakeButton("mpLane", tr("Sound and titles"));
    m_lane->setCheckable(true);
    m_lane->hide();

    auto* layout = new QHBoxLayout(m_bar);
    layout->setSpacing(4);
    layout->addWidget(m_play);
    layout->addWidget(m_stop);
    layout->addWidget(m_slider, 1);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_hint, m_elapsed, m_slash, m_total,
                                                           m_mute, m_volume, m_rate, m_fit, m_lane})
        layout->addWidget(widget);
    FitFont();
}

int MediaPlayerControl::BarHeight() const {
    return Scaled(ControlBarHeight, *this);
}

void MediaPlayerControl::FitFont() {
    m_bar->setFixedHeight(BarHeight());
    m_bar->layout()->setContentsMargins(Scaled(StripSpace, *this), 0, 6, 0);
    for (QToolButton* button : {m_play, m_stop, m_mute, m_rate, m_fit, m_lane}) {
        button->setIconSize(Scaled(QSize(IconSide, IconSide), *this));
        button->setFixedHeight(Scaled(ButtonSide, *this));
        button->setMinimumWidth(Scaled(ButtonSide, *this));
    }
    m_slider->setMinimumWidth(Scaled(SmallestSlider, *this));
    m_volume->setFixedWidth(Scaled(VolumeWidth, *this));
    m_elapsed->setMinimumWidth(m_elapsed->fontMetrics().horizontalAdvance(m_total->text()));
}

void MediaPlayerControl::Listen() {
    connect(m_play, &QToolButton::clicked, this, [this] {
        if (m_player.State() == Player::Playing)
            m_player.Pause();
        else
            m_player.Play();
        GiveKeyboardBack(*m_play);
    });
    connect(m_stop, &QToolButton::clicked, this, [this] {
        m_player.Stop();
        GiveKeyboardBack(*m_stop);
    });
    connect(m_mute, &QToolButton::clicked, this, [this](bool on) {
        m_player.Muted(on);
        GiveKeyboardBack(*m_mute);
    });
    connect(m_fit, &QToolButton::clicked, this, [this] {
        GiveKeyboardBack(*m_fit);
        emit FitClicked();
    });
    connect(m_hint, &QLabel::linkActivated, this, [this] {
        GiveKeyboardBack(*m_hint);
        emit FitClicked();
    });
    connect(m_lane, &QToolButton::clicked, this, [this] {
        emit LaneClicked();
        GiveKeyboardBack(*m_lane);
    });
    connect(m_slider, &QSlider::valueChanged, this, &MediaPlayerControl::Seek);
    connect(m_slider, &QSlider::sliderReleased, &m_player, &Player::Activated);
    connect(m_volume, &QSlider::valueChanged, this, [this](int value) { m_player.Volume(value); });
    connect(m_volume, &QSlider::sliderReleased, &m_player, &Player::Activated);
    connect(m_rates, &QMenu::aboutToShow, this, [this] {
        m_rates->clear();
        FillRateMenu(*m_rates, m_player);
    });
    connect(&m_follow, &QTimer::timeout, this, [this] { Follow(m_player.CurrentPosition()); });
    connect(&m_player, &Player::PositionChange, this,
            [this](double /*from*/, double to) { Follow(to); });
    connect(&m_player, &Player::PlayStateChange, this, &MediaPlayerControl::Refresh);
    connect(&m_player, &Player::ReadyStateChange, this, &MediaPlayerControl::Refresh);
    connect(&m_player, &Player::PropertiesChanged, this, &MediaPlayerControl::Refresh);
}

void MediaPlayerControl::Refresh() {
    const bool ready = m_player.ReadyState() != 0;
    const bool playing = m_player.State() == Player::Playing;
    m_bar->setEnabled(ready);
    m_slider->setEnabled(ready && m_player.Length() > 0);
    m_play->setAccessibleName(playing ? tr("Pause") : tr("Play"));
    ShowTip(*m_play, m_play->accessibleName());
    m_mute->setChecked(m_player.Muted());
    {
        const QSignalBlocker quiet(m_volume);
        m_volume->setValue(m_player.Volume());
    }
    {
        const QSignalBlocker quiet(m_slider);
        m_slider->setRange(0, Milliseconds(m_player.Length()));
        // What a step by an assistive tool means.
        m_slider->setSingleStep(1000);
        m_slider->setPageStep(10000);
    }
    m_total->setText(TimeText(m_player.Length()));
    m_total->setAccessibleName(tr("Total time %1").arg(m_total->text()));
    // The slider does not move when another digit comes.
    m_elapsed->setMinimumWidth(m_elapsed->fontMetrics().horizontalAdvance(m_total->text()));
    m_rate->setText(RateText(m_player.Rate()));
    if (playing)
        m_follow.start();
    else
        m_follow.stop();
    ShowIcons();
    Follow(m_player.CurrentPosition());
    FitBar();
}

void MediaPlayerControl::LaneButton(bool offered, bool shown) {
    m_laneOffered = offered;
    m_lane->setChecked(shown);
    FitBar();
}

void MediaPlayerControl::FitButton(bool offered, bool enabled) {
    m_fit->setEnabled(enabled);
    if (std::exchange(m_fitOffered, offered) != offered)
        FitBar();
}

void MediaPlayerControl::Hint(const QString& text) {
    m_hintText = text;
    QString line = text.toHtmlEscaped();
    m_hint->setText(
        line.replace(QLatin1String("Fit..."), QLatin1String("<a href=\"fit\">Fit...</a>")));
    m_hint->setAccessibleName(text.isEmpty() ? tr("How the titles fit") : text);
    ShowTip(*m_fit, m_fit->accessibleName());
    FitBar();
}

void MediaPlayerControl::Follow(double position) {
    if (const QString elapsed = TimeText(position); m_elapsed->text() != elapsed) {
        m_elapsed->setText(elapsed);
        // What a screen reader says: the name alone would hide the time.
        m_elapsed->setAccessibleName(tr("Elapsed time %1").arg(elapsed));
    }
    if (m_slider->isSliderDown())
        return;
    const QSignalBlocker quiet(m_slider);
    m_slider->setValue(Milliseconds(position));
}

void MediaPlayerControl::ShowNote(const QString& text) {
    m_picture->ShowNote(text);
}

void MediaPlayerControl::ShowTitle(const QString& text) {
    m_title = text;
    m_picture->Title(m_titlesOnPicture ? m_title : QString());
}

void MediaPlayerControl::TitlesOnPicture(bool wanted) {
    m_titlesOnPicture = wanted;
    ShowTitle(m_title);
}

void MediaPlayerControl::NameKeys(const char* button, const QString& keys) {
    auto* control = findChild<QWidget*>(QLatin1String(button));
    control->setProperty(KeysProperty, keys);
    ShowTip(*control, control->accessibleName());
}

void MediaPlayerControl::ShowTip(QWidget& control, const QString& text) {
    const QString keys = control.property(KeysProperty).toString();
    QString tip = keys.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, keys);
    if (&control == m_fit && !m_hintText.isEmpty())
        tip += QLatin1Char('\n') + m_hintText;
    control.setToolTip(tip);
}

void MediaPlayerControl::GiveKeyboardBack(const QWidget& control) {
    if (window()->focusWidget() != &control)
        emit m_player.Activated();
}

void MediaPlayerControl::Seek(int milliseconds) {
    // The slider's last millisecond is the media's end.
    m_player.CurrentPosition(milliseconds == m_slider->maximum() ? m_player.Length()
                                                                 : milliseconds / 1000.0);
}

void MediaPlayerControl::ShowIcons() {
    const bool playing = m_player.State() == Player::Playing;
    m_play->setIcon(DrawnIcon(playing ? Sign::Pause : Sign::Play));
    m_stop->setIcon(DrawnIcon(Sign::Stop));
    m_fit->setIcon(DrawnIcon(Sign::Fit));
    m_lane->setIcon(DrawnIcon(Sign::Lane));
    m_mute->setIcon(DrawnIcon(m_player.Muted() ? Sign::Silence : Sign::Sound));
}

/// In a narrow window the slider keeps its room; what the menu offers too goes first.
void MediaPlayerControl::FitBar() {
    m_fit->setVisible(m_fitOffered);
    m_lane->setVisible(m_laneOffered);
    QWidget* const dispensable[] = {m_volume, m_total, m_rate, m_mute};
    for (QWidget* widget : dispensable)
        widget->show();
    m_slash->show();
    m_hint->setVisible(!m_hintText.isEmpty());
    m_bar->layout()->invalidate();
    if (m_bar->layout()->minimumSize().width() + SliderBesideHint - SmallestSlider > width())
        m_hint->hide();
    for (QWidget* widget : dispensable) {
        m_bar->layout()->invalidate();
        if (m_bar->layout()->minimumSize().width() <= width())
            return;
        widget->hide();
        m_slash->setVisible(!m_total->isHidden());
    }
}

void MediaPlayerControl::contextMenuEvent(QContextMenuEvent* event) {
    if (m_player.ReadyState() == 0)
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    FillMediaMenu(*menu, m_player);
    menu->addSeparator();
    QAction* titles = menu->addAction(tr("&Titles on the picture"));
    titles->setObjectName(QStringLiteral("mpTitles"));
    titles->setCheckable(true);
    titles->setChecked(m_titlesOnPicture);
    connect(titles, &QAction::toggled, this, [this](bool on) { TitlesOnPicture(on); });
    QAction* inFilm = menu->addAction(tr("Su&btitles in this film..."));
    inFilm->setObjectName(QStringLiteral("mpSubtitles"));
    // The answer is a dialog, and the menu must not be deleted in its loop.
    connect(inFilm, &QAction::triggered, this, &MediaPlayerControl::SubtitlesWanted,
            Qt::QueuedConnection);
    QAction* snap = menu->addAction(tr("S&nap placements to speech"));
    snap->setObjectName(QStringLiteral("mpSnap"));
    snap->setCheckable(true);
    snap->setChecked(m_snapToSpeech);
    connect(snap, &QAction::toggled, this, [this](bool on) {
        SnapToSpeech(on);
        emit SnapChosen();
    });
    menu->popup(event->globalPos());
}

void MediaPlayerControl::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
    emit m_player.Activated();
}

void MediaPlayerControl::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitBar();
}

void MediaPlayerControl::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // The base class's constructor sends some before there is a bar.
    if (event->type() != QEvent::FontChange || m_lane == nullptr)
        return;
    FitFont();
    FitBar();
}
