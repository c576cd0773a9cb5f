#include "listeditor/rowdelegate.h"

#include "listeditor/labeleditor.h"
#include "listeditor/rowmodel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QTextLayout>

namespace {

const QString LineSign = QStringLiteral(" \u21B5 ");

/// The text on one line. Long texts are cut first: nobody sees their end.
QString OneLine(QString text) {
    constexpr int Enough = 1000;
    text.truncate(Enough);
    text.replace(QLatin1String("\r\n"), LineSign);
    text.replace(QLatin1Char('\r'), LineSign);
    text.replace(QLatin1Char('\n'), LineSign);
    return text;
}

QColor TextColour(const QStyleOptionViewItem& option) {
    const QPalette::ColorGroup group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    return option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
}

void DrawText(QPainter& painter, const QStyleOptionViewItem& option, const QRect& area,
              const QString& text) {
    const QColor colour = TextColour(option);
    const QString shown =
        option.fontMetrics.elidedText(OneLine(text), Qt::ElideRight, area.width());
    QTextCharFormat faint;
    QColor faintColour = colour;
    faintColour.setAlphaF(0.45F);
    faint.setForeground(faintColour);
    QList<QTextLayout::FormatRange> faintParts;
    for (qsizetype at = shown.indexOf(LineSign); at >= 0; at = shown.indexOf(LineSign, at + 1))
        faintParts.append({static_cast<int>(at), static_cast<int>(LineSign.size()), faint});

    QTextLayout layout(shown, option.font);
    QTextOption oneLine;
    oneLine.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(oneLine);
    layout.setFormats(faintParts);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid())
        return;
    const qreal top = area.top() + (area.height() - line.height()) / 2;
    painter.setPen(colour);
    layout.draw(&painter, QPointF(area.left(), top));
}

/// The number of the row's mark at the right edge; answers the room that is left.
QRect DrawMark(QPainter& painter, const QStyleOptionViewItem& option, QRect area, int mark) {
    const int side = qMin(option.fontMetrics.height(), area.height() - 4);
    QRectF sign(0, 0, side, side);
    sign.moveCenter(QPointF(area.right() - side / 2.0, area.center().y() + 0.5));
    const QColor colour = TextColour(option);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1));
    painter.drawEllipse(sign.adjusted(0.5, 0.5, -0.5, -0.5));
    QFont font = option.font;
    font.setPixelSize(qMax(6, side * 7 / 10));
    painter.setFont(font);
    painter.drawText(sign, Qt::AlignCenter, QString::number(mark));
    area.setRight(area.right() - side - RowDelegate::Padding);
    return area;
}

/// A bar at the row's left edge: the film is there.
void DrawPlaying(QPainter& painter, const QStyleOptionViewItem& option) {
    QRect bar = option.rect;
    bar.setWidth(RowDelegate::Padding - 1);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter.fillRect(
        bar, option.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight));
}

void DrawFocus(QPainter& painter, const QStyleOptionViewItem& option) {
    QColor colour = option.palette.color(QPalette::Highlight);
    painter.setPen(colour);
    painter.drawLine(option.rect.topLeft(), option.rect.topRight());
    painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
}

} // namespace

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = index.data(Qt::DisplayRole).toString();
    cell.state.setFlag(QStyle::State_HasFocus, false);
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    const QStyle* style = view != nullptr ? view->style() : QApplication::style();
    if (index.column() == RowModel::Text)
        cell.text.clear();
    else
        cell.rect.setRight(cell.rect.right() - Padding);
    QStyleOptionViewItem ground = cell;
    ground.rect = option.rect;
    ground.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &ground, painter, view);
    if (index.column() != RowModel::Text) {
        painter->save();
        painter->setFont(cell.font);
        painter->setPen(TextColour(cell));
        painter->drawText(cell.rect.adjusted(Padding, 0, 0, 0), int(cell.displayAlignment),
                          cell.text);
        painter->restore();
    } else {
        painter->save();
        QRect area = option.rect.adjusted(Padding, 0, -Padding, 0);
        if (const int mark = index.data(RowModel::MarkRole).toInt())
            area = DrawMark(*painter, cell, area, mark);
        DrawText(*painter, cell, area, text);
        if (index.data(RowModel::PlayingRole).toBool())
            DrawPlaying(*painter, option);
        painter->restore();
    }
    if (view != nullptr && view->hasFocus() && view->currentIndex().row() == index.row()) {
        painter->save();
        DrawFocus(*painter, option);
        painter->restore();
    }
}

QWidget* RowDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    auto* editor = new LabelEditor(parent);
    editor->setFont(option.font);
    const std::int32_t row = index.row() + 1;
    connect(editor, &LabelEditor::textChanged, this,
            [this, editor, row] { emit Typed(row, editor->Text()); });
    connect(editor, &QObject::destroyed, this, &RowDelegate::TypingEnded);
    return editor;
}

void RowDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (auto* label = qobject_cast<LabelEditor*>(editor))
        label->Load(index.data(Qt::EditRole).toString());
}

void RowDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                               const QModelIndex& index) const {
    if (const auto* label = qobject_cast<LabelEditor*>(editor))
        model->setData(index, label->Text(), Qt::EditRole);
}

void RowDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                       const QModelIndex& /*index*/) const {
    if (auto* label = qobject_cast<LabelEditor*>(editor))
        label->Place(option.rect);
}

bool RowDelegate::eventFilter(QObject* editor, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QStyledItemDelegate::eventFilter(editor, event);
    auto* label = qobject_cast<LabelEditor*>(editor);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (label != nullptr && enter && !key->modifiers().testFlag(Qt::ShiftModifier)) {
        emit commitData(label);
        emit closeEditor(label);
        return true;
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}
