#include "mainwindow/soundlane.h"

#include "base/shorttext.h"
#include "dialogs/frmEdit.h"
#include "editing/listcommands.h"
#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "mainwindow/loosetitle.h"
#include "model/step.h"
#include "platform/errorgate.h"

#include <QAction>
#include <QMenu>
#include <QScopedValueRollback>

#include <map>
#include <string>
#include <utility>

// What the lane shows of the document, and what it changes in it.

namespace {

/// The words of a title as a block shows them: without tags, a line for each line.
/// A block shows no more.
constexpr ShownText InBlock{.lines = 8, .characters = 400};

QString BlockWords(const std::string& text) {
    QString words;
    bool tag = false;
    for (const QChar c : QString::fromStdString(ShortText(text, InBlock))) {
        if (c == QLatin1Char('<'))
            tag = true;
        if (!tag && c != QLatin1Char('\r'))
            words += c;
        if (c == QLatin1Char('>'))
            tag = false;
    }
    return words;
}

LaneTitles LanePlaces(const SUBTITLES& titles) {
    std::vector<double> starts;
    std::vector<double> ends;
    starts.reserve(static_cast<std::size_t>(titles.Count()));
    ends.reserve(static_cast<std::size_t>(titles.Count()));
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        starts.push_back(titles.StartTime(i));
        ends.push_back(titles.EndTime(i));
    }
    LaneTitles places;
    places.Assign(std::move(starts), std::move(ends));
    return places;
}

} // namespace

void SoundLane::MakeLane() {
    if (m_lane)
        return;
    m_lane = new Lane(*m_state.player, m_window);
    m_lane->hide();
    m_current.start();
    m_lane->Follow(m_follow);
    m_lane->Words(
        [this](std::int32_t title) { return BlockWords(m_state.document.Subt.Text(title)); });
    m_lane->Sound(m_map);
    TakeTitles();
    TakeMarks();
    ShowCurrent();
    Lane* const lane = m_lane;
    const auto on = [this, lane](auto signal, auto handler) {
        connect(lane, signal, this, [this, handler](auto&&... arguments) {
            Guarded([&] { (this->*handler)(arguments...); });
        });
    };
    Player& player = *m_state.player;
    connect(lane, &Lane::PositionWanted, &player,
            [&player](double seconds) { player.CurrentPosition(seconds); });
    connect(lane, &Lane::ScrubWanted, &player,
            [&player](double seconds) { player.Scrub(seconds); });
    on(&Lane::TimesWanted, &SoundLane::SetTimes);
    on(&Lane::ChoiceChanged, &SoundLane::ChoiceChanged);
    on(&Lane::EditWanted, &SoundLane::Edit);
    on(&Lane::InsertWanted, &SoundLane::Insert);
    on(&Lane::MenuWanted, &SoundLane::ShowMenu);
    on(&Lane::HeightWanted, &SoundLane::GrowBy);
}

void SoundLane::Document_Change(const Change& change) {
    if (!m_lane)
        return;
    switch (change.kind) {
    case Change::Kind::Times:
        return TakeTimes(change);
    case Change::Kind::Text:
        TakeTimes(change);
        return m_lane->WordsChanged();
    case Change::Kind::Inserted:
    case Change::Kind::Deleted:
    case Change::Kind::Replaced:
        return TakeTitles();
    case Change::Kind::Marks:
        return TakeMarks();
    case Change::Kind::Saved:
        return;
    }
}

void SoundLane::TakeTitles() {
    m_lane->Titles(LanePlaces(m_state.document.Subt));
    TakeListSelection();
}

void SoundLane::Propose(const SUBTITLES* titles) {
    if (m_lane)
        m_lane->Propose(titles == nullptr ? LaneTitles() : LanePlaces(*titles));
}

void SoundLane::TakeTimes(const Change& change) {
    const SUBTITLES& titles = m_state.document.Subt;
    std::vector<LaneTimes> changed;
    for (std::int32_t i = change.first; i <= change.last; ++i)
        changed.push_back({i, titles.StartTime(i), titles.EndTime(i)});
    m_lane->ChangeTimes(changed);
}

void SoundLane::TakeMarks() {
    m_lane->Marks(m_state.document.BlueMark(), m_state.document.GreenMark());
}

void SoundLane::ShowCurrent() {
    if (!m_lane)
        return;
    m_lane->Current(m_host.shownTitle());
    m_lane->Selection(m_state.player->SelectionStart(), m_state.player->SelectionEnd());
    frmList* list = m_state.OpenList();
    if (list == m_listHeard)
        return;
    m_listHeard = list;
    if (list != nullptr)
        connect(list, &frmList::Selected, this, &SoundLane::TakeListSelection);
    TakeListSelection();
}

