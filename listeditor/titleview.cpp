#include "listeditor/titleview.h"

#include "listeditor/rowdelegate.h"

#include <QHeaderView>
#include <QProxyStyle>
#include <QResizeEvent>
#include <QScopedValueRollback>

namespace {

constexpr int RowPadding = 6;

/// Captions stand as far from the columns' edges as the texts below them.
class HeaderStyle : public QProxyStyle {
  public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        return metric == PM_HeaderMargin ? RowDelegate::Padding
                                         : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

TitleView::TitleView(QWidget* parent)
    : QTableView(parent) {
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setFrameShape(NoFrame);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    auto* headerStyle = new HeaderStyle;
    headerStyle->setParent(this);
    horizontalHeader()->setStyle(headerStyle);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (m_follow && !m_scaling)
            TakeShares();
    });
    setAccessibleName(tr("Titles"));
    SetListFont(font());
}

void TitleView::SetListFont(const QFont& font) {
    setFont(font);
    horizontalHeader()->setFont(font);
    verticalHeader()->setDefaultSectionSize(QFontMetrics(font).height() + RowPadding);
}

void TitleView::TakeShares() {
    const double width = qMax(1, viewport()->width());
    m_shares.clear();
    for (int column = 0; column < horizontalHeader()->count(); ++column)
        m_shares.push_back(columnWidth(column) / width);
}

void TitleView::LetColumnsFollow() {
    m_follow = true;
    TakeShares();
}

int TitleView::TimeWidth() const {
    return QFontMetrics(font()).horizontalAdvance("-00:00:00,000") + 2 * RowDelegate::Padding + 2;
}

void TitleView::MakeRoomForTimes() {
    const int least = TimeWidth();
    for (int column = 1; column < horizontalHeader()->count(); ++column) {
        const int more = least - columnWidth(column);
        if (more <= 0)
            continue;
        setColumnWidth(0, qMax(least, columnWidth(0) - more));
        setColumnWidth(column, least);
    }
}

void TitleView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    if (!m_follow || event->oldSize().width() == event->size().width())
        return;
    const QScopedValueRollback scaling(m_scaling, true);
    for (std::size_t column = 0; column < m_shares.size(); ++column)
        setColumnWidth(static_cast<int>(column), qRound(m_shares[column] * event->size().width()));
}

QModelIndex TitleView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const int rows = model() != nullptr ? model()->rowCount() : 0;
    if (rows > 0 && action == MoveHome)
        return model()->index(0, 0);
    if (rows > 0 && action == MoveEnd)
        return model()->index(rows - 1, 0);
    if (action == MoveLeft || action == MoveRight)
        return currentIndex();
    return QTableView::moveCursor(action, modifiers);
}

void TitleView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    // The frame of the row with the focus runs through all its cells.
    for (const QModelIndex& index : {current, previous})
        for (int column = 0; index.isValid() && column < model()->columnCount(); ++column)
            update(index.siblingAtColumn(column));
}
