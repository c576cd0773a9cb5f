#include "sound/soundcache.h"

#include "fuzz/fuzzing.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* Identity = "1 2 3 film.avi";

std::shared_ptr<SoundMap> Read(std::string_view bytes) {
    auto copy = std::make_unique<char[]>(bytes.size());
    std::memcpy(copy.get(), bytes.data(), bytes.size());
    return ReadSoundEntry(std::move(copy), bytes.size(), Identity);
}

template <typename PAGE>
void Append(std::string& entry, const PAGE& page) {
    entry.append(reinterpret_cast<const char*>(&page), sizeof page);
}

} // namespace

/// The checksum would stop nearly every input at the door, so besides the input
/// itself a whole entry of one page that begins with it is read.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    (void)Read(text);

    SoundPage shape{};
    std::memcpy(&shape, data, std::min(size, sizeof shape));
    SoundMap map(4);
    map.Add(0, shape);
    map.Add(0, SpeechPage{});
    std::string entry = SoundEntryHead(map, Identity);
    Append(entry, shape);
    Append(entry, SpeechPage{});
    const auto read = Read(entry);
    Require(read != nullptr && read->Length() == 4, "a whole entry reads back");
    Require(std::memcmp(read->Shape(0), &shape, sizeof shape) == 0, "as it was written");
    SoundColumn column;
    read->Columns(0, 4, {&column, 1});
    Require(column.known && column.least >= -1.02F && column.greatest <= 1.02F, "in bounds");

    const std::size_t at = size == 0 ? 0 : data[0] * entry.size() / 256;
    std::string damaged = entry;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << (size % 8)));
    Require(Read(damaged) == nullptr, "an entry with a changed bit is refused");
    Require(Read(std::string_view(entry).substr(0, at)) == nullptr, "a torn entry is refused");
    return 0;
}
