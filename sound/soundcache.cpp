#include "sound/soundcache.h"

#include "base/checksum.h"
#include "base/wholefile.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <string_view>
#include <system_error>
#include <vector>

// An entry: magic, version, length of the identity, length of the film, checksum of all pages
// and of all before it; the identity; all sound pages, all speech pages. Numbers are
// little-endian.

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Magic = "QuelmarS";
/// Changes with the layout, and with what the pages mean.
constexpr std::uint32_t Version = 1;
constexpr std::size_t ChecksumAt = 8 + 4 + 4 + 8;
constexpr std::size_t HeadSize = ChecksumAt + 8;
constexpr const char* Extension = ".map";
constexpr const char* UnfinishedExtension = ".new";

static_assert(std::endian::native == std::endian::little);

template <typename NUMBER>
void Put(std::string& out, NUMBER number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    out.append(bytes, sizeof number);
}

template <typename NUMBER>
NUMBER Get(const char* bytes, std::size_t at) {
    NUMBER number;
    std::memcpy(&number, bytes + at, sizeof number);
    return number;
}

template <typename PAGE>
std::string_view Bytes(const PAGE& page) {
    return {reinterpret_cast<const char*>(&page), sizeof page};
}

/// Empty where the environment names no folder.
fs::path UserFolder() {
#ifdef _WIN32
    const wchar_t* local = _wgetenv(L"LOCALAPPDATA");
    return local != nullptr && *local != 0 ? fs::path(local) : fs::path();
#else
    const char* const cache = std::getenv("XDG_CACHE_HOME");
    if (cache != nullptr && fs::path(cache).is_absolute())
        return cache;
    const char* const home = std::getenv("HOME");
    return home != nullptr && fs::path(home).is_absolute() ? fs::path(home) / ".cache" : fs::path();
#endif
}

/// Empty when the film is not there.
std::string Identity(const fs::path& film, int track) {
    std::error_code error;
    const fs::path path = fs::canonical(film, error);
    if (error)
        return {};
    const std::uintmax_t size = fs::file_size(path, error);
    const auto time = fs::last_write_time(path, error);
    if (error)
        return {};
    const std::u8string name = path.u8string();
    return std::to_string(track) + " " + std::to_string(size) + " " +
           std::to_string(time.time_since_epoch().count()) + " " +
           std::string(name.begin(), name.end());
}

std::string Hexadecimal(std::uint64_t number) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4)
        text += Digits[(number >> shift) & 0xF];
    return text;
}

/// Of the head up to the checksum, the identity, and each page.
std::uint64_t EntryChecksum(const SoundMap& map, std::string_view head, std::string_view identity) {
    std::uint64_t sum = Checksum(identity, Checksum(head));
    for (std::size_t page = 0; page < map.Pages(); ++page)
        sum = Checksum(Bytes(*map.Shape(page)), sum);
    for (std::size_t page = 0; page < map.Pages(); ++page)
        sum = Checksum(Bytes(*map.SpeechOf(page)), sum);
    return sum;
}

bool WritePages(std::ofstream& file, const SoundMap& map, const std::stop_token& stop) {
    const auto write = [&](std::string_view bytes) {
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return file.good() && !stop.stop_requested();
    };
    for (std::size_t page = 0; page < map.Pages(); ++page)
        if (!write(Bytes(*map.Shape(page))))
            return false;
    for (std::size_t page = 0; page < map.Pages(); ++page)
        if (!write(Bytes(*map.SpeechOf(page))))
            return false;
    return true;
}

} // namespace

std::string SoundEntryHead(const SoundMap& map, const std::string& identity) {
    std::string head(Magic);
    Put(head, Version);
    Put(head, static_cast<std::uint32_t>(identity.size()));
    Put(head, map.Length());
    Put(head, EntryChecksum(map, head, identity));
    return head + identity;
}

