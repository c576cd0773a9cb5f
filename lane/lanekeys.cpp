#include "lane/lane.h"

#include "model/times.h"
#include "sound/soundmap.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr double FineStep = 0.01;
constexpr double CoarseStep = 0.1;
constexpr double ZoomStep = 1.5;
constexpr double PageShare = 0.9;

} // namespace

void Lane::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (m_view.Length() > 0 &&
        (ViewKey(event->key(), modifiers) || TitleKey(event->key(), modifiers)))
        return event->accept();
    QWidget::keyPressEvent(event);
}

bool Lane::ViewKey(int key, Qt::KeyboardModifiers modifiers) {
    const bool control = modifiers == Qt::ControlModifier;
    switch (key) {
    case Qt::Key_Escape:
        if (!m_drag)
            return false;
        EndDrag(false);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        ZoomBy(1 / ZoomStep);
        return true;
    case Qt::Key_Minus:
        ZoomBy(ZoomStep);
        return true;
    case Qt::Key_0:
        m_view.ShowAll();
        Scrolled();
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        m_view.Scroll((key == Qt::Key_PageUp ? -PageShare : PageShare) * m_view.Width());
        Scrolled();
        return true;
    case Qt::Key_Home:
        emit PositionWanted(0);
        return true;
    case Qt::Key_End:
        emit PositionWanted(m_view.Length());
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (!control)
            return false;
        GoToSpeech(key == Qt::Key_Right);
        return true;
    default:
        return false;
    }
}

bool Lane::TitleKey(int key, Qt::KeyboardModifiers modifiers) {
    const double step = modifiers.testFlag(Qt::ShiftModifier) ? CoarseStep : FineStep;
    switch (key) {
    case Qt::Key_Left:
        Nudge(-step);
        return true;
    case Qt::Key_Right:
        Nudge(step);
        return true;
    case Qt::Key_Up:
        GoToTitle(-1);
        return true;
    case Qt::Key_Down:
        GoToTitle(1);
        return true;
    case Qt::Key_BracketLeft:
        Put(LaneDrag::Grip::Start);
        return true;
    case Qt::Key_BracketRight:
        Put(LaneDrag::Grip::End);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (TitleForKeys() != 0)
            emit EditWanted(TitleForKeys());
        return true;
    case Qt::Key_Insert:
        emit InsertWanted(m_player.CurrentPosition());
        return true;
    default:
        return false;
    }
}

/// About the position where it is in sight, else about the middle.
void Lane::ZoomBy(double factor) {
    const double position = m_player.CurrentPosition();
    m_view.Zoom(m_view.Holds(position) ? m_view.X(position) : m_view.Width() / 2.0, factor);
    Scrolled();
}

std::int32_t Lane::TitleForKeys() const {
    const std::int32_t title = m_anchor != 0 ? m_anchor : m_current;
    return title <= m_titles.Count() ? title : 0;
}

void Lane::ChooseByUser(std::vector<std::int32_t> titles, std::int32_t anchor) {
    const bool other = titles != m_chosen;
    m_anchor = anchor;
    if (other) {
        Choose(titles);
        emit ChoiceChanged(m_chosen);
    } else {
        Speak();
    }
}

void Lane::GoToTitle(int by) {
    const std::int32_t from = TitleForKeys();
    if (m_titles.Count() == 0)
        return;
    const std::int32_t title =
        from == 0 ? 1 : std::clamp<std::int32_t>(from + by, 1, m_titles.Count());
    ChooseByUser({title}, title);
    Reveal(title);
    emit PositionWanted(m_titles.Start(title));
}

void Lane::GoToSpeech(bool forward) {
    if (!m_sound)
        return;
    const auto edge =
        m_sound->NextSpeechEdge(m_player.CurrentPosition(),
                                forward ? SoundMap::Direction::Forward : SoundMap::Direction::Back);
    if (edge)
        emit PositionWanted(RoundTime(*edge));
}

/// The same rules as for a drag by hand: the chosen titles move together.
void Lane::Nudge(double seconds) {
    const std::int32_t title = TitleForKeys();
    if (title == 0 || m_drag)
        return;
    const double start = m_titles.Start(title);
    LaneDrag drag(m_titles, title, LaneDrag::Grip::Middle, m_chosen, start, m_view.Length());
    drag.Move(start + seconds);
    if (!drag.Changed())
        return;
    const std::span<const LaneTimes> titles = drag.Titles();
    emit TimesWanted({titles.begin(), titles.end()});
    Reveal(title);
}

void Lane::Put(LaneDrag::Grip edge) {
    const std::int32_t title = TitleForKeys();
    if (title == 0 || m_drag)
        return;
    const double from = edge == LaneDrag::Grip::Start ? m_titles.Start(title) : m_titles.End(title);
    LaneDrag drag(m_titles, title, edge, {}, from, m_view.Length());
    drag.Move(m_player.CurrentPosition());
    if (!drag.Changed())
        return;
    const std::span<const LaneTimes> titles = drag.Titles();
    emit TimesWanted({titles.begin(), titles.end()});
}

void Lane::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    Speak();
    update();
}

void Lane::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}
