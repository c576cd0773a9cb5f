#include "media/soundreader.h"

#include "base/wholefile.h"
#include "fuzz/fuzzing.h"
#include "media/mediafile.h"
#include "media/texttrackreader.h"

#include <filesystem>
#include <random>

namespace {

/// Films are files: one for each process, overwritten by each input.
class FilmFile {
  public:
    FilmFile()
        : m_path(std::filesystem::temp_directory_path() /
                 ("quelmar-fuzz-" + std::to_string(std::random_device()()))) {}
    ~FilmFile() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    FilmFile(const FilmFile&) = delete;
    FilmFile& operator=(const FilmFile&) = delete;

    const std::filesystem::path& With(std::string_view bytes) const {
        Require(WriteWholeFile(m_path, bytes, false), "the film is written");
        return m_path;
    }

  private:
    std::filesystem::path m_path;
};

/// A damaged film may claim to last for hours.
constexpr std::int64_t MostSamples = std::int64_t{60} * SoundReader::Frequency;

void ReadSound(SoundReader& reader, std::int64_t from) {
    SoundReader::Block block;
    std::int64_t next = from;
    while (next < from + MostSamples && reader.Read(block)) {
        Require(block.first == next && !block.samples.empty(), "blocks follow each other");
        for (const float sample : block.samples)
            Require(sample >= -8 && sample <= 8, "samples are numbers in bounds");
        next += static_cast<std::int64_t>(block.samples.size());
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FilmFile Film;
    const auto& path = Film.With(TextOf(data, size));
    const auto media = MediaFile::Read(path);
    if (!media)
        return 0;
    Require(media->length >= 0, "no length is below 0");
    if (const auto reader = SoundReader::Open(path, 0)) {
        ReadSound(*reader, 0);
        const std::int64_t middle = static_cast<std::int64_t>(media->length / 2) * 16000;
        reader->Seek(middle);
        ReadSound(*reader, middle);
    }
    for (const TextTrack& track : media->textTracks) {
        const auto reader = TextTrackReader::Open(path, track.index);
        TextPacket packet;
        while (reader != nullptr && reader->Read(packet))
            Require(packet.end >= packet.start, "no title ends before it starts");
    }
    return 0;
}
