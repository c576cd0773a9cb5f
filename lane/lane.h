#pragma once

#include "lane/lanedrag.h"
#include "lane/laneshape.h"
#include "lane/lanetiles.h"
#include "lane/laneview.h"
#include "player/player.h"

#include <QPoint>
#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

class SoundMap;

/// The film's sound and the titles on it, by the player's clock: a strip to look at, to scroll and
/// to zoom, and to take hold of the titles' starts and ends. It shows what it is given and
/// says what the user wants; it changes no title itself. Times are seconds, titles are counted
/// from 1, and 0 is none.
class Lane : public QWidget {
    Q_OBJECT

  public:
    static constexpr int LeastHeight = 48;

    explicit Lane(Player& player, QWidget* parent = nullptr);
    ~Lane() override;

    /// Null: no sound is known (yet).
    void Sound(std::shared_ptr<const SoundMap> sound);
    /// The map has grown.
    void SoundGrew();

    /// Other titles in place of all, in the list's order.
    void Titles(std::vector<double> starts, std::vector<double> ends);
    void Titles(LaneTitles titles);
    /// Outlines where titles would come; without titles there are none.
    void Propose(LaneTitles titles);
    /// Other times for some.
    void ChangeTimes(std::span<const LaneTimes> titles);
    /// Where the blocks' words come from; asked again after `WordsChanged`.
    void Words(LaneTiles::Words words);
    void WordsChanged();

    /// The chosen titles, in order. The last one that the user went to is the one that keys
    /// work on.
    void Choose(std::span<const std::int32_t> titles);
    const std::vector<std::int32_t>& Chosen() const { return m_chosen; }
    std::int32_t AnchorTitle() const { return m_anchor; }
    /// The title that is being shown or placed.
    void Current(std::int32_t title);
    /// A title is being placed since this time; nothing: none is.
    void Placing(std::optional<double> since);
    void Marks(double blue, double green);
    void Selection(double start, double end);

    void Follow(LaneView::Follow how) { m_follow = how; }
    LaneView::Follow Follow() const { return m_follow; }
    const LaneView& View() const { return m_view; }
    const LaneTitles& Shown() const { return m_drag ? m_dragged : m_titles; }
    /// Brings a title into sight.
    void Reveal(std::int32_t title);
    bool Dragging() const { return m_drag.has_value(); }
    QRect BlockPlace(std::int32_t title) const;

    QSize minimumSizeHint() const override;

  signals:
    /// The film is wanted at this time; by ear too while the ground is dragged.
    void PositionWanted(double seconds);
    void ScrubWanted(double seconds);
    /// The end of a drag, or a key: these titles, in order, get these times, as one step.
    void TimesWanted(const std::vector<LaneTimes>& titles);
    void ChoiceChanged(const std::vector<std::int32_t>& titles);
    void EditWanted(std::int32_t title);
    void InsertWanted(double seconds);
    /// The menu for a title (0: for the ground), at a place of the screen.
    void MenuWanted(std::int32_t title, double seconds, const QPoint& place);
    /// So many pixels higher.
    void HeightWanted(int more);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    /// What a pressed button is going to be.
    enum class Press : std::uint8_t { None, Click, Drag, Scrub, Pan, Height };

    // Looks
    void Look();
    LaneShape Shape() const;
    void PaintOver(QPainter& painter);
    void PaintSelection(QPainter& painter);
    void PaintLit(QPainter& painter, const QRectF& place, const QColor& colour) const;
    void PaintProposed(QPainter& painter) const;
    void PaintFlag(QPainter& painter, double time, const QColor& colour) const;
    void PaintBubble(QPainter& painter) const;
    QRectF Block(double start, double end, int track) const;
    void ShowAgain();
    void MoveLine();
    void Speak();

    // Following the player
    void Listen();
    void FilmChanged();
    void StateChanged();
    void Jumped(double to);
    void Tick();

    // The mouse
    LaneHit HitAt(const QPointF& place) const;
    void ShowCursor(const QPointF& place);
    bool AtUpperEdge(const QPointF& place) const;
    void BeginDrag(const QPointF& place);
    void DragTo(const QPointF& place, bool snap);
    void EndDrag(bool keep);
    void ChooseByClick(std::int32_t title, Qt::KeyboardModifiers modifiers);
    std::optional<double> SnapPlace(double time) const;
    void Scrolled();

    // Keys
    bool ViewKey(int key, Qt::KeyboardModifiers modifiers);
    bool TitleKey(int key, Qt::KeyboardModifiers modifiers);
    void ZoomBy(double factor);
    void GoToTitle(int by);
    void GoToSpeech(bool forward);
    void Nudge(double seconds);
    void Put(LaneDrag::Grip edge);
    std::int32_t TitleForKeys() const;
    void ChooseByUser(std::vector<std::int32_t> titles, std::int32_t anchor);

    Player& m_player;
    LaneView m_view;
    LaneTitles m_titles;
    LaneTitles m_proposed;
    LaneTiles m_tiles;
    LanePalette m_colours;
    LaneTiles::Words m_words;
    std::shared_ptr<const SoundMap> m_sound;
    std::uint64_t m_soundChanges = 0;
    LaneView::Follow m_follow = LaneView::Follow::Smooth;
    QTimer m_tick;
    double m_position = 0;
    /// The user scrolled away from the position, which plays on out of sight.
    bool m_away = false;

    std::vector<std::int32_t> m_chosen;
    /// The same, a value for each title.
    std::vector<std::uint8_t> m_choice;
    std::int32_t m_anchor = 0;
    std::int32_t m_current = 0;
    std::optional<double> m_placing;
    double m_blueMark = 0;
    double m_greenMark = 0;
    double m_selectionStart = -1;
    double m_selectionEnd = -1;

    Press m_press = Press::None;
    LaneHit m_pressed;
    QPointF m_pressPlace;
    QPointF m_pointer;
    /// Where the upper edge was dragged to last, on the screen.
    double m_edge = 0;
    bool m_snap = true;
    std::optional<LaneDrag> m_drag;
    /// The titles as they lie during a drag.
    LaneTitles m_dragged;
};
