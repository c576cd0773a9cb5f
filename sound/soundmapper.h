#pragma once

#include "sound/soundmap.h"

#include <filesystem>
#include <functional>
#include <memory>

/// Makes the map of one sound track of a film on threads of its own, at a low priority,
/// from the position that is being looked at outward. A map that was made before comes
/// from the cache. To stop, destroy it: that takes at most 100 ms.
class SoundMapper {
  public:
    enum class State {
        /// The file is being opened; there is no map yet.
        Opening,
        /// There is a map, and it grows.
        Growing,
        /// The map is complete.
        Complete,
        /// The film has no such track, or none that can be read. A map that has begun
        /// stays as far as it grew.
        NoSound,
    };

    struct Wish {
        std::filesystem::path film;
        /// Counted from 1 as the player counts sound tracks; 0: the one that it plays by
        /// itself.
        int track = 0;
        /// Where the map is to begin, in seconds.
        double position = 0;
        /// How many threads work; 0: one for each processor, at most two.
        int threads = 0;
        /// false: neither read from the cache nor stored there.
        bool cache = true;
        /// Whether the work gives way to others once the first page is there.
        bool background = true;
    };

    /// Begins at once. `changed` is called on the threads at work, never two at a time,
    /// whenever the state changes or the map has grown; it must not wait for the thread that
    /// destroys this.
    explicit SoundMapper(Wish wish, std::function<void()> changed = {});
    ~SoundMapper();
    SoundMapper(const SoundMapper&) = delete;
    SoundMapper& operator=(const SoundMapper&) = delete;

    State Now() const;
    /// Null while `Opening`, and when there is no sound. It may be kept and read after this
    /// is gone.
    std::shared_ptr<const SoundMap> Map() const;
    /// From now on what lies around this position comes first.
    void LookAt(double position);
    /// Waits until there is nothing left to do.
    void Wait() const;
    /// Waits until all between these times (in seconds) is known, or nothing is left to do.
    void WaitFor(double from, double to) const;
    /// Whether the map came from the cache.
    bool FromCache() const;

  private:
    class Work;
    std::unique_ptr<Work> m_work;
};
