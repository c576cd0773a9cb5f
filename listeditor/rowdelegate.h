#pragma once

#include <QStyledItemDelegate>

#include <cstdint>

/// Draws the rows of the list: line breaks of a text as a sign in a second tone,
/// marked rows with the number of their mark, the title that is on with a bar at the edge, a frame
/// around the row that has the focus. Edits a text in place, in as many lines as it has.
class RowDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    /// From a column's edge to its text.
    static constexpr int Padding = 4;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

    /// Enter commits, Shift+Enter breaks the line, Escape cancels.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

  signals:
    /// A text is being typed in place, and is no longer.
    void Typed(std::int32_t row, const QString& text) const;
    void TypingEnded() const;

  protected:
    bool eventFilter(QObject* editor, QEvent* event) override;
};
