#pragma once

#include "model/draft.h"
#include "model/filestyle.h"
#include "model/knownstarts.h"
#include "model/subtitles.h"
#include "model/times.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct Version;
class Versions;

/// Ends a subscription when it goes. It may outlive the document.
class Connection {
  public:
    Connection() = default;
    explicit Connection(std::shared_ptr<void> held)
        : m_held(std::move(held)) {}

  private:
    std::shared_ptr<void> m_held;
};

/// The document at hand, and what all windows share about it. The main window owns it;
/// the list editor and the dialogs reach it by reference.
class Document : private TitlesWatcher {
  public:
    using Observer = std::function<void(const Change&)>;

    Document();
    ~Document() override;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    SUBTITLES Subt;
    /// What the titles' file is made of beside them.
    FileStyle Style;
    /// As the file boxes show them (UTF-8).
    std::string MediaFile;
    std::string SubtitleFile;
    /// The titles were changed since the last load or save.
    bool SubtitlesChanged = false;
    /// The list editor is loaded.
    bool ListWindowOpen = false;
    /// The find dialog is loaded.
    bool FindOpen = false;
    /// Frames per second of MicroDVD files; greater than 0.
    double FrameRate = DefaultFrameRate;

    /// Two media positions in seconds, the new starts of the marked titles.
    double BlueMark() const { return m_blueMark; }
    void BlueMark(double position);
    double GreenMark() const { return m_greenMark; }
    void GreenMark(double position);
    /// Puts both where nobody has set them.
    void Marks(double blue, double green);
    /// The mark lies where somebody has set it, be it where it was already.
    bool BlueMarkSet() const { return m_blueMarkSet; }
    bool GreenMarkSet() const { return m_greenMarkSet; }

    /// Another document takes this one's place: its titles follow, best within the same
    /// step. Those who asked for it hear of it while the titles are still the old ones.
    void BeginOther();
    [[nodiscard]] Connection BeforeOther(std::function<void()> observer);
    /// How often another document has taken the place.
    std::uint32_t Number() const { return m_number; }

    /// The title starts where a person has put it, by key or by hand; before, it started
    /// at `was`.
    void Placed(std::int32_t title, double was) { m_placed.Add(Subt, title, was); }
    /// Those that were put there since the document began, and start there still.
    const std::vector<KnownStarts::Known>& PlacedTitles() const { return m_placed.All(); }

    /// Tells the observers that the titles are those of a file now.
    void Saved();

    /// What the document was before the latest steps with a name.
    const Versions& Earlier() const { return *m_earlier; }
    /// For whoever brings the versions of a recovered document back.
    Versions& Earlier() { return *m_earlier; }
    /// For a step that moves what a person has just recorded: keeps the titles with these
    /// times of title `title`, as they were recorded, as a version before `step`. Steps of one
    /// series share the version, which has what was recorded in all of them.
    void KeepRecorded(const std::string& step, std::int32_t title, double start, double end);
    /// Puts the version of that age (0: the newest) in place of the titles, their style
    /// and the name of their file. What they were is kept as a version, the undo history
    /// is emptied, and the titles count as changed. Without such a version nothing happens.
    void GoBack(std::size_t age);

    /// What is being typed for a title and not confirmed; nothing when it was confirmed or
    /// given up. Until somebody types again, what an earlier run left counts.
    const std::optional<Draft>& Typed() const { return m_typed ? m_typed : m_left; }
    void Typing(std::optional<Draft> draft);
    /// What an earlier run left typed.
    void LeftTyped(std::optional<Draft> draft) { m_left = std::move(draft); }
    /// Hands that out, once, if it belongs to the title and the title's text is still the
    /// one that it was typed over.
    std::optional<Draft> TakeLeft(std::int32_t title);
    [[nodiscard]] Connection WhileTyping(std::function<void()> observer);

    /// The observer hears of each step's change of the titles once, when the step is
    /// over; of marks and of a save after that. It may change the titles, subscribe and
    /// unsubscribe, but not throw.
    [[nodiscard]] Connection Subscribe(Observer observer);

  private:
    void Changing(const StepName& step, std::int32_t first) override;
    void StepEnded(const std::optional<Change>& change) override;
    template <typename OBSERVER>
    using Observers = std::vector<std::weak_ptr<const OBSERVER>>;
    template <typename OBSERVER>
    static Connection Add(Observers<OBSERVER>& observers, OBSERVER observer);
    template <typename OBSERVER, typename... ARGUMENTS>
    static void Call(Observers<OBSERVER>& observers, const ARGUMENTS&... arguments);
    Version About(const std::string& step) const;
    /// At once, or at the end of the step.
    void Tell(Change::Kind kind, bool& waits);
    double m_blueMark = 0;
    double m_greenMark = 0;
    bool m_blueMarkSet = false;
    bool m_greenMarkSet = false;
    std::unique_ptr<Versions> m_earlier;
    /// The title that the series at work has come to; 0 when there is none.
    std::int32_t m_seriesTitle = 0;
    /// The newest version has what was recorded in the series at work.
    bool m_recordedKept = false;
    KnownStarts m_placed;
    bool m_marksWait = false;
    bool m_savedWaits = false;
    std::uint32_t m_number = 0;
    /// Of the file that the titles came from; the box may name the next one already.
    std::string m_file;
    bool m_fileFollows = false;
    Observers<Observer> m_observers;
    std::optional<Draft> m_typed;
    std::optional<Draft> m_left;
    Observers<std::function<void()>> m_beforeOther;
    Observers<std::function<void()>> m_whileTyping;
};
