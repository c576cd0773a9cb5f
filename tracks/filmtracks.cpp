#include "tracks/filmtracks.h"

#include "tracks/trackdocument.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

class FilmTracks::Work {
  public:
    explicit Work(std::filesystem::path film)
        : m_film(std::move(film))
        , m_thread([this](const std::stop_token& stop) { Run(stop); }) {}

    State Now() const {
        const std::lock_guard lock(m_mutex);
        return m_state;
    }
    double Done() const { return m_done; }
    std::vector<Track> Tracks() const {
        const std::lock_guard lock(m_mutex);
        return m_tracks;
    }
    void Wait() const {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [this] { return Ended(); });
    }
    bool Load(std::size_t track, const std::string& codePage, SUBTITLES& titles,
              FileStyle& style) const {
        const std::lock_guard lock(m_mutex);
        if (m_state != State::Complete || track >= m_tracks.size() ||
            m_tracks[track].format == nullptr)
            return false;
        SUBTITLES fresh;
        FileStyle freshStyle;
        TitlesOfTrack(m_packets[track], codePage, fresh, freshStyle);
        fresh.UndoEnabled(true);
        titles.Replace(std::move(fresh));
        style = std::move(freshStyle);
        return true;
    }

  private:
    bool Ended() const { return m_state == State::Complete || m_state == State::NoFilm; }

    void Run(const std::stop_token& stop) {
        const std::optional<MediaFile> film = MediaFile::Read(m_film, stop);
        if (film)
            ReadTracks(film->textTracks, stop);
        const std::lock_guard lock(m_mutex);
        m_state = film ? State::Complete : State::NoFilm;
        m_ended.notify_all();
    }

    void ReadTracks(const std::vector<TextTrack>& tracks, const std::stop_token& stop) {
        std::vector<int> wanted;
        std::map<int, std::size_t> places;
        {
            const std::lock_guard lock(m_mutex);
            for (const TextTrack& about : tracks) {
                const Format* format = FormatOfTrack(about.codec);
                if (format != nullptr)
                    wanted.push_back(about.index);
                places[about.index] = m_tracks.size();
                m_tracks.push_back({about, TrackKind(about.codec), format, 0});
                m_packets.push_back({about.codec, {}, {}});
            }
            m_state = State::Reading;
        }
        const auto reader = TextTrackReader::Open(m_film, wanted, stop);
        if (reader == nullptr)
            return;
        reader->OnProgress([this](double done) { m_done = done; });
        for (const int index : wanted)
            m_packets[places[index]].head = reader->CodecPrivate(index);
        TextPacket packet;
        while (reader->Read(packet)) {
            const std::size_t place = places[packet.track];
            const std::int32_t titles = TitlesIn(m_packets[place].codec, packet);
            const std::lock_guard lock(m_mutex);
            m_tracks[place].titles += titles;
            m_packets[place].packets.push_back(std::move(packet));
        }
        m_done = 1;
    }

    const std::filesystem::path m_film;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_ended;
    std::atomic<double> m_done = 0;
    State m_state = State::Opening;
    std::vector<Track> m_tracks;
    /// Of the thread at work, until the state is `Complete`.
    std::vector<TrackPackets> m_packets;
    // The last: it uses the others.
    std::jthread m_thread;
};

FilmTracks::FilmTracks(std::filesystem::path film)
    : m_work(std::make_unique<Work>(std::move(film))) {}

FilmTracks::~FilmTracks() = default;

FilmTracks::State FilmTracks::Now() const {
    return m_work->Now();
}

double FilmTracks::Done() const {
    return m_work->Done();
}

std::vector<FilmTracks::Track> FilmTracks::Tracks() const {
    return m_work->Tracks();
}

void FilmTracks::Wait() const {
    m_work->Wait();
}

bool FilmTracks::Load(std::size_t track, const std::string& codePage, SUBTITLES& titles,
                      FileStyle& style) const {
    return m_work->Load(track, codePage, titles, style);
}
