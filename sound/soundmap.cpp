#include "sound/soundmap.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr std::int64_t ValueMilliseconds = 1000 / SoundMap::SpeechRate;
/// An edge that is nearer than this is the one that the time stands on (seconds).
constexpr double SameEdge = 0.001;
constexpr std::int64_t CoarseMilliseconds = ValueMilliseconds * SpeechPage::Factor;
constexpr auto Threshold = static_cast<std::uint8_t>(SoundMap::SpeechThreshold * 255 + 1);

constexpr SoundPage SilentPage{};

std::int64_t Milliseconds(double seconds) {
    constexpr double Far = 1e12;
    return static_cast<std::int64_t>(std::floor(std::clamp(seconds * 1000, -Far, Far)));
}

/// The mean power of buckets from their loudness.
float Power(std::uint8_t loudness) {
    static const std::array<float, 256> Table = [] {
        std::array<float, 256> table{};
        for (std::size_t i = 1; i < table.size(); ++i)
            table[i] = std::pow(10.0F, UnpackLoudness(static_cast<std::uint8_t>(i)) / 10);
        return table;
    }();
    return Table[loudness];
}

/// The finest level that matters: its buckets are at most a 32nd of a column.
int FinestFor(double milliseconds) {
    constexpr double Fraction = 32;
    int level = 0;
    while (level + 1 < SoundPage::Levels &&
           static_cast<double>(SoundPage::BucketMilliseconds(level + 1)) * Fraction <= milliseconds)
        ++level;
    return level;
}

/// The longest bucket that begins here and ends in time.
int LongestLevel(std::int64_t from, std::int64_t to, int finest) {
    int level = finest;
    while (level + 1 < SoundPage::Levels) {
        const std::int64_t length = SoundPage::BucketMilliseconds(level + 1);
        if (from % length != 0 || from + length > to)
            break;
        ++level;
    }
    return level;
}

} // namespace

SoundMap::SoundMap(double length)
    : m_length(std::clamp(length, 0.0, LongestLength))
    , m_milliseconds(static_cast<std::int64_t>(std::ceil(m_length * 1000)))
    , m_slots(static_cast<std::size_t>((m_milliseconds + SoundPage::Milliseconds - 1) /
                                       SoundPage::Milliseconds)) {}

std::shared_ptr<SoundMap> SoundMap::OfBytes(double length, std::unique_ptr<char[]> bytes,
                                            std::size_t size, std::size_t pagesAt) {
    auto map = std::make_shared<SoundMap>(length);
    const std::size_t pages = map->Pages();
    if (pagesAt > size || size - pagesAt != pages * (sizeof(SoundPage) + sizeof(SpeechPage)))
        return nullptr;
    // Pages are plain bytes, which may lie anywhere.
    const auto* shapes = reinterpret_cast<const SoundPage*>(bytes.get() + pagesAt);
    const auto* speech = reinterpret_cast<const SpeechPage*>(shapes + pages);
    for (std::size_t page = 0; page < pages; ++page) {
        map->m_slots[page].shape = shapes + page;
        map->m_slots[page].speech = speech + page;
    }
    map->m_bytes = std::move(bytes);
    map->m_added = 2 * pages;
    return map;
}

double SoundMap::Progress() const {
    return m_slots.empty() ? 1 : static_cast<double>(Changes()) / static_cast<double>(2 * Pages());
}

bool SoundMap::Knows(double from, double to) const {
    const std::int64_t begin = std::clamp<std::int64_t>(Milliseconds(from), 0, m_milliseconds);
    const std::int64_t end = std::clamp<std::int64_t>(Milliseconds(to) + 1, 0, m_milliseconds);
    for (std::int64_t at = begin; at < end;
         at += SoundPage::Milliseconds - at % SoundPage::Milliseconds) {
        const auto page = static_cast<std::size_t>(at / SoundPage::Milliseconds);
        if (Shape(page) == nullptr || SpeechOf(page) == nullptr)
            return false;
    }
    return true;
}

