#include "model/versions.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

namespace {

// Where a block ends is told by the texts themselves, so that after an insertion or a
// deletion the same blocks come about again.
constexpr std::size_t LeastTitles = 16;
constexpr std::size_t MostTitles = 256;
constexpr std::size_t MostBlockBytes = std::size_t{1} << 18U;
constexpr std::size_t OneOf = 64;

std::size_t HashOf(std::string_view bytes) {
    return std::hash<std::string_view>()(bytes);
}

std::string_view BytesOf(const std::vector<double>& numbers) {
    return {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(double)};
}

std::size_t HashOf(const TitleTexts& texts) {
    return HashOf(texts.bytes) + texts.ends.size();
}

std::size_t HashOf(const TitleTimes& times) {
    return HashOf(BytesOf(times.startsAndEnds));
}

bool Same(const TitleTexts& one, const TitleTexts& other) {
    return one == other;
}

// By their bits: a time that is no number is the same as itself.
bool Same(const TitleTimes& one, const TitleTimes& other) {
    return BytesOf(one.startsAndEnds) == BytesOf(other.startsAndEnds);
}

std::size_t SizeOf(const TitleTexts& texts) {
    std::size_t size = sizeof texts + texts.bytes.capacity() +
                       texts.ends.capacity() * sizeof(std::uint32_t) +
                       texts.extras.capacity() * sizeof(TitleExtra);
    for (const TitleExtra& extra : texts.extras)
        size += extra.Bytes().size();
    return size;
}

std::size_t SizeOf(const TitleTimes& times) {
    return sizeof times + times.startsAndEnds.capacity() * sizeof(double);
}

std::size_t SizeOf(const Version& version) {
    return sizeof version + version.blocks.capacity() * sizeof(TitleBlock);
}

std::string_view TextAt(const TitleTexts& texts, std::size_t at) {
    const std::size_t from = at == 0 ? 0 : texts.ends[at - 1];
    return std::string_view(texts.bytes).substr(from, texts.ends[at] - from);
}

TitleExtra ExtraAt(const TitleTexts& texts, std::size_t at) {
    return at < texts.extras.size() ? texts.extras[at] : TitleExtra();
}

/// How often each title occurs in blocks.
class Titles {
  public:
    void Add(const TitleBlock& block, std::int64_t times) {
        for (std::size_t i = 0; i < block.texts->ends.size(); ++i) {
            const std::size_t time =
                HashOf(BytesOf(block.times->startsAndEnds)
                           .substr(i * 2 * sizeof(double), 2 * sizeof(double)));
            const std::size_t words =
                HashOf(TextAt(*block.texts, i)) * 31 + HashOf(ExtraAt(*block.texts, i).Bytes());
            m_balance[words * 31 + time] += times;
        }
    }

    std::int32_t Differing() const {
        std::int64_t more = 0;
        std::int64_t less = 0;
        for (const auto& [title, balance] : m_balance)
            (balance > 0 ? more : less) += std::abs(balance);
        return static_cast<std::int32_t>(std::max(more, less));
    }

  private:
    std::unordered_map<std::size_t, std::int64_t> m_balance;
};

} // namespace

SUBTITLES TitlesOf(const Version& version) {
    SUBTITLES titles;
    titles.Reserve(version.count);
    for (const TitleBlock& block : version.blocks)
        for (std::size_t i = 0; i < block.texts->ends.size(); ++i)
            titles.Add(block.times->startsAndEnds[2 * i], block.times->startsAndEnds[2 * i + 1],
                       std::string(TextAt(*block.texts, i)), ExtraAt(*block.texts, i));
    titles.UndoEnabled(true);
    return titles;
}

std::int32_t DifferingTitles(const Version& one, const Version& other) {
    // Blocks that both share cancel each other out unseen.
    std::map<std::pair<const void*, const void*>, std::pair<std::int64_t, const TitleBlock*>>
        blocks;
    const auto count = [&blocks](const Version& version, std::int64_t by) {
        for (const TitleBlock& block : version.blocks) {
            auto& [balance, sample] = blocks[{block.texts.get(), block.times.get()}];
            balance += by;
            sample = &block;
        }
    };
    count(one, 1);
    count(other, -1);
    Titles titles;
    for (const auto& [key, entry] : blocks)
        if (entry.first != 0)
            titles.Add(*entry.second, entry.first);
    return titles.Differing();
}

