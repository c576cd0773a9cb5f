#include "media/soundreader.h"

#include "media/container.h"
#include "media/resampler.h"
#include "media/sounddecoder.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <vector>

namespace {

/// So much sound before the first sample is decoded with it: codecs build upon what was (seconds).
constexpr double Preroll = 0.5;
/// How far before the wanted time is sought first, and how much further each time that the
/// file leads to a place too late.
constexpr double Lead = 1;
constexpr double FurtherLead = 4;
/// The longest gap that is bridged by holding the last sample (in samples): time stamps
/// of whole milliseconds leave such gaps where there are none.
constexpr std::int64_t Seam = SoundReader::Frequency / 200;
/// Silence is handed out in blocks of this size.
constexpr std::size_t SilentBlock = SoundReader::Frequency;
/// In a film of unknown length a longer gap is damage (in samples).
constexpr std::int64_t LongestGap = std::int64_t{600} * SoundReader::Frequency;

std::int64_t SampleAt(double time) {
    constexpr double Far = 1e15;
    return std::llround(std::clamp(time * SoundReader::Frequency, -Far, Far));
}

class ContainerSoundReader : public SoundReader {
  public:
    ContainerSoundReader(std::unique_ptr<Container> container, int stream)
        : m_container(std::move(container))
        , m_stream(stream)
        , m_decoder(*m_container, stream)
        , m_resampler(m_container->Library(), Frequency)
        , m_packet(m_container->Library().av_packet_alloc())
        , m_fill(SilentBlock) {
        m_container->Select(stream);
    }

    bool Valid() const { return m_decoder.Valid() && m_packet != nullptr; }
    double Length() const override { return m_container->Length(); }
    void Seek(std::int64_t sample) override;
    bool Read(Block& block) override;

  private:
    /// Samples that follow each other.
    struct Run {
        std::int64_t first = 0;
        std::vector<float> samples;
    };

    bool SeekTo(double time, double lead);
    double PacketTime() const;
    double PacketEnd() const;
    bool Decode();
    void TakePieces();
    void Take(const SoundDecoder::Piece& piece);
    void EndRun();
    void Append(std::vector<float> samples);
    void Fill(Block& block, std::int64_t gap);
    std::int64_t Limit() const;