void SoundMap::Columns(double from, double step, std::span<SoundColumn> columns) const {
    const int finest = FinestFor(step * 1000);
    std::int64_t begin = Milliseconds(from);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::int64_t next = Milliseconds(from + static_cast<double>(i + 1) * step);
        columns[i] = Column(begin, std::max(next, begin + 1), finest);
        begin = next;
    }
}

/// Put together from as few buckets as fill the column.
SoundColumn SoundMap::Column(std::int64_t from, std::int64_t to, int finest) const {
    SoundColumn column;
    from = std::clamp<std::int64_t>(from, 0, m_milliseconds);
    to = std::clamp<std::int64_t>(to, 0, m_milliseconds);
    if (from >= to)
        return column;
    std::int8_t least = 127;
    std::int8_t greatest = -127;
    float power = 0;
    std::int64_t known = 0;
    const std::int64_t unit = SoundPage::BucketMilliseconds(finest);
    const std::int64_t end = std::max(to / unit, from / unit + 1) * unit;
    for (std::int64_t at = from / unit * unit; at < end;) {
        const std::int64_t page = at / SoundPage::Milliseconds;
        const std::int64_t inPage = at % SoundPage::Milliseconds;
        const SoundPage* shape = Shape(static_cast<std::size_t>(page));
        if (shape == nullptr) {
            at += SoundPage::Milliseconds - inPage;
            continue;
        }
        const int level = LongestLevel(at, end, finest);
        const std::int64_t length = SoundPage::BucketMilliseconds(level);
        const auto bucket = static_cast<std::size_t>(SoundPage::First(level) + inPage / length);
        least = std::min(least, shape->least[bucket]);
        greatest = std::max(greatest, shape->greatest[bucket]);
        power += Power(shape->loudness[bucket]) * static_cast<float>(length);
        known += length;
        at += length;
    }
    if (known == 0)
        return column;
    column.known = true;
    column.least = UnpackSample(least);
    column.greatest = UnpackSample(greatest);
    column.loudness = UnpackLoudness(PackPower(power / static_cast<float>(known)));
    column.speech = MeanSpeech(from, to);
    return column;
}

float SoundMap::MeanSpeech(std::int64_t from, std::int64_t to) const {
    const bool coarse = to - from >= 2 * CoarseMilliseconds;
    const std::int64_t length = coarse ? CoarseMilliseconds : ValueMilliseconds;
    std::int64_t value = (from + length - 1) / length;
    std::int64_t end = (to + length - 1) / length;
    if (value >= end) {
        value = from / length;
        end = value + 1;
    }
    const std::int64_t inPage = SoundPage::Milliseconds / length;
    std::int64_t sum = 0;
    std::int64_t count = 0;
    while (value < end) {
        const std::int64_t page = value / inPage;
        const std::int64_t pageEnd = std::min((page + 1) * inPage, end);
        const SpeechPage* speech = SpeechOf(static_cast<std::size_t>(page));
        if (speech == nullptr) {
            value = pageEnd;
            continue;
        }
        for (; value < pageEnd; ++value, ++count) {
            const auto at = static_cast<std::size_t>(value % inPage);
            sum += coarse ? speech->coarse[at] : speech->fine[at];
        }
    }
    return count == 0 ? 0 : static_cast<float>(sum) / static_cast<float>(255 * count);
}

std::optional<float> SoundMap::Speech(double time) const {
    const std::int64_t millisecond = Milliseconds(time);
    if (millisecond < 0 || millisecond >= m_milliseconds)
        return {};
    const SpeechPage* speech =
        SpeechOf(static_cast<std::size_t>(millisecond / SoundPage::Milliseconds));
    if (speech == nullptr)
        return {};
    const auto value =
        static_cast<std::size_t>(millisecond % SoundPage::Milliseconds / ValueMilliseconds);
    return static_cast<float>(speech->fine[value]) / 255;
}

