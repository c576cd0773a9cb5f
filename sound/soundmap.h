#pragma once

#include "sound/soundpage.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// What sounds in one column of a drawing.
struct SoundColumn {
    /// Samples, -1 to 1.
    float least = 0;
    float greatest = 0;
    /// Mean power in decibels, `Silence` to 0 (a square wave of full scale).
    float loudness = Silence;
    /// The mean probability of speech, 0 to 1; 0 while it is not known yet.
    float speech = 0;
    /// false: the map has not grown to here yet, or the film does not.
    bool known = false;
};

/// From a start to an end, in seconds.
struct SpeechSpan {
    double start = 0;
    double end = 0;
};

/// A film's sound track at a glance: for each millisecond the least and the greatest
/// sample and the loudness, in levels for every zoom, and the probability of speech
/// at 100 Hz. Times are seconds on the player's clock, from 0 to the film's length.
///
/// The map grows while it is read: any number of threads may read it and any number
/// may add different pages to it, without locks.
class SoundMap {
  public:
    /// How many speech values a second has.
    static constexpr int SpeechRate = 100;
    /// From this probability on someone is taken to speak.
    static constexpr float SpeechThreshold = 0.5F;

    /// An empty map of a film of this length (seconds; below 0 is taken for 0, more
    /// than `LongestLength` for that).
    explicit SoundMap(double length);
    /// A whole map whose pages lie in `bytes`: all sound pages, then all speech
    /// pages. Nothing when the size does not fit the length.
    static std::shared_ptr<SoundMap> OfBytes(double length, std::unique_ptr<char[]> bytes,
                                             std::size_t size, std::size_t pagesAt);
    static constexpr double LongestLength = 48 * 3600.0;

    double Length() const { return m_length; }
    std::size_t Pages() const { return m_slots.size(); }
    /// How much is known, 0 to 1: shape and speech each count for a half.
    double Progress() const;
    bool Complete() const { return m_added.load(std::memory_order_acquire) == 2 * Pages(); }
    /// Whether shape and speech of all that lies between these times is known.
    bool Knows(double from, double to) const;
    /// Another number than before whenever something was added.
    std::uint64_t Changes() const { return m_added.load(std::memory_order_acquire); }

    /// Fills columns of a drawing: column i covers `from + i * step` up to the next
    /// one. A step below a millisecond (but above 0) is answered from the millisecond
    /// that the column lies in. Costs about 0.1 ms for 3840 columns at any zoom.
    void Columns(double from, double step, std::span<SoundColumn> columns) const;

    /// The probability of speech in the 10 ms that the time lies in; nothing while it is
    /// not known, and outside the film.
    std::optional<float> Speech(double time) const;
    /// The whole curve at 100 Hz: value i is that of the 10 ms from i / 100 s on. Zero
    /// where it is not known.
    std::vector<float> SpeechCurve() const;
    /// Where speech is, in order.
    std::vector<SpeechSpan> SpeechSpans() const;
    enum class Direction { Back, Forward };
    /// The next start or end of speech that lies at least a millisecond from the
    /// time; nothing when there is none before the film ends or the map is unknown.
    std::optional<double> NextSpeechEdge(double time, Direction direction) const;

    /// What the map is made of, for those who build and store it. A page that is
    /// there already stays; two threads must not add the same page at once.
    void Add(std::size_t page, const SoundPage& shape);
    void Add(std::size_t page, const SpeechPage& speech);
    /// Null while it is not known.
    const SoundPage* Shape(std::size_t page) const;
    const SpeechPage* SpeechOf(std::size_t page) const;

  private:
    struct Slot {
        std::atomic<const SoundPage*> shape = nullptr;
        std::atomic<const SpeechPage*> speech = nullptr;
        // Empty when the pages lie in m_bytes.
        std::unique_ptr<const SoundPage> ownShape;
        std::unique_ptr<const SpeechPage> ownSpeech;
    };

    SoundColumn Column(std::int64_t from, std::int64_t to, int finest) const;
    float MeanSpeech(std::int64_t from, std::int64_t to) const;
    std::size_t Values() const;
    std::optional<bool> Spoken(std::int64_t value) const;
    double EdgeTime(std::int64_t value) const;

    double m_length;
    std::int64_t m_milliseconds;
    std::vector<Slot> m_slots;
    std::atomic<std::size_t> m_added = 0;
    std::unique_ptr<char[]> m_bytes;
};