std::shared_ptr<SoundMap> ReadSoundEntry(std::unique_ptr<char[]> bytes, std::size_t size,
                                         const std::string& identity) {
    const std::size_t pagesAt = HeadSize + identity.size();
    if (size < pagesAt)
        return nullptr;
    const std::string head(bytes.get(), HeadSize);
    const bool ours = head.starts_with(Magic) &&
                      Get<std::uint32_t>(head.data(), Magic.size()) == Version &&
                      Get<std::uint32_t>(head.data(), Magic.size() + 4) == identity.size() &&
                      identity == std::string_view(bytes.get() + HeadSize, identity.size());
    const auto length = Get<double>(head.data(), Magic.size() + 8);
    // Written so that no number at all is refused too.
    if (!ours || !(length > 0 && length <= SoundMap::LongestLength))
        return nullptr;
    auto map = SoundMap::OfBytes(length, std::move(bytes), size, pagesAt);
    const auto checksum = Get<std::uint64_t>(head.data(), ChecksumAt);
    if (map == nullptr || checksum != EntryChecksum(*map, head.substr(0, ChecksumAt), identity))
        return nullptr;
    return map;
}

SoundCache::SoundCache()
    : SoundCache(UserFolder()) {
    if (!m_folder.empty())
        m_folder = m_folder / "Tevo" / "Quelmar" / "sound";
}

SoundCache::SoundCache(fs::path folder, std::uintmax_t mostBytes)
    : m_folder(std::move(folder))
    , m_mostBytes(mostBytes) {}

fs::path SoundCache::EntryOf(const std::string& identity) const {
    return m_folder / (Hexadecimal(Checksum(identity)) + Extension);
}

std::shared_ptr<SoundMap> SoundCache::Load(const fs::path& film, int track) const {
    const std::string identity = Identity(film, track);
    if (m_folder.empty() || identity.empty())
        return nullptr;
    const fs::path entry = EntryOf(identity);
    std::optional<FileBytes> bytes = ReadWholeFile(entry);
    if (!bytes)
        return nullptr;
    auto map = ReadSoundEntry(std::move(bytes->data), bytes->size, identity);
    // Used now, so it stays longest.
    std::error_code ignored;
    if (map != nullptr)
        fs::last_write_time(entry, fs::file_time_type::clock::now(), ignored);
    return map;
}

void SoundCache::Store(const fs::path& film, int track, const SoundMap& map,
                       const std::stop_token& stop) const {
    const std::string identity = Identity(film, track);
    if (m_folder.empty() || identity.empty() || !map.Complete() || map.Pages() == 0)
        return;
    std::error_code error;
    fs::create_directories(m_folder, error);
    const fs::path entry = EntryOf(identity);
    fs::path unfinished = entry;
    unfinished += Hexadecimal(std::random_device()()) + UnfinishedExtension;
    bool written = false;
    {
        std::ofstream file(unfinished, std::ios::binary);
        const std::string head = SoundEntryHead(map, identity);
        file.write(head.data(), static_cast<std::streamsize>(head.size()));
        written = file.good() && WritePages(file, map, stop);
        file.close();
        written = written && file.good();
    }
    if (written)
        fs::rename(unfinished, entry, error);
    if (!written || error)
        fs::remove(unfinished, error);
    MakeRoom();
}

void SoundCache::MakeRoom() const {
    struct Entry {
        fs::path path;
        fs::file_time_type time;
        std::uintmax_t size;
    };
    constexpr auto Abandoned = std::chrono::hours(1);
    std::vector<Entry> entries;
    std::uintmax_t sum = 0;
    std::error_code error;
    for (auto at = fs::directory_iterator(m_folder, error);
         !error && at != fs::directory_iterator(); at.increment(error)) {
        const fs::path& path = at->path();
        std::error_code gone;
        const auto time = fs::last_write_time(path, gone);
        const auto size = gone ? 0 : fs::file_size(path, gone);
        if (gone)
            continue;
        if (path.extension() == Extension) {
            entries.push_back({path, time, size});
            sum += size;
        } else if (path.extension() == UnfinishedExtension &&
                   fs::file_time_type::clock::now() - time > Abandoned) {
            fs::remove(path, gone);
        }
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry& a, const Entry& b) { return a.time < b.time; });
    for (const Entry& entry : entries) {
        if (sum <= m_mostBytes)
            return;
        fs::remove(entry.path, error);
        sum -= entry.size;
    }
}