    const std::unique_ptr<Container> m_container;
    const int m_stream;
    SoundDecoder m_decoder;
    Resampler m_resampler;
    const PacketPointer m_packet;
    /// The packet was read but not decoded yet.
    bool m_waiting = false;
    bool m_ended = false;
    /// The next sample that is handed out.
    std::int64_t m_at = 0;
    /// The next sample that the resampler makes.
    std::int64_t m_next = 0;
    /// What was decoded, in order.
    std::deque<Run> m_runs;
    /// The first one was handed out.
    bool m_given = false;
    std::vector<float> m_fill;
    float m_last = 0;
};

void ContainerSoundReader::Seek(std::int64_t sample) {
    m_at = std::max<std::int64_t>(sample, 0);
    const double time = static_cast<double>(m_at) / Frequency;
    double lead = Lead;
    while (!SeekTo(time, lead) && lead < time + Lead && !m_container->Stopped())
        lead *= FurtherLead;
}

/// false when the first packet there is too late.
bool ContainerSoundReader::SeekTo(double time, double lead) {
    m_container->Seek(m_stream, time - lead);
    m_decoder.Reset();
    m_resampler.Reset();
    m_runs.clear();
    m_given = false;
    m_last = 0;
    m_waiting = m_container->Read(*m_packet);
    m_ended = false;
    return m_waiting && PacketTime() <= time - Preroll;
}

bool ContainerSoundReader::Read(Block& block) {
    if (m_given)
        m_runs.pop_front();
    m_given = false;
    while (!m_container->Stopped()) {
        if (m_runs.empty()) {
            if (!Decode())
                return false;
            continue;
        }
        const Run& run = m_runs.front();
        const auto count = static_cast<std::int64_t>(run.samples.size());
        const std::int64_t gap = run.first - m_at;
        // What comes too late to be in the film, or lies before what was handed out, is left out.
        if (count <= -gap || run.first >= Limit()) {
            m_runs.pop_front();
            continue;
        }
        if (gap > 0) {
            Fill(block, gap);
            return true;
        }
        block.first = m_at;
        block.samples = std::span<const float>(run.samples).subspan(static_cast<std::size_t>(-gap));
        m_last = run.samples.back();
        m_at = run.first + count;
        m_given = true;
        return true;
    }
    return false;
}

void ContainerSoundReader::Fill(Block& block, std::int64_t gap) {
    const std::size_t count = std::min(static_cast<std::size_t>(gap), SilentBlock);
    std::fill_n(m_fill.begin(), count, gap <= Seam ? m_last : 0);
    block.first = m_at;
    block.samples = std::span<const float>(m_fill).first(count);
    m_at += static_cast<std::int64_t>(count);
    m_last = gap <= Seam ? m_last : 0;
}

std::int64_t ContainerSoundReader::Limit() const {
    return Length() > 0 ? SampleAt(Length()) + Frequency : m_at + LongestGap;
}

double ContainerSoundReader::PacketTime() const {
    const std::int64_t stamp = m_packet->pts != AV_NOPTS_VALUE ? m_packet->pts : m_packet->dts;
    return stamp == AV_NOPTS_VALUE ? 0 : m_container->Time(m_container->Stream(m_stream), stamp);
}

double ContainerSoundReader::PacketEnd() const {
    const double lasts =
        static_cast<double>(m_packet->duration) * av_q2d(m_container->Stream(m_stream).time_base);
    return PacketTime() + std::max(lasts, 0.0);
}

/// Goes on by a packet. false at the end of the track.
bool ContainerSoundReader::Decode() {
    if (m_ended)
        return false;
    if (!m_waiting && !m_container->Read(*m_packet)) {
        m_ended = true;
        m_decoder.Send(nullptr);
        TakePieces();
        EndRun();
        return true;
    }
    m_waiting = false;
    const bool timed = m_packet->pts != AV_NOPTS_VALUE || m_packet->dts != AV_NOPTS_VALUE;
    if (timed && PacketEnd() < static_cast<double>(m_at) / Frequency - Preroll)
        return true;
    m_decoder.Send(m_packet.get());
    TakePieces();
    return true;
}

void ContainerSoundReader::TakePieces() {
    SoundDecoder::Piece piece;
    while (m_decoder.Receive(piece))
        Take(piece);
}

void ContainerSoundReader::Take(const SoundDecoder::Piece& piece) {
    if (piece.apart || !m_resampler.Fits(*piece.frame)) {
        EndRun();
        m_next = SampleAt(piece.time);
        if (!m_resampler.Begin(*piece.frame))
            return;
    }
    std::vector<float> samples;
    m_resampler.Convert(*piece.frame, piece.skipped, piece.count, samples);
    Append(std::move(samples));
}

void ContainerSoundReader::EndRun() {
    std::vector<float> samples;
    m_resampler.End(samples);
    Append(std::move(samples));
}

void ContainerSoundReader::Append(std::vector<float> samples) {
    const auto count = static_cast<std::int64_t>(samples.size());
    if (count > 0)
        m_runs.push_back({m_next, std::move(samples)});
    m_next += count;
}

} // namespace

std::unique_ptr<SoundReader> SoundReader::Open(const std::filesystem::path& file, int track,
                                               std::stop_token stop) {
    std::unique_ptr<Container> container = Container::Open(file, std::move(stop));
    const int stream = container != nullptr ? container->SoundStream(track) : -1;
    if (stream < 0)
        return nullptr;
    auto reader = std::make_unique<ContainerSoundReader>(std::move(container), stream);
    return reader->Valid() ? std::move(reader) : nullptr;
}
