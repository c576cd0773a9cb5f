#include "model/subtitles.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::int32_t GrowthStep = 100;

const std::string NoText;

/// Half of a number that is not negative, halves to even.
std::int32_t Half(std::int32_t number) {
    const std::int32_t half = number / 2;
    return half + (number & half & 1);
}

/// The events are for observers only; either may be unset.
template <typename EVENT, typename... ARGUMENTS>
void Raise(const EVENT& event, ARGUMENTS... arguments) {
    if (event)
        event(arguments...);
}

} // namespace

void SUBTITLES::Clear() {
    ++m_changes;
    m_titles.clear();
    m_titles.shrink_to_fit();
    m_upperBound = 0;
}

void SUBTITLES::Reserve(std::int32_t count) {
    m_titles.reserve(static_cast<std::size_t>(std::max(count, 0)));
}

void SUBTITLES::Add(double start, double end, std::string text) {
    ++m_changes;
    if (Count() >= m_upperBound)
        m_upperBound += GrowthStep;
    m_titles.push_back({start, end, std::move(text)});
}

double SUBTITLES::SearchStart(std::int32_t index) const {
    if (index < 1)
        return -std::numeric_limits<double>::infinity();
    return index > Count() ? std::numeric_limits<double>::infinity() : At(index).start;
}

std::int32_t SUBTITLES::Locate(double time) const {
    const std::int32_t count = Count();
    if (count <= 1)
        return count;
    if (time <= At(1).start)
        return 1;
    if (time >= At(count - 1).end)
        return count;

    // Halving steps, then single ones. A sorted list is settled in about
    // 2 log2(count) rounds; only an unsorted one can make the search circle.
    constexpr int Rounds = 128;
    std::int32_t p = Half(count);
    std::int32_t step = p;
    for (int round = 0; round < Rounds; ++round) {
        step = std::max(Half(step), 1);
        if (SearchStart(p - 1) <= time) {
            if (SearchStart(p) < time)
                p = std::min(p + step, count + 1);
        } else {
            p = std::max(p - step, 1);
        }
        if (SearchStart(p - 1) <= time && SearchStart(p) >= time)
            return std::min(p, count);
    }
    const auto found =
        std::lower_bound(m_titles.begin(), m_titles.end(), time,
                         [](const Title& title, double moment) { return title.start < moment; });
    return std::min(static_cast<std::int32_t>(found - m_titles.begin()) + 1, count);
}

void SUBTITLES::SetTimes(std::int32_t index, double start, double end) {
    if (!Holds(index))
        return;
    Record(UndoHistory::Kind::Changed, index);
    At(index).start = start;
    At(index).end = end;
}

double SUBTITLES::StartTime(std::int32_t index) const {
    return Holds(index) ? At(index).start : 0.0;
}

void SUBTITLES::StartTime(std::int32_t index, double value) {
    if (!Holds(index))
        return;
    Record(UndoHistory::Kind::Changed, index);
    At(index).start = value;
}

double SUBTITLES::EndTime(std::int32_t index) const {
    return Holds(index) ? At(index).end : 0.0;
}

void SUBTITLES::EndTime(std::int32_t index, double value) {
    if (!Holds(index))
        return;
    Record(UndoHistory::Kind::Changed, index);
    At(index).end = value;
}

const std::string& SUBTITLES::Text(std::int32_t index) const {
    return Holds(index) ? At(index).text : NoText;
}

void SUBTITLES::Text(std::int32_t index, std::string value) {
    if (!Holds(index))
        return;
    Record(UndoHistory::Kind::Changed, index);
    At(index).text = std::move(value);
}

void SUBTITLES::Delete(std::int32_t index) {
    if (!Holds(index))
        return;
    Record(UndoHistory::Kind::Deleted, index);
    m_titles.erase(m_titles.begin() + (index - 1));
}

void SUBTITLES::DeleteAll(const std::vector<std::int32_t>& indexes) {
    ++m_changes;
    std::size_t kept = 0;
    std::int32_t deleted = 0;
    auto next = indexes.begin();
    for (std::int32_t index = 1; index <= Count(); ++index) {
        Title& title = At(index);
        next = std::find_if(next, indexes.end(), [&](std::int32_t i) { return i >= index; });
        if (next != indexes.end() && *next == index) {
            // One by one, each title would have moved down by those before it.
            if (m_undoEnabled && !m_undoing) {
                if (m_history.Empty())
                    Raise(UndoPossible, true);
                m_history.Push({UndoHistory::Kind::Deleted, index - deleted, title.start, title.end,
                                std::move(title.text)});
            }
            ++deleted;
            continue;
        }
        if (deleted > 0)
            m_titles[kept] = std::move(title);
        ++kept;
    }
    m_titles.resize(kept);
}

void SUBTITLES::Insert(std::int32_t index, double start, double end, std::string text) {
    if (index < 1 || index > Count() + 1)
        return;
    Record(UndoHistory::Kind::Inserted, index);
    if (Count() >= m_upperBound)
        m_upperBound += GrowthStep;
    m_titles.insert(m_titles.begin() + (index - 1), {start, end, std::move(text)});
}

void SUBTITLES::Record(UndoHistory::Kind kind, std::int32_t index) {
    ++m_changes;
    if (!m_undoEnabled || m_undoing)
        return;
    if (m_history.Empty())
        Raise(UndoPossible, true);
    if (kind == UndoHistory::Kind::Inserted)
        m_history.Push({kind, index, 0, 0, {}});
    else
        m_history.Push({kind, index, At(index).start, At(index).end, At(index).text});
}

std::int32_t SUBTITLES::Undo() {
    if (m_history.Empty())
        return 0;
    ++m_changes;
    const UndoHistory::Record record = m_history.Newest();
    if (record.kind == UndoHistory::Kind::Changed) {
        if (Holds(record.title))
            At(record.title) = {record.start, record.end, record.text};
    } else {
        m_undoing = true;
        if (record.kind == UndoHistory::Kind::Inserted)
            Delete(record.title);
        else
            Insert(record.title, record.start, record.end, record.text);
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

void SUBTITLES::RestoreHistory(std::vector<UndoHistory::Record> records) {
    ClearUndo();
    if (!records.empty())
        Raise(UndoPossible, true);
    ++m_changes;
    for (UndoHistory::Record& record : records)
        m_history.Push(std::move(record));
}
