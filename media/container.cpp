#include "media/container.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

/// Those that the player takes.
constexpr const char* Formats =
    "avi,mpeg,mpegvideo,asf,wav,mp3,mp2,mpegts,aac,ac3,mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,ogg,"
    "flac,flv";
/// So far apart (in seconds) the player lets streams begin without making the first picture
/// time 0.
constexpr double LooseStart = 0.15;
/// So many packets are searched for the first picture.
constexpr int MostAhead = 2000;
/// A damaged file may give that many errors in a row before it counts as ended.
constexpr int MostErrors = 10;

/// No film has less than that many bytes a second; a length that says so is damage.
constexpr double LeastBytes = 12.5;

int Refuse(AVFormatContext* /*format*/, AVIOContext** /*file*/, const char* /*name*/, int /*flags*/,
           AVDictionary** /*options*/) {
    return AVERROR(EACCES);
}

int IsStopped(void* stop) {
    return static_cast<const std::stop_token*>(stop)->stop_requested() ? 1 : 0;
}

bool IsPicture(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
}

bool IsSound(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

double Seconds(const AVStream& stream, std::int64_t stamp) {
    return static_cast<double>(stamp) * av_q2d(stream.time_base);
}

std::int64_t StampOf(const AVPacket& packet) {
    return packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
}

/// How much of the first sound is left out, in seconds.
double Skipped(const AVStream& stream, const AVPacket& packet) {
    constexpr std::size_t SideSize = 10;
    for (int i = 0; i < packet.side_data_elems; ++i) {
        const AVPacketSideData& side = packet.side_data[i];
        if (side.type == AV_PKT_DATA_SKIP_SAMPLES && side.size >= SideSize &&
            stream.codecpar->sample_rate > 0)
            return static_cast<double>(LittleEndian(side.data)) / stream.codecpar->sample_rate;
    }
    return 0;
}

} // namespace

std::string CodecOfText(const FfmpegLibrary& ffmpeg, const AVStream& stream) {
    const AVCodecParameters& codec = *stream.codecpar;
    constexpr std::uint32_t TimedText = MKTAG('s', 't', 'p', 'p');
    if (codec.codec_tag == TimedText)
        return "ttml";
    if (codec.codec_type != AVMEDIA_TYPE_SUBTITLE)
        return {};
    const std::string_view head(reinterpret_cast<const char*>(codec.extradata),
                                static_cast<std::size_t>(std::max(codec.extradata_size, 0)));
    if (codec.codec_id == AV_CODEC_ID_NONE && head.starts_with("WEBVTT"))
        return "webvtt";
    return ffmpeg.avcodec_get_name(codec.codec_id);
}

Container::Container(const FfmpegLibrary& ffmpeg, std::stop_token stop)
    : m_ffmpeg(ffmpeg)
    , m_stop(std::move(stop)) {}

Container::~Container() {
    if (m_format != nullptr)
        m_ffmpeg.avformat_close_input(&m_format);
    m_ffmpeg.avio_closep(&m_file);
}

std::unique_ptr<Container> Container::Open(const std::filesystem::path& file,
                                           std::stop_token stop) {
    std::error_code error;
    // A pipe or a device could keep the reader for ever.
    if (!std::filesystem::is_regular_file(file, error))
        return nullptr;
    const FfmpegLibrary* ffmpeg = FfmpegLibrary::Get();
    if (ffmpeg == nullptr || stop.stop_requested())
        return nullptr;
    std::unique_ptr<Container> container(new Container(*ffmpeg, std::move(stop)));
    if (!container->OpenFile(file) || container->Stopped())
        return nullptr;
    return container;
}

bool Container::OpenFile(const std::filesystem::path& file) {
    const std::u8string name = file.u8string();
    const std::string url = "file:" + std::string(name.begin(), name.end());
    const AVIOInterruptCB interrupt{IsStopped, const_cast<std::stop_token*>(&m_stop)};

    AVDictionary* options = nullptr;
    m_ffmpeg.av_dict_set(&options, "protocol_whitelist", "file", 0);
    const int opened =
        m_ffmpeg.avio_open2(&m_file, url.c_str(), AVIO_FLAG_READ, &interrupt, &options);
    m_ffmpeg.av_dict_free(&options);
    if (opened < 0)
        return false;

    m_format = m_ffmpeg.avformat_alloc_context();
    if (m_format == nullptr)
        return false;
    m_format->pb = m_file;
    m_format->interrupt_callback = interrupt;
    m_format->io_open = Refuse;
    m_ffmpeg.av_dict_set(&options, "protocol_whitelist", "file", 0);
    m_ffmpeg.av_dict_set(&options, "format_whitelist", Formats, 0);
    // As the player reads edit lists: the first one moves the track, the rest is ignored.
    m_ffmpeg.av_dict_set(&options, "advanced_editlist", "0", 0);
    const int read = m_ffmpeg.avformat_open_input(&m_format, url.c_str(), nullptr, &options);
    m_ffmpeg.av_dict_free(&options);
    if (read < 0)
        return false;
    // These tell all in their headers; time 0 is the file's own then.
    const bool told = Named("mp4") || Named("matroska");
    if (!told && m_ffmpeg.avformat_find_stream_info(m_format, nullptr) < 0)
        return false;

    const double start = m_format->start_time == AV_NOPTS_VALUE
                             ? 0
                             : static_cast<double>(m_format->start_time) / AV_TIME_BASE;
    const double first = FirstShown() - start;
    const double origin = first > LooseStart ? first : 0;
    m_zero = start + origin;
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(file, unknown);
    m_size = unknown ? 0 : static_cast<double>(size);
    const double longest = m_size / LeastBytes;
    m_length = std::clamp(LengthTold() - origin, 0.0, longest);
    return true;
}

