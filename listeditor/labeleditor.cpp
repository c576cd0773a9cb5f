#include "listeditor/labeleditor.h"

#include <QEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr int MostLines = 6;

} // namespace

LabelEditor::LabelEditor(QWidget* parent)
    : TitleBox(parent) {
    setLineWrapMode(NoWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::Box);
    setTabChangesFocus(true);
    document()->setDocumentMargin(2);
    connect(this, &QPlainTextEdit::textChanged, this, &LabelEditor::Grow);
}

void LabelEditor::Load(const QString& text) {
    // A row that changes behind the editor does not take what was typed away.
    if (Loaded())
        return;
    TitleBox::Load(text);
    selectAll();
}

void LabelEditor::Place(const QRect& cell) {
    m_cell = cell;
    Grow();
}

void LabelEditor::Grow() {
    const QString inBox = document()->toRawText();
    const auto lines = std::count_if(inBox.begin(), inBox.end(), [](QChar c) {
        return c == QChar::ParagraphSeparator || c == QChar::LineSeparator;
    });
    const int shown = std::clamp(static_cast<int>(lines) + 1, 1, MostLines);
    const int margins = 2 * (frameWidth() + qRound(document()->documentMargin())) + 2;
    QRect place = m_cell;
    place.setHeight(
        qMax(m_cell.height(),
             static_cast<int>(std::ceil(QFontMetricsF(font()).lineSpacing() * shown)) + margins));
    if (const QWidget* view = parentWidget())
        place.moveBottom(qMax(qMin(place.bottom(), view->height() - 1), place.height() - 1));
    setGeometry(place);
}

bool LabelEditor::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return TitleBox::event(event);
}
