#include "lane/lane.h"

#include "sound/soundmap.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

/// A press that moves by less is a click (in pixels).
constexpr double ClickSlack = 4;
constexpr double SnapReach = 6;
constexpr double UpperEdge = 4;
/// One notch of a wheel, as Qt counts it.
constexpr double Notch = 120;
constexpr double ScrollPerNotch = 80;
constexpr double ZoomPerNotch = 1.25;
constexpr double HeightPerNotch = 16;

} // namespace

LaneHit Lane::HitAt(const QPointF& place) const {
    return HitLane(Shown(), m_view, Shape(), place.x(), place.y());
}

void Lane::ShowCursor(const QPointF& place) {
    if (m_press == Press::Height || (m_press == Press::None && AtUpperEdge(place)))
        return setCursor(Qt::SizeVerCursor);
    const LaneHit::Part part = m_press == Press::Drag ? m_pressed.part : HitAt(place).part;
    const bool edge = part == LaneHit::Part::Start || part == LaneHit::Part::End;
    if (m_press == Press::Pan)
        setCursor(Qt::ClosedHandCursor);
    else if (edge)
        setCursor(Qt::SizeHorCursor);
    else if (m_press == Press::Drag)
        setCursor(Qt::SizeAllCursor);
    else
        unsetCursor();
}

/// There the lane is taken hold of to make it higher or lower.
bool Lane::AtUpperEdge(const QPointF& place) const {
    return place.y() < UpperEdge;
}

void Lane::mousePressEvent(QMouseEvent* event) {
    if (m_view.Length() <= 0 || m_press != Press::None)
        return event->ignore();
    m_pressPlace = m_pointer = event->position();
    if (event->button() == Qt::MiddleButton) {
        m_press = Press::Pan;
        return ShowCursor(m_pointer);
    }
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    if (AtUpperEdge(m_pointer)) {
        m_press = Press::Height;
        m_edge = event->globalPosition().y();
        return;
    }
    m_pressed = HitAt(m_pointer);
    m_press = Press::Click;
    // A title that is chosen already stays so with the others, for a drag of them all.
    const bool chosen = std::binary_search(m_chosen.begin(), m_chosen.end(), m_pressed.title);
    if (m_pressed.title != 0 && (!chosen || event->modifiers() != Qt::NoModifier))
        ChooseByClick(m_pressed.title, event->modifiers());
    else if (m_pressed.title != 0)
        ChooseByUser(m_chosen, m_pressed.title);
}

void Lane::mouseMoveEvent(QMouseEvent* event) {
    const QPointF before = m_pointer;
    m_pointer = event->position();
    const bool moved = std::abs(m_pointer.x() - m_pressPlace.x()) >= ClickSlack;
    if (m_press == Press::Click && moved) {
        if (m_pressed.part == LaneHit::Part::Ground)
            m_press = Press::Scrub;
        else
            BeginDrag(m_pressPlace);
    }
    if (m_press == Press::Drag)
        DragTo(m_pointer, !event->modifiers().testFlag(Qt::AltModifier));
    else if (m_press == Press::Scrub)
        emit ScrubWanted(std::clamp(m_view.Time(m_pointer.x()), 0.0, m_view.Length()));
    else if (m_press == Press::Height) {
        const double edge = event->globalPosition().y();
        const int more = static_cast<int>(std::lround(m_edge - edge));
        m_edge = edge;
        if (more != 0)
            emit HeightWanted(more);
    } else if (m_press == Press::Pan) {
        m_view.Scroll(before.x() - m_pointer.x());
        Scrolled();
    }
    ShowCursor(m_pointer);
}

void Lane::mouseReleaseEvent(QMouseEvent* event) {
    const Qt::MouseButton button = m_press == Press::Pan ? Qt::MiddleButton : Qt::LeftButton;
    if (event->button() != button)
        return event->ignore();
    const Press press = m_press;
    if (press == Press::Drag) {
        EndDrag(true);
    } else {
        m_press = Press::None;
        const bool plain = (event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) == 0;
        if (press == Press::Click && (plain || m_pressed.title == 0))
            emit PositionWanted(std::clamp(m_view.Time(m_pressPlace.x()), 0.0, m_view.Length()));
    }
    ShowCursor(event->position());
}

void Lane::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    const LaneHit hit = HitAt(event->position());
    m_press = Press::None;
    if (hit.title != 0)
        emit EditWanted(hit.title);
}

