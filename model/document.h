#pragma once

#include "model/filestyle.h"
#include "model/subtitles.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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
    double FrameRate = 25;

    /// Two media positions in seconds, the new starts of the marked titles.
    double BlueMark() const { return m_blueMark; }
    void BlueMark(double position) { Marks(position, m_greenMark); }
    double GreenMark() const { return m_greenMark; }
    void GreenMark(double position) { Marks(m_blueMark, position); }
    void Marks(double blue, double green);

    /// Tells the observers that the titles are those of a file now.
    void Saved();

    /// The observer hears of each step's change of the titles once, when the step is
    /// over; of marks and of a save after that. It may change the titles, subscribe and
    /// unsubscribe, but not throw.
    [[nodiscard]] Connection Subscribe(Observer observer);

  private:
    void Changing(const std::string& step) override;
    void StepEnded(const std::optional<Change>& change) override;
    /// At once, or at the end of the step.
    void Tell(Change::Kind kind, bool& waits);
    void Notify(const Change& change);

    double m_blueMark = 0;
    double m_greenMark = 0;
    bool m_marksWait = false;
    bool m_savedWaits = false;
    std::vector<std::weak_ptr<const Observer>> m_observers;
};
