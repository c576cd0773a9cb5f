#pragma once

#include <QTableView>

/// The list in report style: whole rows, one height for all, Home and End go to
/// the ends of the list.
class TitleView : public QTableView {
    Q_OBJECT

  public:
    explicit TitleView(QWidget* parent = nullptr);

    bool Editing() const { return state() == EditingState; }
    /// The height of rows follows the font.
    void SetListFont(const QFont& font);

  protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
};
