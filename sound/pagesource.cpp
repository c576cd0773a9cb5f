#include "sound/pagesource.h"

#include <algorithm>

namespace {

/// The filters swing in on that much sound before the page (samples).
constexpr std::int64_t SwingIn = SoundReader::Frequency / 20;

} // namespace

PageSource::PageSource(std::unique_ptr<SoundReader> reader)
    : m_reader(std::move(reader)) {}

PageSource::Page PageSource::Read(std::size_t page) {
    const std::int64_t first = static_cast<std::int64_t>(page) * SamplesOfAPage;
    if (first != m_first)
        GoTo(first);
    Gather(SamplesOfAPage);
    const auto samples = std::span<const float>(m_samples).first(SamplesOfAPage);
    Page result{MakePage(samples), {}};
    result.bands.reserve(SpeechPage::Values);
    m_filter.Push(samples, result.bands);
    m_samples.erase(m_samples.begin(), m_samples.begin() + SamplesOfAPage);
    m_first += SamplesOfAPage;
    return result;
}

void PageSource::GoTo(std::int64_t sample) {
    const std::int64_t before = std::min(SwingIn, sample);
    m_reader->Seek(sample - before);
    m_samples.clear();
    m_filter.Reset();
    m_ended = false;
    Gather(static_cast<std::size_t>(before));
    const auto swingIn = m_samples.begin() + before;
    std::vector<SpeechBands> unused;
    m_filter.Push({m_samples.begin(), swingIn}, unused);
    m_samples.erase(m_samples.begin(), swingIn);
    m_first = sample;
}

/// Reads until there are that many samples at least.
void PageSource::Gather(std::size_t count) {
    SoundReader::Block block;
    while (m_samples.size() < count && !m_ended) {
        if (m_reader->Read(block))
            m_samples.insert(m_samples.end(), block.samples.begin(), block.samples.end());
        else
            m_ended = true;
    }
    m_samples.resize(std::max(m_samples.size(), count));
}
