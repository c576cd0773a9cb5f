// The build without FFmpeg: no film has sound that could be read.
#include "media/mediafile.h"
#include "media/soundreader.h"
#include "media/texttrackreader.h"

bool SoundAvailable() {
    return false;
}

std::optional<MediaFile> MediaFile::Read(const std::filesystem::path& /*file*/,
                                         const std::stop_token& /*stop*/) {
    return {};
}

int MediaFile::PlayedTrack() const {
    return 0;
}

std::unique_ptr<SoundReader> SoundReader::Open(const std::filesystem::path& /*file*/, int /*track*/,
                                               std::stop_token /*stop*/) {
    return nullptr;
}

std::unique_ptr<TextTrackReader> TextTrackReader::Open(const std::filesystem::path& /*file*/,
                                                       int /*index*/, std::stop_token /*stop*/) {
    return nullptr;
}

std::unique_ptr<TextTrackReader> TextTrackReader::Open(const std::filesystem::path& /*file*/,
                                                       std::vector<int> /*indexes*/,
                                                       std::stop_token /*stop*/) {
    return nullptr;
}
