#pragma once

#include "media/soundreader.h"
#include "sound/soundpage.h"
#include "sound/speechdetector.h"

#include <cstddef>
#include <memory>
#include <vector>

/// The pages of a sound track, from a reader.
class PageSource {
  public:
    struct Page {
        SoundPage shape;
        std::vector<SpeechBands> bands;
    };

    explicit PageSource(std::unique_ptr<SoundReader> reader);

    SoundReader& Reader() { return *m_reader; }
    /// The next page by the track's order costs no seek. What the track does not reach is
    /// silent. After a stop the page is worthless.
    Page Read(std::size_t page);

  private:
    static constexpr std::int64_t SamplesOfAPage =
        std::int64_t{SoundPage::Milliseconds} * SoundReader::Frequency / 1000;

    void GoTo(std::int64_t sample);
    void Gather(std::size_t count);

    const std::unique_ptr<SoundReader> m_reader;
    SpeechFilter m_filter;
    /// Read and not used yet, from this sample on.
    std::vector<float> m_samples;
    std::int64_t m_first = 0;
    bool m_ended = false;
};