bool Container::Named(const char* format) const {
    std::string_view names = m_format->iformat->name;
    while (!names.empty()) {
        const std::size_t comma = names.find(',');
        if (names.substr(0, comma) == format)
            return true;
        names.remove_prefix(comma == std::string_view::npos ? names.size() : comma + 1);
    }
    return false;
}

const AVStream& Container::Stream(int index) const {
    return *m_format->streams[index];
}

double Container::Time(const AVStream& stream, std::int64_t stamp) const {
    return Seconds(stream, stamp) - m_zero;
}

int Container::SoundStream(int track) const {
    int first = -1;
    int number = 0;
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        const AVStream& stream = *m_format->streams[i];
        if (!IsSound(stream))
            continue;
        if (++number == track)
            return static_cast<int>(i);
        if (track == 0 && (stream.disposition & AV_DISPOSITION_DEFAULT) != 0)
            return static_cast<int>(i);
        first = first < 0 ? static_cast<int>(i) : first;
    }
    return track == 0 ? first : -1;
}

int Container::PictureStream() const {
    int first = -1;
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        const AVStream& stream = *m_format->streams[i];
        if (!IsPicture(stream))
            continue;
        if ((stream.disposition & AV_DISPOSITION_DEFAULT) != 0)
            return static_cast<int>(i);
        first = first < 0 ? static_cast<int>(i) : first;
    }
    return first;
}

/// The file's time of the first picture, or of the first sound where there are none.
double Container::FirstShown() {
    const int picture = PictureStream();
    const int stream = picture >= 0 ? picture : SoundStream(0);
    for (int i = 0; stream >= 0 && i < MostAhead; ++i) {
        PacketPointer packet(m_ffmpeg.av_packet_alloc());
        if (packet == nullptr || !ReadFromFile(*packet))
            break;
        const AVPacket& read = *packet;
        m_ahead.push_back(std::move(packet));
        if (read.stream_index == stream && (read.flags & AV_PKT_FLAG_KEY) != 0 &&
            StampOf(read) != AV_NOPTS_VALUE)
            return Seconds(Stream(stream), StampOf(read)) + Skipped(Stream(stream), read);
    }
    return 0;
}

double Container::LengthTold() const {
    if (m_format->duration > 0)
        return static_cast<double>(m_format->duration) / AV_TIME_BASE;
    double longest = 0;
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        const AVStream& stream = *m_format->streams[i];
        if (stream.duration > 0 && (IsPicture(stream) || IsSound(stream)))
            longest = std::max(longest, Seconds(stream, stream.duration));
    }
    return longest;
}

void Container::Select(const std::vector<int>& streams) {
    m_selected = streams;
    for (unsigned i = 0; i < m_format->nb_streams; ++i)
        m_format->streams[i]->discard =
            IsSelected(static_cast<int>(i)) ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    std::erase_if(m_ahead, [this](const PacketPointer& p) { return !IsSelected(p->stream_index); });
}

bool Container::IsSelected(int stream) const {
    return std::find(m_selected.begin(), m_selected.end(), stream) != m_selected.end();
}

double Container::Done() const {
    return m_size > 0 ? std::clamp(static_cast<double>(m_file->pos) / m_size, 0.0, 1.0) : 0;
}

bool Container::Read(AVPacket& packet) {
    if (!m_ahead.empty()) {
        m_ffmpeg.av_packet_unref(&packet);
        std::swap(packet, *m_ahead.front());
        m_ahead.pop_front();
        return true;
    }
    while (ReadFromFile(packet)) {
        if (m_progress)
            m_progress(Done());
        if (IsSelected(packet.stream_index))
            return true;
    }
    return false;
}

bool Container::ReadFromFile(AVPacket& packet) {
    for (int errors = 0; errors < MostErrors && !Stopped(); ++errors) {
        m_ffmpeg.av_packet_unref(&packet);
        const int result = m_ffmpeg.av_read_frame(m_format, &packet);
        if (result >= 0)
            return true;
        if (result == AVERROR_EOF)
            return false;
    }
    return false;
}

void Container::Seek(int stream, double time) {
    m_ahead.clear();
    // Where sound can be sought by itself, that is nearer; elsewhere key pictures are indexed.
    const int picture = PictureStream();
    const int guide = picture < 0 || Named("mp4") ? stream : picture;
    const double stamp = (time + m_zero) / av_q2d(Stream(guide).time_base);
    constexpr double Far = 9e18;
    const auto whole = static_cast<std::int64_t>(std::clamp(stamp, -Far, Far));
    // Some demuxers find their way only by streams that are read.
    AVDiscard& discard = m_format->streams[guide]->discard;
    const AVDiscard before = std::exchange(discard, AVDISCARD_DEFAULT);
    if (m_ffmpeg.av_seek_frame(m_format, guide, whole, AVSEEK_FLAG_BACKWARD) < 0)
        m_ffmpeg.av_seek_frame(m_format, guide, whole, 0);
    discard = before;
}