void Lane::contextMenuEvent(QContextMenuEvent* event) {
    if (m_view.Length() <= 0)
        return event->ignore();
    EndDrag(false);
    m_press = Press::None;
    if (event->reason() == QContextMenuEvent::Mouse) {
        const LaneHit hit = HitAt(event->pos());
        if (hit.title != 0 && !std::binary_search(m_chosen.begin(), m_chosen.end(), hit.title))
            ChooseByUser({hit.title}, hit.title);
        emit MenuWanted(hit.title, std::max(0.0, m_view.Time(event->pos().x())),
                        event->globalPos());
        return;
    }
    const std::int32_t title = TitleForKeys();
    const QRect place = title == 0 ? rect() : BlockPlace(title).intersected(rect());
    emit MenuWanted(title, m_player.CurrentPosition(),
                    mapToGlobal(place.isEmpty() ? rect().center() : place.center()));
}

/// Control takes a title in or out, Shift takes all up to it.
void Lane::ChooseByClick(std::int32_t title, Qt::KeyboardModifiers modifiers) {
    std::vector<std::int32_t> chosen;
    if (modifiers.testFlag(Qt::ShiftModifier) && m_anchor != 0) {
        const std::int32_t last = std::max(m_anchor, title);
        for (std::int32_t one = std::min(m_anchor, title); one <= last; ++one)
            chosen.push_back(one);
        return ChooseByUser(std::move(chosen), m_anchor);
    }
    if (modifiers.testFlag(Qt::ControlModifier)) {
        chosen = m_chosen;
        const auto place = std::lower_bound(chosen.begin(), chosen.end(), title);
        if (place != chosen.end() && *place == title)
            chosen.erase(place);
        else
            chosen.insert(place, title);
        return ChooseByUser(std::move(chosen), title);
    }
    ChooseByUser({title}, title);
}

void Lane::BeginDrag(const QPointF& place) {
    const auto grip = m_pressed.part == LaneHit::Part::Start ? LaneDrag::Grip::Start
                      : m_pressed.part == LaneHit::Part::End ? LaneDrag::Grip::End
                                                             : LaneDrag::Grip::Middle;
    m_press = Press::Drag;
    m_drag.emplace(m_titles, m_pressed.title, grip, m_chosen, m_view.Time(place.x()),
                   m_view.Length());
    m_dragged = m_titles;
}

std::optional<double> Lane::SnapPlace(double time) const {
    const double reach = SnapReach * m_view.Step();
    std::optional<double> best = m_titles.NearestEdge(time, reach, m_drag->Rows());
    if (!m_sound)
        return best;
    for (const auto direction : {SoundMap::Direction::Back, SoundMap::Direction::Forward}) {
        const auto edge = m_sound->NextSpeechEdge(time, direction);
        if (edge && std::abs(*edge - time) <= reach &&
            (!best || std::abs(*edge - time) < std::abs(*best - time)))
            best = edge;
    }
    return best;
}

void Lane::DragTo(const QPointF& place, bool snap) {
    m_snap = snap;
    m_drag->Move(m_view.Time(place.x()),
                 snap ? LaneDrag::Snap([this](double time) { return SnapPlace(time); })
                      : LaneDrag::Snap());
    m_dragged.Change(m_drag->Titles());
    ShowAgain();
}

void Lane::EndDrag(bool keep) {
    if (!m_drag)
        return;
    const LaneDrag drag = std::move(*m_drag);
    m_drag.reset();
    m_press = Press::None;
    ShowAgain();
    if (keep && drag.Changed()) {
        const std::span<const LaneTimes> titles = drag.Titles();
        emit TimesWanted({titles.begin(), titles.end()});
    }
}

void Lane::wheelEvent(QWheelEvent* event) {
    if (m_view.Length() <= 0)
        return event->ignore();
    // A touchpad says pixels; it moves both ways.
    const bool fine = !event->pixelDelta().isNull() && event->phase() != Qt::NoScrollPhase;
    const QPointF notches =
        fine ? QPointF(event->pixelDelta()) / ScrollPerNotch : QPointF(event->angleDelta()) / Notch;
    const double most = std::abs(notches.y()) >= std::abs(notches.x()) ? notches.y() : notches.x();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        m_view.Zoom(event->position().x(), std::pow(ZoomPerNotch, -most));
    } else if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        emit HeightWanted(static_cast<int>(std::lround(most * HeightPerNotch)));
        return event->accept();
    } else {
        m_view.Scroll(-most * ScrollPerNotch);
    }
    Scrolled();
    // A block that is held stays under the pointer.
    if (m_drag)
        DragTo(m_pointer, m_snap);
    event->accept();
}

bool Lane::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto& gesture = *static_cast<QNativeGestureEvent*>(event);
        if (gesture.gestureType() == Qt::ZoomNativeGesture) {
            m_view.Zoom(gesture.position().x(), 1 / std::max(0.1, 1 + gesture.value()));
            Scrolled();
            return true;
        }
    }
    // While a block is held, Escape is the lane's and closes nothing.
    if (event->type() == QEvent::ShortcutOverride && m_drag &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}
