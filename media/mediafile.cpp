#include "media/mediafile.h"

#include "media/container.h"

#include <cstring>

namespace {

std::string Tag(const FfmpegLibrary& ffmpeg, const AVDictionary* tags, const char* key) {
    const AVDictionaryEntry* entry = ffmpeg.av_dict_get(tags, key, nullptr, 0);
    return entry != nullptr && entry->value != nullptr ? entry->value : "";
}

std::string Language(const FfmpegLibrary& ffmpeg, const AVStream& stream) {
    std::string language = Tag(ffmpeg, stream.metadata, "language");
    return language == "und" ? std::string() : language;
}

bool Is(const AVStream& stream, int disposition) {
    return (stream.disposition & disposition) != 0;
}

SoundTrack SoundOf(const FfmpegLibrary& ffmpeg, const AVStream& stream) {
    SoundTrack track;
    track.name = Tag(ffmpeg, stream.metadata, "title");
    track.language = Language(ffmpeg, stream);
    track.codec = ffmpeg.avcodec_get_name(stream.codecpar->codec_id);
    track.isDefault = Is(stream, AV_DISPOSITION_DEFAULT);
    track.channels = stream.codecpar->ch_layout.nb_channels;
    track.frequency = stream.codecpar->sample_rate;
    return track;
}

TextTrack TextOf(const FfmpegLibrary& ffmpeg, const AVStream& stream) {
    TextTrack track;
    track.index = stream.index;
    track.codec = CodecOfText(ffmpeg, stream);
    const AVCodecDescriptor* codec = ffmpeg.avcodec_descriptor_get(stream.codecpar->codec_id);
    const bool pictures = codec != nullptr && (codec->props & AV_CODEC_PROP_BITMAP_SUB) != 0;
    track.kind = !pictures ? TextTrack::Kind::Text : TextTrack::Kind::Picture;
    track.name = Tag(ffmpeg, stream.metadata, "title");
    track.language = Language(ffmpeg, stream);
    track.isDefault = Is(stream, AV_DISPOSITION_DEFAULT);
    track.isForced = Is(stream, AV_DISPOSITION_FORCED);
    return track;
}

} // namespace

bool SoundAvailable() {
    return FfmpegLibrary::Get() != nullptr;
}

std::optional<MediaFile> MediaFile::Read(const std::filesystem::path& file,
                                         const std::stop_token& stop) {
    const std::unique_ptr<Container> container = Container::Open(file, stop);
    if (container == nullptr)
        return {};
    const FfmpegLibrary& ffmpeg = container->Library();
    const AVFormatContext& format = container->Format();
    MediaFile media;
    media.length = container->Length();
    media.firstTime = container->Zero();
    for (unsigned i = 0; i < format.nb_streams; ++i) {
        const AVStream& stream = *format.streams[i];
        const AVMediaType type = stream.codecpar->codec_type;
        if (type == AVMEDIA_TYPE_AUDIO)
            media.soundTracks.push_back(SoundOf(ffmpeg, stream));
        else if (!CodecOfText(ffmpeg, stream).empty())
            media.textTracks.push_back(TextOf(ffmpeg, stream));
    }
    if (const int picture = container->PictureStream(); picture >= 0) {
        const AVRational rate = container->Stream(picture).avg_frame_rate;
        media.pictureRate = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
    }
    for (unsigned i = 0; i < format.nb_chapters; ++i) {
        const AVChapter& chapter = *format.chapters[i];
        const double unit = av_q2d(chapter.time_base);
        media.chapters.push_back({static_cast<double>(chapter.start) * unit - container->Zero(),
                                  static_cast<double>(chapter.end) * unit - container->Zero(),
                                  Tag(ffmpeg, chapter.metadata, "title")});
    }
    return media;
}

int MediaFile::PlayedTrack() const {
    for (std::size_t i = 0; i < soundTracks.size(); ++i)
        if (soundTracks[i].isDefault)
            return static_cast<int>(i) + 1;
    return soundTracks.empty() ? 0 : 1;
}
