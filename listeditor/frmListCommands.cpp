#include "listeditor/frmList.h"

#include "dialogs/frmEdit.h"
#include "dialogs/frmShift.h"
#include "dialogs/frmStretch.h"
#include "editing/corrections.h"
#include "editing/listcommands.h"
#include "listeditor/frmFind.h"
#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "model/times.h"

#include <QItemSelectionModel>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <utility>

void frmList::DoCommand(const QString& key) {
    using Handler = void (frmList::*)();
    static constexpr std::array<std::pair<const char*, Handler>, 14> Handlers{{
        {"Undo", &frmList::Undo},
        {"Edit", &frmList::Edit},
        {"Find", &frmList::Find},
        {"Sooner", &frmList::Sooner},
        {"Later", &frmList::Later},
        {"Shorter", &frmList::Shorter},
        {"Longer", &frmList::Longer},
        {"Stretch", &frmList::Stretch},
        {"Shift", &frmList::Shift},
        {"Spelling", &frmList::CorrectSpellingCommand},
        {"Italic", &frmList::ConvertItalicsCommand},
        {"Insert", &frmList::Insert},
        {"Delete", &frmList::Delete},
        {"Bye", &frmList::Bye},
    }};
    for (const auto& [name, handler] : Handlers)
        if (key == QLatin1String(name))
            return (this->*handler)();
}

void frmList::MenuEntry_Click(const QString& name) {
    using Handler = void (frmList::*)();
    // Unlike the buttons of the same name, the entries for spelling, stretch and
    // shift do not themselves count as a change.
    static constexpr std::array<std::pair<const char*, Handler>, 16> Handlers{{
        {"mnuViewFont", &frmList::mnuViewFont_Click},
        {"mnuViewToolbar", &frmList::mnuViewToolbar_Click},
        {"mnuEditUndo", &frmList::Undo},
        {"mnuEditEdit", &frmList::OpenEdit},
        {"mnuEditSpell", &frmList::CorrectSpelling},
        {"mnuEditFind", &frmList::Find},
        {"mnuEditInsert", &frmList::Insert},
        {"mnuEditDelete", &frmList::Delete},
        {"mnuTimeSooner", &frmList::Sooner},
        {"mnuTimeLater", &frmList::Later},
        {"mnuTimeShorter", &frmList::Shorter},
        {"mnuTimeLonger", &frmList::Longer},
        {"mnuTimeFirst", &frmList::mnuTimeFirst_Click},
        {"mnuTimeSecond", &frmList::mnuTimeSecond_Click},
        {"mnuTimeStretch", &frmList::OpenStretch},
        {"mnuTimeShift", &frmList::OpenShift},
    }};
    for (const auto& [entry, handler] : Handlers)
        if (name == QLatin1String(entry))
            return (this->*handler)();
}

void frmList::Undo() {
    std::int32_t index = Subt().Undo();
    if (index < 1 || index > RowCount())
        index = 1;
    if (!IsMark(index))
        m_rows->SetColour(index, RowColour::Plain);
    UnselectItem();
    SelectRow(index);
    ScrollTo(index);
    SetRow(index, QString::fromStdString(Subt().Text(index)), Subt().StartTime(index),
           RoundTime(Subt().EndTime(index) - Subt().StartTime(index)));
    TitlesChanged();
}

void frmList::Edit() {
    if (SelectedItem() > 0)
        OpenEdit();
}

void frmList::OpenEdit() {
    (new frmEdit(*this, this))->exec();
}

void frmList::OpenStretch() {
    (new frmStretch(*this, this))->exec();
}

void frmList::OpenShift() {
    (new frmShift(*this, this))->exec();
}

void frmList::Stretch() {
    OpenStretch();
    session().SubtitlesChanged = true;
}

void frmList::Shift() {
    OpenShift();
    session().SubtitlesChanged = true;
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
    session().SubtitlesChanged = true;
    // Each title in turn takes the player along; only where it ends up is seen.
    m_host.MediaPosition(Subt().StartTime(moved.back()));
    TitlesChanged();
}

void frmList::Sooner() {
    MoveTitles(ShowSooner);
}

void frmList::Later() {
    MoveTitles([](SUBTITLES& titles, std::int32_t row) {
        ShowLater(titles, row);
        return true;
    });
}

void frmList::ChangeDuration(bool (*change)(SUBTITLES&, std::int32_t)) {
    const std::int32_t row = SelectedItem();
    if (row == 0)
        return;
    // Only a duration that met its limit counts as a change of the document.
    if (change(Subt(), row))
        session().SubtitlesChanged = true;
    m_rows->SetDuration(row, RoundTime(Subt().EndTime(row) - Subt().StartTime(row)));
    ShowEdited(row);
    m_rows->Show(row, row);
    TitlesChanged();
}

void frmList::Shorter() {
    ChangeDuration(ShowShorter);
}

void frmList::Longer() {
    ChangeDuration(ShowLonger);
}

void frmList::Insert() {
    const std::int32_t row = SelectedItem();
    if (row == 0)
        return;
    UncolourMarks();
    const InsertedTitle title = InsertBefore(Subt(), row);
    m_rows->Insert(row, "New Title", title.start, title.duration);
    ShowEdited(row);
    session().SubtitlesChanged = true;
    MarkEnds();
    UpdateDelete();
    TitlesChanged();
}

void frmList::Delete() {
    UncolourMarks();
    const std::vector<std::int32_t> selected = SelectedRows();
    const std::vector<std::int32_t> deleted = DeleteTitles(Subt(), selected);
    RemoveRows(deleted, selected.size() > deleted.size());
    UpdateDelete();
    session().SubtitlesChanged = true;
    MarkEnds();
    if (!deleted.empty())
        TitlesChanged();
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
    TitlesChanged();
}

void frmList::CorrectSpelling() {
    ShowCorrected(::CorrectSpelling(Subt()));
}

void frmList::ConvertItalics() {
    ShowCorrected(::ConvertItalics(Subt()));
}

void frmList::CorrectSpellingCommand() {
    CorrectSpelling();
    session().SubtitlesChanged = true;
}

void frmList::ConvertItalicsCommand() {
    ConvertItalics();
    session().SubtitlesChanged = true;
}

void frmList::Bye() {
    close();
}
