#include "lane/lane.h"

#include "model/times.h"
#include "sound/soundmap.h"

#include <QEvent>
#include <QFontMetrics>
#include <QStyle>

#include <algorithm>
#include <cmath>

// What the lane shows, and how it goes along with the player.

namespace {

/// Between two looks at the position while a film plays: as often as most films change
/// their picture.
constexpr int TickMilliseconds = 40;
/// What the position's line and its head need to both sides (in pixels).
constexpr int LineRoom = 6;
constexpr double RulerShare = 0.3;

} // namespace

Lane::Lane(Player& player, QWidget* parent)
    : QWidget(parent)
    , m_player(player) {
    setObjectName(QStringLiteral("lane"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(LeastHeight);
    m_tick.setInterval(TickMilliseconds);
    m_tick.setTimerType(Qt::PreciseTimer);
    Look();
    Listen();
    FilmChanged();
    Speak();
}

Lane::~Lane() = default;

QSize Lane::minimumSizeHint() const {
    return {1, LeastHeight};
}

void Lane::Listen() {
    connect(&m_tick, &QTimer::timeout, this, &Lane::Tick);
    connect(&m_player, &Player::PositionChange, this,
            [this](double /*from*/, double to) { Jumped(to); });
    connect(&m_player, &Player::PlayStateChange, this, &Lane::StateChanged);
    connect(&m_player, &Player::ReadyStateChange, this, &Lane::FilmChanged);
    connect(&m_player, &Player::PropertiesChanged, this, [this] {
        if (m_view.Length() != m_player.Length())
            FilmChanged();
    });
}

void Lane::FilmChanged() {
    m_view.Length(m_player.Length());
    m_away = false;
    StateChanged();
    Jumped(m_player.CurrentPosition());
    ShowAgain();
}

void Lane::StateChanged() {
    if (m_player.State() == Player::Playing && isVisible())
        m_tick.start();
    else
        m_tick.stop();
    m_away = false;
    MoveLine();
}

void Lane::Jumped(double to) {
    m_away = false;
    // What is under the pointer stays there while it is held.
    if (m_press == Press::None)
        m_view.Reveal(to, to);
    else
        m_view.Pursue(to, LaneView::Follow::ByPage);
    update();
    m_position = to;
    MoveLine();
}

void Lane::Tick() {
    MoveLine();
}

/// Only what differs is painted: the line is a few pixels wide, and stands on one pixel for
/// several looks in a long view.
void Lane::MoveLine() {
    const auto pixel = [this](double time) {
        return static_cast<int>(std::floor(m_view.X(time)));
    };
    const int before = pixel(m_position);
    m_position = m_player.CurrentPosition();
    if (!isVisible())
        return;
    const bool playing = m_player.State() == Player::Playing;
    if (m_away && m_view.Holds(m_position))
        m_away = false;
    if (playing && !m_away && m_press == Press::None && m_view.Pursue(m_position, m_follow)) {
        update();
        return;
    }
    const int now = pixel(m_position);
    if (m_placing)
        update(std::min(pixel(*m_placing), before) - LineRoom, 0,
               std::abs(now - pixel(*m_placing)) + 2 * LineRoom + std::abs(now - before), height());
    if (now == before)
        return;
    update(before - LineRoom, 0, 2 * LineRoom, height());
    update(now - LineRoom, 0, 2 * LineRoom, height());
}

void Lane::Sound(std::shared_ptr<const SoundMap> sound) {
    m_sound = std::move(sound);
    m_soundChanges = m_sound ? m_sound->Changes() : 0;
    ShowAgain();
}

void Lane::SoundGrew() {
    if (!m_sound || m_sound->Changes() == m_soundChanges)
        return;
    m_soundChanges = m_sound->Changes();
    m_tiles.ForgetUnfinished();
    update();
}

void Lane::Titles(std::vector<double> starts, std::vector<double> ends) {
    LaneTitles titles;
    titles.Assign(std::move(starts), std::move(ends));
    Titles(std::move(titles));
}

void Lane::Titles(LaneTitles titles) {
    EndDrag(false);
    m_titles = std::move(titles);
    m_tiles.ForgetWords();
    const std::vector<std::int32_t> chosen = m_chosen;
    Choose(chosen);
    if (m_anchor > m_titles.Count())
        m_anchor = 0;
    ShowAgain();
    Speak();
}

void Lane::Propose(LaneTitles titles) {
    m_proposed = std::move(titles);
    update();
}

void Lane::ChangeTimes(std::span<const LaneTimes> titles) {
    // The titles that are held are no longer those that were taken hold of.
    EndDrag(false);
    m_titles.Change(titles);
    ShowAgain();
    Speak();
}

void Lane::Words(LaneTiles::Words words) {
    m_words = std::move(words);
    WordsChanged();
}

void Lane::WordsChanged() {
    m_tiles.ForgetWords();
    update();
    Speak();
}

void Lane::Choose(std::span<const std::int32_t> titles) {
    std::vector<std::int32_t> chosen;
    std::copy_if(titles.begin(), titles.end(), std::back_inserter(chosen),
                 [this](std::int32_t title) { return title >= 1 && title <= m_titles.Count(); });
    m_chosen = std::move(chosen);
    m_choice.assign(static_cast<std::size_t>(m_titles.Count()), 0);
    for (const std::int32_t title : m_chosen)
        m_choice[static_cast<std::size_t>(title) - 1] = 1;
    if (!std::binary_search(m_chosen.begin(), m_chosen.end(), m_anchor))
        m_anchor = m_chosen.empty() ? 0 : m_chosen.front();
    ShowAgain();
    Speak();
}

void Lane::Current(std::int32_t title) {
    if (std::exchange(m_current, title) == title)
        return;
    update();
    if (m_anchor == 0)
        Speak();
}

void Lane::Placing(std::optional<double> since) {
    if (std::exchange(m_placing, since) != since)
        update();
}

void Lane::Marks(double blue, double green) {
    const bool other = blue != m_blueMark || green != m_greenMark;
    m_blueMark = blue;
    m_greenMark = green;
    if (other)
        update();
}

void Lane::Selection(double start, double end) {
    const bool other = start != m_selectionStart || end != m_selectionEnd;
    m_selectionStart = start;
    m_selectionEnd = end;
    if (other)
        update();
}

void Lane::Reveal(std::int32_t title) {
    if (title < 1 || title > m_titles.Count())
        return;
    m_view.Reveal(m_titles.Start(title), std::max(m_titles.Start(title), m_titles.End(title)));
    Scrolled();
}

/// The user, or a title, has moved the view: a film that plays on elsewhere does not take it
/// back before it comes into sight.
void Lane::Scrolled() {
    m_away = !m_view.Holds(m_player.CurrentPosition());
    update();
}

void Lane::ShowAgain() {
    m_tiles.Forget();
    update();
}

LaneShape Lane::Shape() const {
    const int ruler = fontMetrics().height() + 2;
    return {static_cast<double>(height()),
            std::min<double>(ruler, std::floor(height() * RulerShare)), Shown().Tracks()};
}

void Lane::Look() {
    QFont small = font();
    constexpr double Share = 0.85;
    if (small.pointSizeF() > 0)
        small.setPointSizeF(small.pointSizeF() * Share);
    m_colours = LanePaletteOf(palette());
    m_tiles.Look(m_colours, small);
}

void Lane::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
        Look();
        update();
        return;
    default:
        return;
    }
}

void Lane::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_view.Width(width());
}

void Lane::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    StateChanged();
}

void Lane::hideEvent(QHideEvent* event) {
    EndDrag(false);
    QWidget::hideEvent(event);
    m_tick.stop();
}

/// What a screen reader says of the lane: the title that keys work on.
void Lane::Speak() {
    const std::int32_t title = TitleForKeys();
    if (title == 0) {
        setAccessibleName(tr("Sound and titles"));
        return;
    }
    const QString words =
        m_words ? m_words(title).replace(QLatin1Char('\n'), QLatin1Char(' ')) : QString();
    const auto time = [](double seconds) {
        return QString::fromStdString(FormatTime(seconds));
    };
    setAccessibleName(tr("Title %1: %2, start %3, end %4")
                          .arg(title)
                          .arg(words, time(Shown().Start(title)), time(Shown().End(title))));
}
