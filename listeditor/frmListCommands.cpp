#include "listeditor/frmList.h"

#include "dialogs/frmEdit.h"
#include "dialogs/frmShift.h"
#include "dialogs/frmStretch.h"
#include "editing/corrections.h"
#include "editing/listcommands.h"
#include "listeditor/frmFind.h"
#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "model/step.h"
#include "model/times.h"
#include "platform/titletext.h"

#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

void frmList::DoCommand(const QString& key) {
    if (key.isEmpty())
        return;
    for (const ListCommand& command : Commands())
        if (key == QLatin1String(command.key))
            return RunByKey(command);
}

void frmList::RunByKey(const ListCommand& command) {
    Run(command);
    if (command.keyIsChange)
        document().SubtitlesChanged = true;
}

void frmList::Run(const ListCommand& command) {
    const QScopedValueRollback own(m_ownChange, true);
    command.run(*this);
}

void frmList::Undo() {
    std::int32_t index = Subt().Undo();
    if (index < 1 || index > RowCount())
        index = 1;
    if (!IsMark(index))
        m_rows->SetColour(index, RowColour::Plain);
    SelectOnly(index);
    ScrollTo(index);
    SetRow(index, TitleToQt(Subt().Text(index)), Subt().StartTime(index),
           RoundTime(Subt().EndTime(index) - Subt().StartTime(index)));
}

void frmList::Edit() {
    if (SelectedItem() > 0)
        OpenEdit();
}

void frmList::OpenEdit() {
    (new frmEdit(*this, this))->exec();
}

void frmList::Stretch() {
    (new frmStretch(*this, this))->exec();
}

void frmList::Shift() {
    (new frmShift(*this, this))->exec();
}

void frmList::Find() {
    if (m_find == nullptr)
        m_find = new frmFind(*this, this);
    m_find->Open();
}

void frmList::FindNext() {
    if (m_find == nullptr)
        return Find();
    m_find->cmdNext_Click();
}

void frmList::MoveTitles(bool (*change)(SUBTITLES&, std::int32_t)) {
    const Step step(Subt());
    std::vector<std::int32_t> moved;
    for (const std::int32_t row : SelectedRows()) {
        if (!change(Subt(), row))
            continue;
        m_rows->SetStart(row, Subt().StartTime(row));
        moved.push_back(row);
    }
    if (moved.empty())
        return;
    ShowAllEdited(moved);
    document().SubtitlesChanged = true;
    // Each title in turn takes the player along; only where it ends up is seen.
    m_host.MediaPosition(Subt().StartTime(moved.back()));
}

void frmList::ChangeDuration(bool (*change)(SUBTITLES&, std::int32_t)) {
    const std::int32_t row = SelectedItem();
    if (row == 0)
        return;
    // Only a duration that met its limit counts as a change of the document.
    if (change(Subt(), row))
        document().SubtitlesChanged = true;
    m_rows->SetDuration(row, RoundTime(Subt().EndTime(row) - Subt().StartTime(row)));
    ShowEdited(row);
    m_rows->Show(row, row);
}

void frmList::Insert() {
    const std::int32_t row = SelectedItem();
    if (row == 0)
        return;
    UncolourMarks();
    const InsertedTitle title = InsertBefore(Subt(), row);
    m_rows->Insert(row, "New Title", title.start, title.duration);
    ShowEdited(row);
    document().SubtitlesChanged = true;
    MarkEnds();
    UpdateDelete();
}

void frmList::Delete() {
    UncolourMarks();
    const std::vector<std::int32_t> selected = SelectedRows();
    const std::vector<std::int32_t> deleted = DeleteTitles(Subt(), selected);
    RemoveRows(deleted, selected.size() > deleted.size());
    UpdateDelete();
    document().SubtitlesChanged = true;
    MarkEnds();
}

void frmList::RemoveRows(const std::vector<std::int32_t>& rows, bool lastStaysSelected) {
    if (rows.empty())
        return;
    const int scrolled = LV->verticalScrollBar()->value();
    m_rows->Remove(rows);
    LV->verticalScrollBar()->setValue(scrolled);
    // The focus goes to the title behind the first one that went.
    const std::int32_t next = std::min(rows.front(), RowCount());
    LV->selectionModel()->setCurrentIndex(m_rows->index(next - 1, RowModel::Text),
                                          QItemSelectionModel::NoUpdate);
    if (lastStaysSelected)
        SelectRow(RowCount());
}

void frmList::ShowCorrected(const std::vector<std::int32_t>& rows) {
    for (const std::int32_t row : rows)
        m_rows->SetText(row, Subt().Text(row));
    ShowAllEdited(rows);
}

void frmList::CorrectSpelling() {
    const QScopedValueRollback own(m_ownChange, true);
    ShowCorrected(::CorrectSpelling(Subt()));
}

void frmList::ConvertItalics() {
    const QScopedValueRollback own(m_ownChange, true);
    ShowCorrected(::ConvertItalics(Subt()));
}
