#include "listeditor/frmList.h"

#include "dialogs/frmStretch.h"
#include "dialogs/lefttyped.h"
#include "editing/edittitle.h"
#include "editing/numberstext.h"
#include "listeditor/labeleditor.h"
#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"
#include "platform/titletext.h"

#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace {

constexpr int EnterKey = 13;
constexpr int F2Key = 113;
/// So many titles ahead stay in sight while the list follows the player.
constexpr std::int32_t LookAhead = 3;

} // namespace

std::vector<std::int32_t> frmList::SelectedRows() const {
    std::vector<std::int32_t> rows;
    for (const QItemSelectionRange& range : LV->selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row + 1);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

std::int32_t frmList::SelectedItem() const {
    const QItemSelection selection = LV->selectionModel()->selection();
    const int focus = LV->currentIndex().row();
    int first = -1;
    for (const QItemSelectionRange& range : selection) {
        if (focus >= range.top() && focus <= range.bottom())
            return focus + 1;
        if (first < 0 || range.top() < first)
            first = range.top();
    }
    return first + 1;
}

void frmList::SelectRow(std::int32_t row) {
    const QModelIndex index = m_rows->index(row - 1, RowModel::Text);
    if (!index.isValid())
        return;
    LV->selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    LV->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void frmList::SelectOnly(std::int32_t row) {
    LV->clearSelection();
    SelectRow(row);
}

void frmList::UnselectItem() {
    if (const std::int32_t row = SelectedItem(); row > 0)
        LV->selectionModel()->select(m_rows->index(row - 1, RowModel::Text),
                                     QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

void frmList::SelectAll() {
    LV->selectAll();
}

void frmList::ScrollTo(std::int32_t row) {
    LV->scrollTo(m_rows->index(row - 1, RowModel::Text));
}

void frmList::SelectTitles(std::span<const std::int32_t> titles) {
    QItemSelection selection;
    for (std::size_t first = 0; first < titles.size();) {
        std::size_t last = first;
        while (last + 1 < titles.size() && titles[last + 1] == titles[last] + 1)
            ++last;
        selection.select(m_rows->index(titles[first] - 1, RowModel::Text),
                         m_rows->index(titles[last] - 1, RowModel::Text));
        first = last + 1;
    }
    LV->selectionModel()->select(selection,
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (titles.empty())
        return;
    LV->selectionModel()->setCurrentIndex(m_rows->index(titles.front() - 1, RowModel::Text),
                                          QItemSelectionModel::NoUpdate);
    ScrollTo(titles.front());
}

void frmList::SelectionChanged() {
    m_actions.SetEnabled(Needs::CurrentTitle, !LV->selectionModel()->selection().isEmpty());
    emit Selected();
}

void frmList::GoToTitle(std::int32_t index) {
    if (index < 1 || index > RowCount())
        return;
    SelectOnly(index);
    ScrollTo(index);
    m_host.MediaPosition(Subt().StartTime(index));
}

void frmList::ShowPlaying(std::int32_t i) {
    m_rows->Playing(i);
}

void frmList::FollowTitle(std::int32_t i) {
    // The row with the text editor stays where it is.
    if (LV->Editing())
        return;
    // Several selected rows are about to be worked on: they stay selected.
    const QItemSelection selection = LV->selectionModel()->selection();
    const bool one = selection.size() == 1 && selection.first().height() == 1;
    if (one && i <= Subt().Count()) {
        UnselectItem();
        SelectRow(i);
    }
    if (i > LookAhead)
        ScrollTo(std::min(i + LookAhead, RowCount()));
}

void frmList::LV_ItemClick(std::int32_t row) {
    SelectionChanged();
    m_host.MediaPosition(Subt().StartTime(row));
}

void frmList::LV_DblClick() {
    if (SelectedItem() > 0)
        OpenEdit();
}

void frmList::LV_KeyPress(int keyAscii) {
    if (keyAscii == EnterKey)
        OpenEdit();
}

void frmList::LV_KeyDown(int keyCode) {
    const std::int32_t row = SelectedItem();
    if (keyCode != F2Key || row == 0)
        return;
    ScrollTo(row);
    SelectRow(row);
    const auto left = GoOnTyping(document(), row, this);
    LV->edit(m_rows->index(row - 1, RowModel::Text));
    auto* editor = LV->findChild<LabelEditor*>();
    if (left && editor != nullptr)
        editor->setPlainText(TitleToQt(left->text));
}

void frmList::LV_Typing(std::int32_t row, const QString& text) {
    const std::string& original = Subt().Text(row);
    std::string typed = TitleFromQt(text);
    if (typed == original)
        document().Typing(std::nullopt);
    else
        document().Typing(Draft{row, original, std::move(typed), {}, {}});
}

bool frmList::eventFilter(QObject* watched, QEvent* event) {
    if (watched != LV || event->type() != QEvent::KeyPress)
        return QMainWindow::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Guarded([this] { LV_KeyPress(EnterKey); });
        return true;
    case Qt::Key_F2:
        Guarded([this] { LV_KeyDown(F2Key); });
        return true;
    default:
        return QMainWindow::eventFilter(watched, event);
    }
}

void frmList::LV_AfterLabelEdit(std::int32_t row, const QString& newString) {
    const QScopedValueRollback own(m_ownChange, true);
    const std::string text = BlanksForLoneBreaks(TitleFromQt(newString));
    Subt().Text(row, text);
    m_rows->SetText(row, text);
    ShowEdited(row);
    m_rows->Show(row, row);
    document().SubtitlesChanged = true;
}

void frmList::ShowEdited(std::int32_t row) {
    if (row < 0)
        row = SelectedItem();
    if (IsMark(row))
        return;
    m_rows->SetColour(row, RowColour::Edited);
    m_rows->Show(row, row);
}

void frmList::ShowAllEdited(std::span<const std::int32_t> rows) {
    if (rows.empty())
        return;
    for (const std::int32_t row : rows)
        if (!IsMark(row))
            m_rows->SetColour(row, RowColour::Edited);
    m_rows->Show(rows.front(), rows.back());
}

void frmList::UncolourMarks() {
    for (const std::int32_t row : {FirstMark, SecondMark}) {
        m_rows->SetColour(row, RowColour::Plain);
        m_rows->Show(row, row);
    }
}

void frmList::MarkEnds() {
    FirstMark = 1;
    SecondMark = Subt().Count();
    m_rows->SetColour(FirstMark, RowColour::FirstMark);
    m_rows->SetColour(SecondMark, RowColour::SecondMark);
    m_rows->Show(FirstMark, FirstMark);
    m_rows->Show(SecondMark, SecondMark);
}

void frmList::Mark(std::int32_t& mark, std::int32_t otherMark, RowColour colour) {
    const std::int32_t row = SelectedItem();
    if (row == 0)
        return;
    if (row == otherMark)
        return ShowMessage(this, "The same title can not be marked as first and second, not set",
                           MessageIcon::Exclamation);
    m_rows->SetColour(mark, RowColour::Plain);
    m_rows->Show(mark, mark);
    mark = row;
    m_rows->SetColour(row, colour);
    MarkChanged();
    m_rows->Show(row, row);
}

void frmList::mnuTimeFirst_Click() {
    Mark(FirstMark, SecondMark, RowColour::FirstMark);
}

void frmList::mnuTimeSecond_Click() {
    Mark(SecondMark, FirstMark, RowColour::SecondMark);
}

std::optional<double> frmList::AskPosition() {
    const std::optional<double> position = m_host.FilmPosition();
    if (!position)
        ShowMessage(this, tr("No film is open."));
    return position;
}

void frmList::mnuTimeFirstHere_Click() {
    if (const auto position = AskPosition())
        document().BlueMark(*position);
}

void frmList::mnuTimeSecondHere_Click() {
    if (const auto position = AskPosition())
        document().GreenMark(*position);
}

void frmList::StretchToMarks() {
    if (!(document().BlueMark() < document().GreenMark()))
        return ShowMessage(this, tr("Title times have been set to an illegal order."));
    const QString titles = QString::fromStdString(NumbersText(SelectedRows(), RowCount()));
    auto* stretch = new frmStretch(*this, this);
    stretch->txtFirstSubtitle->setText(QString::fromStdString(FormatTime(document().BlueMark())));
    stretch->txtLastSubtitle->setText(QString::fromStdString(FormatTime(document().GreenMark())));
    stretch->show();
    stretch->cmdOK_Click();
    // It closes when it has done it.
    if (!stretch->isVisible())
        m_host.Say(tr("Stretched %1").arg(titles));
}

void frmList::MarkChanged() {
    if (SecondMark < FirstMark)
        std::swap(FirstMark, SecondMark);
    LV->viewport()->update();
}
