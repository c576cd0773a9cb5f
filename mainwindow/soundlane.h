#pragma once

#include "lane/lane.h"
#include "mainwindow/mainstate.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class MediaPlayerControl;
class SoundMap;
class SoundMapper;
class QMenu;
class frmList;

/// The lane in the main window: ties it to the document, the player and the list editor, and
/// has the film's sound mapped. The lane itself is made for the first film that has sound.
class SoundLane : public QObject {
    Q_OBJECT

  public:
    /// What the main window does for it.
    struct Host {
        /// Loads the list editor, if it is not.
        std::function<void()> openList;
        std::function<std::int32_t()> shownTitle;
    };

    SoundLane(MainState& state, MediaPlayerControl& control, Host host, QWidget* window);
    ~SoundLane() override;

    /// Lays the lane out at the bottom of the room of the picture and the lane, in the window.
    /// What the picture keeps is returned; where both do not fit, that is all of it.
    int LayOut(int width, int room);
    /// Shows the lane where it was hidden, and hides it where it was shown.
    void Toggle();
    /// A title is being placed by key since this time; nothing: none is any more.
    void Placing(std::optional<double> since);
    void WriteSettings() const;
    /// Shows outlines where these titles lie, as many as the document has; null: none any more.
    void Propose(const SUBTITLES* titles);
    /// The sound is mapped even while nobody looks at the lane.
    void MapAlways();
    /// The film can be heard.
    bool Audible() const { return Offered(); }
    /// What maps the sound of the film; null while nothing does.
    std::shared_ptr<SoundMapper> Mapper() const { return m_mapper; }
    /// As far as it is known; null: nothing of it is.
    std::shared_ptr<const SoundMap> Map() const { return m_map; }

  signals:
    /// The picture and the lane are to be laid out anew.
    void RoomChanged();
    /// Another film, another sound track, or none any more.
    void FilmChanged();
    /// All of the film's sound is known.
    void SoundMapped();

  private:
    bool Offered() const;
    void MakeLane();
    void TakeFilm();
    void MapSound();
    void LetMapperGo();
    void SoundArrived();
    void SoundChanged();
    void ShowButton();

    void Document_Change(const Change& change);
    void TakeTitles();
    void TakeTimes(const Change& change);
    void TakeMarks();
    void TakeListSelection();
    void ShowCurrent();

    void SetTimes(const std::vector<LaneTimes>& titles);
    void ChoiceChanged(const std::vector<std::int32_t>& titles);
    void Edit(std::int32_t title);
    void Insert(double seconds);
    void ShowMenu(std::int32_t title, double seconds, const QPoint& place);
    void AddListCommands(QMenu& menu, std::int32_t title);
    void RunInList(const QString& entry);
    void GrowBy(int pixels);

    MainState& m_state;
    MediaPlayerControl& m_control;
    const Host m_host;
    QWidget* const m_window;
    bool m_wanted;
    bool m_alwaysMapped = false;
    int m_height;
    LaneView::Follow m_follow;
    Lane* m_lane = nullptr;
    Connection m_connection;
    /// Tells the lane of news, as long as there is one.
    struct Ear {
        std::mutex mutex;
        SoundLane* lane = nullptr;
    };
    std::shared_ptr<Ear> m_ear = std::make_shared<Ear>();
    std::shared_ptr<SoundMapper> m_mapper;
    std::shared_ptr<const SoundMap> m_map;
    /// The film and the track that the map is of.
    QString m_film;
    int m_track = -1;
    bool m_silent = true;
    bool m_mapped = false;
    std::atomic<bool> m_soundPosted = false;
    QTimer m_current;
    QPointer<frmList> m_listHeard;
    /// A selection is being taken over.
    bool m_choosing = false;
};
