#pragma once

#include "model/change.h"
#include "model/titleextra.h"
#include "model/undohistory.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Follows a list step by step (see model/step.h). The document is the one who does.
class TitlesWatcher {
  public:
    virtual ~TitlesWatcher() = default;

    /// The titles are about to change for the first time within that step, from title
    /// `first` on.
    virtual void Changing(const StepName& step, std::int32_t first) = 0;
    /// The outermost step has ended; nothing when no title was touched.
    virtual void StepEnded(const std::optional<Change>& change) = 0;
};

/// The subtitle document in memory: titles numbered from 1 to `Count`, each with
/// start and end (seconds) and text (UTF-8; lines joined by carriage return +
/// line feed; the tags <i>, </i>, <b>, </b>). An index outside 1..Count is no
/// error: getters answer 0 or "", setters do nothing.
///
/// The list does not sort itself; `Locate` expects ascending start times.
/// Every setter, `Delete` and `Insert` records one undo step while `UndoEnabled`.
class SUBTITLES {
  public:
    /// Raised after `Undo` took back an insertion or a deletion.
    std::function<void()> UndoChangedListLength;
    /// true: the first step is about to be recorded; false: none is left.
    std::function<void(bool)> UndoPossible;

    /// Empties the list. The undo history is left as it is: whoever starts a new
    /// document calls `ClearUndo` too.
    void Clear();
    /// Appends a title; never undoable. Makes room 100 titles at a time, as far
    /// as `UpperBound` tells; N calls cost O(N).
    void Add(double start, double end, std::string text, TitleExtra extra = {});
    /// Makes room for a document of about that many titles.
    void Reserve(std::int32_t count);
    std::int32_t UpperBound() const { return m_upperBound; }

    /// The first title that starts at or after the time, so a title's own start gives
    /// that title; at least 1 and at most `Count`, 0 on an empty list. Times at or past
    /// the end of the last title but one give the last title. Logarithmic; ends on
    /// unsorted lists too.
    std::int32_t Locate(double time) const;

    /// Both times in one undo step.
    void SetTimes(std::int32_t index, double start, double end);
    double StartTime(std::int32_t index) const;
    void StartTime(std::int32_t index, double value);
    double EndTime(std::int32_t index) const;
    void EndTime(std::int32_t index, double value);
    const std::string& Text(std::int32_t index) const;
    void Text(std::int32_t index, std::string value);
    /// Goes where its title goes; times and text change without it.
    const TitleExtra& Extra(std::int32_t index) const;
    void Extra(std::int32_t index, TitleExtra value);
    /// false: no title has any.
    bool HasExtras() const { return !m_extras.Empty(); }
    std::int32_t Count() const { return static_cast<std::int32_t>(m_starts.size()); }

    void Delete(std::int32_t index);
    /// Deletes all given titles in one pass, with the same undo steps as `Delete`
    /// called for each from the first to the last. The indexes ascend.
    void DeleteAll(const std::vector<std::int32_t>& indexes);
    /// 1 <= index <= Count + 1; otherwise nothing.
    void Insert(std::int32_t index, double start, double end, std::string text,
                TitleExtra extra = {});

    bool UndoEnabled() const { return m_undoEnabled; }
    void UndoEnabled(bool enabled) { m_undoEnabled = enabled; }
    /// Takes the newest step back, recording or not. Answers the number of the
    /// title it concerned, 0 when there is nothing to take back.
    std::int32_t Undo();
    std::int16_t UndoCount() const { return m_history.Count(); }
    void ClearUndo();

    const UndoHistory& History() const { return m_history; }
    /// Puts a stored history back, oldest record first in the vector.
    void RestoreHistory(std::vector<UndoHistory::Record> records);

    /// Takes over the titles, the history and the recording switch of another list. The
    /// events and the watcher stay.
    void Replace(SUBTITLES titles);

    /// Another number after every change of the titles or their history.
    std::uint64_t Changes() const { return m_changes; }

    /// At most one watcher, which lives as long as the list or takes itself away with
    /// null; not within a step. A list that is copied, moved or assigned to another one
    /// leaves its watcher where it is.
    void Watch(TitlesWatcher* watcher) { m_watch.watcher = watcher; }
    bool InStep() const { return m_watch.depth > 0; }

  private:
    friend class Step;
    class Scope;

    /// Whether the next change makes an undo record.
    enum class Recording : std::uint8_t { On, OnForOne, Off };

    /// What belongs to the place and not to the titles in it.
    struct Watching {
        Watching() = default;
        Watching(const Watching& /*other*/) {}
        Watching& operator=(const Watching& /*other*/) { return *this; } // NOLINT(bugprone-*)

        TitlesWatcher* watcher = nullptr;
        std::int32_t depth = 0;
        StepName step;
        std::optional<Change> pending;
        Recording recording = Recording::On;
    };

    void BeginStep(StepName name);
    void EndStep();
    void Touch(Change::Kind kind, std::int32_t first, std::int32_t last);
    bool Records() const;
    void Push(UndoHistory::Record record);
    bool Holds(std::int32_t index) const { return index >= 1 && index <= Count(); }
    static std::size_t Place(std::int32_t index) { return static_cast<std::size_t>(index - 1); }
    void Record(UndoHistory::Kind kind, std::int32_t index);

    // Three arrays, not one of titles: the search runs through the starts alone.
    std::vector<double> m_starts;
    std::vector<double> m_ends;
    std::vector<std::string> m_texts;
    ExtraColumn m_extras;
    std::int32_t m_upperBound = 0;
    UndoHistory m_history;
    std::uint64_t m_changes = 0;
    Watching m_watch;
    bool m_undoEnabled = false;
    bool m_undoing = false;
};
