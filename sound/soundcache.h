#pragma once

#include "sound/soundmap.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>

/// Whole maps on the disk, so that a film that was open before shows its sound at once. All
/// of it may be deleted at any time, by anyone.
class SoundCache {
  public:
    /// All entries together are at most this large; the longest unused go first.
    static constexpr std::uintmax_t MostBytes = std::uintmax_t{500} << 20;

    /// The user's own: `Tevo/Quelmar/sound` in XDG_CACHE_HOME or ~/.cache; in LOCALAPPDATA on
    /// Windows. Where there is none of them nothing is ever found or kept.
    SoundCache();
    explicit SoundCache(std::filesystem::path folder, std::uintmax_t mostBytes = MostBytes);

    /// The map of this track of the film as it is now, by its path, its size and its time.
    /// Null when there is none. An entry that is damaged, of another version or of another
    /// film counts as none.
    std::shared_ptr<SoundMap> Load(const std::filesystem::path& film, int track) const;
    /// Keeps a complete map; an incomplete one is not kept. What fails is left undone. A stop
    /// is heeded within 100 ms.
    void Store(const std::filesystem::path& film, int track, const SoundMap& map,
               const std::stop_token& stop = {}) const;

  private:
    std::filesystem::path EntryOf(const std::string& identity) const;
    void MakeRoom() const;

    std::filesystem::path m_folder;
    std::uintmax_t m_mostBytes;
};

/// The map that an entry of this identity holds; null when it is damaged or another's.
std::shared_ptr<SoundMap> ReadSoundEntry(std::unique_ptr<char[]> bytes, std::size_t size,
                                         const std::string& identity);
/// All of an entry that comes before the pages.
std::string SoundEntryHead(const SoundMap& map, const std::string& identity);