void SoundLane::TakeListSelection() {
    const frmList* list = m_state.OpenList();
    if (list == nullptr || !m_lane || m_choosing)
        return;
    const QScopedValueRollback choosing(m_choosing, true);
    m_lane->Choose(list->SelectedRows());
}

void SoundLane::ChoiceChanged(const std::vector<std::int32_t>& titles) {
    frmList* list = m_state.OpenList();
    if (list == nullptr || m_choosing)
        return;
    const QScopedValueRollback choosing(m_choosing, true);
    list->SelectTitles(titles);
}

void SoundLane::Placing(std::optional<double> since) {
    if (m_lane)
        m_lane->Placing(since);
}

/// A drag of one title is one entry of the undo history; before one of several
/// the titles are kept, to go back to.
void SoundLane::SetTimes(const std::vector<LaneTimes>& titles) {
    SUBTITLES& subtitles = m_state.document.Subt;
    m_state.document.SubtitlesChanged = true;
    const Step step(subtitles, titles.size() > 1 ? StepName("Move titles") : StepName());
    for (const LaneTimes& one : titles) {
        const double was = subtitles.StartTime(one.title);
        subtitles.SetTimes(one.title, one.start, one.end);
        if (was != one.start)
            m_state.document.Placed(one.title, was);
    }
}

void SoundLane::Edit(std::int32_t title) {
    if (frmList* list = m_state.OpenList()) {
        list->SelectTitles(std::vector{title});
        list->DoCommand(QStringLiteral("Edit"));
        return;
    }
    LooseTitle loose(m_state.document, title, m_window);
    (new frmEdit(loose, m_window))->exec();
}

void SoundLane::Insert(double seconds) {
    m_state.document.SubtitlesChanged = true;
    const std::int32_t title = InsertAt(m_state.document.Subt, seconds);
    const std::vector chosen{title};
    m_lane->Choose(chosen);
    ChoiceChanged(chosen);
    Edit(title);
}

void SoundLane::ShowMenu(std::int32_t title, double seconds, const QPoint& place) {
    auto* menu = new QMenu(m_window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("laneMenu"));
    if (title != 0) {
        AddListCommands(*menu, title);
        menu->addSeparator();
    }
    QAction* insert = menu->addAction(tr("Insert a title here"));
    insert->setObjectName(QStringLiteral("laneInsert"));
    connect(insert, &QAction::triggered, this,
            [this, seconds] { Guarded([&] { Insert(seconds); }); });
    QAction* page = menu->addAction(tr("Follow by page"));
    page->setObjectName(QStringLiteral("laneByPage"));
    page->setCheckable(true);
    page->setChecked(m_follow == LaneView::Follow::ByPage);
    connect(page, &QAction::toggled, this, [this](bool byPage) {
        m_follow = byPage ? LaneView::Follow::ByPage : LaneView::Follow::Smooth;
        m_lane->Follow(m_follow);
    });
    menu->popup(place);
}

/// The list editor's own entries while it is open; else the same, and choosing one
/// opens it.
void SoundLane::AddListCommands(QMenu& menu, std::int32_t title) {
    if (frmList* list = m_state.OpenList()) {
        if (m_lane->Chosen().empty())
            list->SelectTitles(std::vector{title});
        menu.addActions(list->LV->actions());
        return;
    }
    for (const ListMenu part : {ListMenu::Edit, ListMenu::Timing}) {
        std::map<int, const ListCommand*> entries;
        for (const ListCommand& command : frmList::Commands())
            if (command.menu == part && command.needs != Needs::UndoSteps)
                entries[command.place] = &command;
        for (const auto& [place, command] : entries) {
            const QString name = QString::fromLatin1(command->entry);
            QAction* action = menu.addAction(QString::fromLatin1(command->entryCaption));
            action->setObjectName(name);
            connect(action, &QAction::triggered, this,
                    [this, name] { Guarded([&] { RunInList(name); }); });
        }
    }
}

void SoundLane::RunInList(const QString& entry) {
    const std::vector<std::int32_t> chosen = m_lane->Chosen();
    m_host.openList();
    frmList* list = m_state.OpenList();
    if (list == nullptr)
        return;
    list->SelectTitles(chosen);
    ShowCurrent();
    if (auto* action = list->findChild<QAction*>(entry))
        action->trigger();
}