std::vector<float> SoundMap::SpeechCurve() const {
    std::vector<float> curve(Values());
    for (std::size_t page = 0; page < Pages(); ++page) {
        const SpeechPage* speech = SpeechOf(page);
        if (speech == nullptr)
            continue;
        const std::size_t first = page * SpeechPage::Values;
        const std::size_t count = std::min<std::size_t>(SpeechPage::Values, curve.size() - first);
        for (std::size_t i = 0; i < count; ++i)
            curve[first + i] = static_cast<float>(speech->fine[i]) / 255;
    }
    return curve;
}

std::vector<SpeechSpan> SoundMap::SpeechSpans() const {
    std::vector<SpeechSpan> spans;
    bool spoken = false;
    const auto values = static_cast<std::int64_t>(Values());
    for (std::int64_t value = 0; value < values; ++value) {
        const bool now = Spoken(value).value_or(false);
        if (now && !spoken)
            spans.push_back({EdgeTime(value), m_length});
        if (!now && spoken)
            spans.back().end = EdgeTime(value);
        spoken = now;
    }
    return spans;
}

std::optional<double> SoundMap::NextSpeechEdge(double time, Direction direction) const {
    const auto values = static_cast<std::int64_t>(Values());
    const std::int64_t step = direction == Direction::Forward ? 1 : -1;
    // An edge lies where a value begins; the search starts a little too early.
    std::int64_t value =
        std::clamp<std::int64_t>(Milliseconds(time) / ValueMilliseconds - step, 0, values);
    for (; value >= 0 && value <= values; value += step) {
        const double edge = EdgeTime(value);
        const bool beyond = step > 0 ? edge >= time + SameEdge : edge <= time - SameEdge;
        if (beyond && Spoken(value).value_or(false) != Spoken(value - 1).value_or(false))
            return edge;
    }
    return {};
}

void SoundMap::Add(std::size_t page, const SoundPage& shape) {
    Slot& slot = m_slots[page];
    if (slot.shape.load(std::memory_order_relaxed) != nullptr)
        return;
    // A damaged film may claim to be days long; its silence costs nothing.
    if (std::memcmp(&shape, &SilentPage, sizeof shape) == 0) {
        slot.shape.store(&SilentPage, std::memory_order_release);
    } else {
        slot.ownShape = std::make_unique<SoundPage>(shape);
        slot.shape.store(slot.ownShape.get(), std::memory_order_release);
    }
    m_added.fetch_add(1, std::memory_order_release);
}

void SoundMap::Add(std::size_t page, const SpeechPage& speech) {
    Slot& slot = m_slots[page];
    if (slot.speech.load(std::memory_order_relaxed) != nullptr)
        return;
    slot.ownSpeech = std::make_unique<SpeechPage>(speech);
    slot.speech.store(slot.ownSpeech.get(), std::memory_order_release);
    m_added.fetch_add(1, std::memory_order_release);
}

const SoundPage* SoundMap::Shape(std::size_t page) const {
    return page < Pages() ? m_slots[page].shape.load(std::memory_order_acquire) : nullptr;
}

const SpeechPage* SoundMap::SpeechOf(std::size_t page) const {
    return page < Pages() ? m_slots[page].speech.load(std::memory_order_acquire) : nullptr;
}

std::size_t SoundMap::Values() const {
    return static_cast<std::size_t>((m_milliseconds + ValueMilliseconds - 1) / ValueMilliseconds);
}

/// Whether someone speaks in this value; nothing while it is not known.
std::optional<bool> SoundMap::Spoken(std::int64_t value) const {
    if (value < 0 || value >= static_cast<std::int64_t>(Values()))
        return {};
    const auto at = static_cast<std::size_t>(value);
    const SpeechPage* speech = SpeechOf(at / SpeechPage::Values);
    if (speech == nullptr)
        return {};
    return speech->fine[at % SpeechPage::Values] >= Threshold;
}

double SoundMap::EdgeTime(std::int64_t value) const {
    return std::min(static_cast<double>(value * ValueMilliseconds) / 1000, m_length);
}
