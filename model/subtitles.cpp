#include "model/subtitles.h"

#include "base/largeblocks.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int32_t GrowthStep = 100;

const std::string NoText;

/// The events are for observers only; either may be unset.
template <typename EVENT, typename... ARGUMENTS>
void Raise(const EVENT& event, ARGUMENTS... arguments) {
    if (event)
        event(arguments...);
}

} // namespace

/// One change, and so a step of its own unless a `Step` is open. Costs a list that
/// nobody watches next to nothing.
class SUBTITLES::Scope {
  public:
    Scope(SUBTITLES& titles, Change::Kind kind, std::int32_t first, std::int32_t last)
        : Scope(titles) {
        if (m_watched)
            titles.Touch(kind, first, last);
    }
    explicit Scope(SUBTITLES& titles)
        : m_titles(titles)
        , m_watched(titles.m_watch.watcher != nullptr) {
        ++titles.m_changes;
        if (m_watched)
            ++titles.m_watch.depth;
    }
    ~Scope() {
        if (m_watched)
            m_titles.EndStep();
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

  private:
    SUBTITLES& m_titles;
    const bool m_watched;
};

void SUBTITLES::BeginStep(StepName name) {
    ++m_watch.depth;
    if (m_watch.step.text.empty() && !m_watch.pending)
        m_watch.step = std::move(name);
}

void SUBTITLES::EndStep() {
    if (--m_watch.depth > 0)
        return;
    std::optional<Change> change = std::exchange(m_watch.pending, std::nullopt);
    m_watch.step = {};
    if (change && change->kind == Change::Kind::Replaced)
        change->last = Count();
    if (m_watch.watcher != nullptr)
        m_watch.watcher->StepEnded(change);
}

void SUBTITLES::Touch(Change::Kind kind, std::int32_t first, std::int32_t last) {
    const Change change{kind, first, last};
    if (m_watch.pending) {
        m_watch.pending = Merged(*m_watch.pending, change);
        return;
    }
    m_watch.watcher->Changing(m_watch.step, first);
    m_watch.pending = change;
}

void SUBTITLES::Clear() {
    const Scope scope(*this, Change::Kind::Replaced, 1, 0);
    m_starts = {};
    m_ends = {};
    m_texts = {};
    m_extras.Clear();
    m_upperBound = 0;
}

void SUBTITLES::Reserve(std::int32_t count) {
    const auto room = static_cast<std::size_t>(std::max(count, 0));
    const auto reserve = [room](auto& values) {
        values.reserve(room);
        AdviseLargePages(values.data(), values.capacity() * sizeof(values[0]));
    };
    reserve(m_starts);
    reserve(m_ends);
    reserve(m_texts);
}

void SUBTITLES::Add(double start, double end, std::string text, TitleExtra extra) {
    const Scope scope(*this, Change::Kind::Inserted, Count() + 1, Count() + 1);
    if (Count() >= m_upperBound)
        m_upperBound += GrowthStep;
    m_extras.Insert(m_starts.size(), std::move(extra));
    m_starts.push_back(start);
    m_ends.push_back(end);
    m_texts.push_back(std::move(text));
}

std::int32_t SUBTITLES::Locate(double time) const {
    const std::int32_t count = Count();
    if (count <= 1)
        return count;
    if (time <= m_starts.front())
        return 1;
    if (time >= m_ends[Place(count - 1)])
        return count;
    const auto found = std::lower_bound(m_starts.begin(), m_starts.end(), time);
    return std::min(static_cast<std::int32_t>(found - m_starts.begin()) + 1, count);
}

void SUBTITLES::SetTimes(std::int32_t index, double start, double end) {
    if (!Holds(index))
        return;
    const Scope scope(*this, Change::Kind::Times, index, index);
    Record(UndoHistory::Kind::Changed, index);
    m_starts[Place(index)] = start;
    m_ends[Place(index)] = end;
}

double SUBTITLES::StartTime(std::int32_t index) const {
    return Holds(index) ? m_starts[Place(index)] : 0.0;
}

void SUBTITLES::StartTime(std::int32_t index, double value) {
    if (!Holds(index))
        return;
    const Scope scope(*this, Change::Kind::Times, index, index);
    Record(UndoHistory::Kind::Changed, index);
    m_starts[Place(index)] = value;
}

double SUBTITLES::EndTime(std::int32_t index) const {
    return Holds(index) ? m_ends[Place(index)] : 0.0;
}

void SUBTITLES::EndTime(std::int32_t index, double value) {
    if (!Holds(index))
        return;
    const Scope scope(*this, Change::Kind::Times, index, index);
    Record(UndoHistory::Kind::Changed, index);
    m_ends[Place(index)] = value;
}

const std::string& SUBTITLES::Text(std::int32_t index) const {
    return Holds(index) ? m_texts[Place(index)] : NoText;
}

void SUBTITLES::Text(std::int32_t index, std::string value) {
    if (!Holds(index))
        return;
    const Scope scope(*this, Change::Kind::Text, index, index);
    Record(UndoHistory::Kind::Changed, index);
    m_texts[Place(index)] = std::move(value);
}

const TitleExtra& SUBTITLES::Extra(std::int32_t index) const {
    // No title stands at the place that comes of an index out of range.
    return m_extras.At(Holds(index) ? Place(index) : m_starts.size());
}

void SUBTITLES::Extra(std::int32_t index, TitleExtra value) {
    if (!Holds(index))
        return;
    const Scope scope(*this, Change::Kind::Text, index, index);
    Record(UndoHistory::Kind::Changed, index);
    m_extras.Put(Place(index), std::move(value));
}

void SUBTITLES::Delete(std::int32_t index) {
    if (!Holds(index))
        return;
    const Scope scope(*this, Change::Kind::Deleted, index, index);
    Record(UndoHistory::Kind::Deleted, index);
    m_starts.erase(m_starts.begin() + (index - 1));
    m_ends.erase(m_ends.begin() + (index - 1));
    m_texts.erase(m_texts.begin() + (index - 1));
    m_extras.Erase(Place(index));
}

void SUBTITLES::DeleteAll(const std::vector<std::int32_t>& indexes) {
    const auto first = std::lower_bound(indexes.begin(), indexes.end(), 1);
    const auto past = std::upper_bound(first, indexes.end(), Count());
    if (first == past)
        return;
    const std::int32_t last = *std::prev(past);
    const bool unbroken = last - *first == past - first - 1;
    const Scope scope(*this, unbroken ? Change::Kind::Deleted : Change::Kind::Replaced, *first,
                      last);
    std::size_t kept = 0;
    std::int32_t deleted = 0;
    auto next = indexes.begin();
    for (std::int32_t index = 1; index <= Count(); ++index) {
        const std::size_t place = Place(index);
        next = std::find_if(next, indexes.end(), [&](std::int32_t i) { return i >= index; });
        if (next != indexes.end() && *next == index) {
            // One by one, each title would have moved down by those before it.
            if (Records())
                Push({UndoHistory::Kind::Deleted, index - deleted, m_starts[place], m_ends[place],
                      std::move(m_texts[place]), m_extras.At(place)});
            ++deleted;
            continue;
        }
        if (deleted > 0) {
            m_starts[kept] = m_starts[place];
            m_ends[kept] = m_ends[place];
            m_texts[kept] = std::move(m_texts[place]);
            m_extras.Move(place, kept);
        }
        ++kept;
    }
    m_starts.resize(kept);
    m_ends.resize(kept);
    m_texts.resize(kept);
    m_extras.Truncate(kept);
}

void SUBTITLES::Insert(std::int32_t index, double start, double end, std::string text,
                       TitleExtra extra) {
    if (index < 1 || index > Count() + 1)
        return;
    const Scope scope(*this, Change::Kind::Inserted, index, index);
    Record(UndoHistory::Kind::Inserted, index);
    if (Count() >= m_upperBound)
        m_upperBound += GrowthStep;
    m_starts.insert(m_starts.begin() + (index - 1), start);
    m_ends.insert(m_ends.begin() + (index - 1), end);
    m_texts.insert(m_texts.begin() + (index - 1), std::move(text));
    m_extras.Insert(Place(index), std::move(extra));
}

bool SUBTITLES::Records() const {
    return m_undoEnabled && !m_undoing && m_watch.recording != Recording::Off;
}

void SUBTITLES::Push(UndoHistory::Record record) {
    if (m_history.Empty())
        Raise(UndoPossible, true);
    if (m_watch.recording == Recording::OnForOne)
        m_watch.recording = Recording::Off;
    m_history.Push(std::move(record));
}

void SUBTITLES::Record(UndoHistory::Kind kind, std::int32_t index) {
    if (!Records())
        return;
    if (kind == UndoHistory::Kind::Inserted)
        Push({kind, index, 0, 0, {}, {}});
    else
        Push({kind, index, m_starts[Place(index)], m_ends[Place(index)], m_texts[Place(index)],
              m_extras.At(Place(index))});
}

std::int32_t SUBTITLES::Undo() {
    if (m_history.Empty())
        return 0;
    const Scope scope(*this);
    const UndoHistory::Record record = m_history.Newest();
    if (record.kind == UndoHistory::Kind::Changed) {
        if (Holds(record.title)) {
            const Scope change(*this, Change::Kind::Text, record.title, record.title);
            m_starts[Place(record.title)] = record.start;
            m_ends[Place(record.title)] = record.end;
            m_texts[Place(record.title)] = record.text;
            m_extras.Put(Place(record.title), record.extra);
        }
    } else {
        m_undoing = true;
        if (record.kind == UndoHistory::Kind::Inserted)
            Delete(record.title);
        else
            Insert(record.title, record.start, record.end, record.text, record.extra);
        Raise(UndoChangedListLength);
        m_undoing = false;
    }
    m_history.Pop();
    if (m_history.Empty())
        Raise(UndoPossible, false);
    return record.title;
}

void SUBTITLES::ClearUndo() {
    if (m_history.Empty())
        return;
    ++m_changes;
    Raise(UndoPossible, false);
    m_history.Clear();
}

void SUBTITLES::Replace(SUBTITLES titles) {
    const Scope scope(*this, Change::Kind::Replaced, 1, 0);
    ClearUndo();
    m_starts = std::move(titles.m_starts);
    m_ends = std::move(titles.m_ends);
    m_texts = std::move(titles.m_texts);
    m_extras = std::move(titles.m_extras);
    m_upperBound = titles.m_upperBound;
    m_undoEnabled = titles.m_undoEnabled;
    if (!titles.m_history.Empty())
        Raise(UndoPossible, true);
    m_history = std::move(titles.m_history);
}

void SUBTITLES::RestoreHistory(std::vector<UndoHistory::Record> records) {
    ClearUndo();
    if (!records.empty())
        Raise(UndoPossible, true);
    ++m_changes;
    for (UndoHistory::Record& record : records)
        m_history.Push(std::move(record));
}
