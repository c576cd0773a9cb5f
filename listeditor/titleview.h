#pragma once

#include <QTableView>

#include <vector>

/// The list in report style: whole rows, one height for all, Home and End go to
/// the ends of the list.
class TitleView : public QTableView {
    Q_OBJECT

  public:
    explicit TitleView(QWidget* parent = nullptr);

    bool Editing() const { return state() == EditingState; }
    /// The header's font and the height of rows follow the font.
    void SetListFont(const QFont& font);
    /// From now on the columns keep their shares of the view's width.
    void LetColumnsFollow();
    /// Widens the columns of times to their texts; the texts' column makes room.
    void MakeRoomForTimes();
    /// The width that a column of times needs.
    int TimeWidth() const;

  protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void TakeShares();

    bool m_follow = false;
    bool m_scaling = false;
    /// Of the columns, in the width of the viewport.
    std::vector<double> m_shares;
};