template <typename PART>
std::shared_ptr<const PART> Versions::Find(const Pool<PART>& pool, const PART& part) {
    const auto [first, last] = pool.equal_range(HashOf(part));
    const auto found =
        std::find_if(first, last, [&](const auto& entry) { return Same(*entry.second, part); });
    return found == last ? nullptr : found->second;
}

template <typename PART>
void Versions::Hold(Pool<PART>& pool, std::shared_ptr<const PART>& part) {
    if (auto shared = Find(pool, *part)) {
        part = std::move(shared);
        return;
    }
    m_bytes += SizeOf(*part);
    pool.emplace(HashOf(*part), part);
}

/// Two hold a part that nobody else needs: the pool, and the version that goes.
template <typename PART>
void Versions::Release(Pool<PART>& pool, std::shared_ptr<const PART>& part) {
    constexpr long PoolAndThis = 2;
    if (part.use_count() == PoolAndThis) {
        const auto [first, last] = pool.equal_range(HashOf(*part));
        pool.erase(
            std::find_if(first, last, [&](const auto& entry) { return entry.second == part; }));
        m_bytes -= SizeOf(*part);
    }
    part.reset();
}

Version Versions::Present(const SUBTITLES& titles) const {
    Version version;
    version.count = titles.Count();
    TitleTexts texts;
    TitleTimes times;
    const auto close = [&] {
        auto sharedTexts = Find(m_texts, texts);
        auto sharedTimes = Find(m_times, times);
        version.blocks.push_back(
            {sharedTexts ? std::move(sharedTexts) : std::make_shared<const TitleTexts>(texts),
             sharedTimes ? std::move(sharedTimes) : std::make_shared<const TitleTimes>(times)});
        texts.bytes.clear();
        texts.ends.clear();
        texts.extras.clear();
        times.startsAndEnds.clear();
    };
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const std::string& text = titles.Text(i);
        texts.bytes += text;
        texts.ends.push_back(static_cast<std::uint32_t>(texts.bytes.size()));
        if (const TitleExtra& extra = titles.Extra(i); !extra.Empty()) {
            texts.extras.resize(texts.ends.size());
            texts.extras.back() = extra;
        }
        times.startsAndEnds.push_back(titles.StartTime(i));
        times.startsAndEnds.push_back(titles.EndTime(i));
        const std::size_t count = texts.ends.size();
        if (count >= MostTitles || texts.bytes.size() >= MostBlockBytes ||
            (count >= LeastTitles && HashOf(text) % OneOf == 0))
            close();
    }
    if (!texts.ends.empty())
        close();
    return version;
}

void Versions::Hold(Version& version) {
    for (TitleBlock& block : version.blocks) {
        Hold(m_texts, block.texts);
        Hold(m_times, block.times);
    }
    m_bytes += SizeOf(version);
}

void Versions::Keep(const SUBTITLES& titles, Version about) {
    Version laidOut = Present(titles);
    about.count = laidOut.count;
    about.blocks = std::move(laidOut.blocks);
    about.blocks.shrink_to_fit();
    Hold(about);
    m_versions.push_front(std::move(about));
    while (m_versions.size() > Most || (m_bytes > m_mostBytes && m_versions.size() > 1))
        DropOldest();
}

void Versions::Restore(Version version) {
    Hold(version);
    m_versions.push_back(std::move(version));
    while (m_versions.size() > Most || (m_bytes > m_mostBytes && m_versions.size() > 1))
        DropOldest();
}

void Versions::DropOldest() {
    Version version = std::move(m_versions.back());
    m_versions.pop_back();
    Drop(std::move(version));
}

void Versions::DropNewest() {
    if (m_versions.empty())
        return;
    Version version = std::move(m_versions.front());
    m_versions.pop_front();
    Drop(std::move(version));
}

void Versions::Drop(Version version) {
    m_bytes -= SizeOf(version);
    for (TitleBlock& block : version.blocks) {
        Release(m_texts, block.texts);
        Release(m_times, block.times);
    }
}

void Versions::Clear() {
    while (!m_versions.empty())
        DropOldest();
}
