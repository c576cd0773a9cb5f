#include "formats/recoveryversions.h"

#include "formats/packed.h"
#include "formats/recoverylayout.h"

#include <memory>
#include <optional>
#include <unordered_map>

namespace {

using RecoveryVersions::Kind;

/// Parts may occur again and again; a version of more titles than that is none.
constexpr std::size_t MostTitles = 10'000'000;

void PutPart(std::string& out, const TitleTexts& texts) {
    for (const std::uint32_t end : texts.ends)
        PutNumber(out, end);
    PutText(out, texts.bytes);
    PutNumber(out, static_cast<std::uint32_t>(texts.extras.size()));
    for (const TitleExtra& extra : texts.extras)
        PutText(out, extra.Bytes());
}

void PutPart(std::string& out, const TitleTimes& times) {
    for (const double time : times.startsAndEnds)
        PutNumber(out, time);
}

std::size_t CountOf(const TitleTexts& texts) {
    return texts.ends.size();
}

std::size_t CountOf(const TitleTimes& times) {
    return times.startsAndEnds.size();
}

/// No more room is made than the bytes can fill.
template <typename NUMBER>
std::vector<NUMBER> ReadNumbers(PackedReader& reader, std::uint32_t count) {
    std::vector<NUMBER> numbers;
    if (count > reader.Left() / sizeof(NUMBER)) {
        reader.Fail();
        return numbers;
    }
    numbers.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i)
        numbers.push_back(reader.Number<NUMBER>());
    return numbers;
}

bool Ascend(const std::vector<std::uint32_t>& ends, std::size_t last) {
    std::uint32_t before = 0;
    for (const std::uint32_t end : ends) {
        if (end < before)
            return false;
        before = end;
    }
    return before == last;
}

std::optional<TitleTexts> ReadTexts(const SealedBlock& block) {
    PackedReader reader(block.body);
    TitleTexts texts;
    texts.ends = ReadNumbers<std::uint32_t>(reader, block.count);
    texts.bytes = reader.Text();
    const auto extras = reader.Below<std::uint32_t>(block.count + 1);
    for (std::uint32_t i = 0; i < extras && !reader.Failed(); ++i)
        texts.extras.emplace_back(reader.Text());
    if (reader.Failed() || reader.Left() != 0 || !Ascend(texts.ends, texts.bytes.size()))
        return std::nullopt;
    return texts;
}

std::optional<TitleTimes> ReadTimes(const SealedBlock& block) {
    PackedReader reader(block.body);
    TitleTimes times{ReadNumbers<double>(reader, block.count)};
    if (reader.Failed() || reader.Left() != 0)
        return std::nullopt;
    return times;
}

/// Writes each part once and knows it by its number.
template <typename PART>
class PartWriter {
  public:
    PartWriter(std::string& out, Kind kind)
        : m_out(out)
        , m_kind(kind) {}

    std::uint32_t NumberOf(const PART& part) {
        const auto [known, added] =
            m_numbers.emplace(&part, static_cast<std::uint32_t>(m_numbers.size()));
        if (added) {
            BlockScope block(m_out, m_kind, known->second);
            block.Count(static_cast<std::uint32_t>(CountOf(part)));
            PutPart(m_out, part);
        }
        return known->second;
    }

  private:
    std::string& m_out;
    Kind m_kind;
    std::unordered_map<const PART*, std::uint32_t> m_numbers;
};

template <typename PART>
using Parts = std::unordered_map<std::uint32_t, std::shared_ptr<const PART>>;

template <typename PART>
void Take(Parts<PART>& parts, std::uint32_t number, std::optional<PART> part) {
    if (part)
        parts.emplace(number, std::make_shared<const PART>(*std::move(part)));
}

template <typename PART>
std::shared_ptr<const PART> PartOf(const Parts<PART>& parts, std::uint32_t number) {
    const auto part = parts.find(number);
    return part == parts.end() ? nullptr : part->second;
}

std::optional<Version> ReadVersion(const SealedBlock& block, const Parts<TitleTexts>& texts,
                                   const Parts<TitleTimes>& times) {
    PackedReader reader(block.body);
    Version version;
    version.step = reader.Text();
    version.time = reader.Number<std::int64_t>();
    version.subtitleFile = reader.Text();
    version.style = RecoveryLayout::ReadStyle(reader, RecoveryLayout::InBlocks);
    std::size_t count = 0;
    for (std::uint32_t i = 0; i < block.count && !reader.Failed(); ++i) {
        TitleBlock titles{PartOf(texts, reader.Number<std::uint32_t>()), nullptr};
        titles.times = PartOf(times, reader.Number<std::uint32_t>());
        if (!titles.texts || !titles.times ||
            titles.times->startsAndEnds.size() != 2 * titles.texts->ends.size())
            return std::nullopt;
        count += titles.texts->ends.size();
        version.blocks.push_back(std::move(titles));
    }
    if (reader.Failed() || reader.Left() != 0 || count > MostTitles)
        return std::nullopt;
    version.count = static_cast<std::int32_t>(count);
    return version;
}

} // namespace

namespace RecoveryVersions {

void Put(std::string& out, const std::vector<Version>& versions, std::size_t most) {
    const std::size_t before = out.size();
    PartWriter<TitleTexts> texts(out, Texts);
    PartWriter<TitleTimes> times(out, Times);
    for (const Version& version : versions) {
        const std::size_t start = out.size();
        std::vector<std::uint32_t> parts;
        for (const TitleBlock& block : version.blocks) {
            parts.push_back(texts.NumberOf(*block.texts));
            parts.push_back(times.NumberOf(*block.times));
        }
        {
            BlockScope block(out, OneVersion);
            block.Count(static_cast<std::uint32_t>(version.blocks.size()));
            PutText(out, version.step);
            PutNumber(out, version.time);
            PutText(out, version.subtitleFile);
            RecoveryLayout::PutStyle(out, version.style);
            for (const std::uint32_t part : parts)
                PutNumber(out, part);
        }
        if (out.size() - before > most)
            return out.resize(start);
    }
}

std::vector<Version> Read(const std::vector<SealedBlock>& blocks, bool& whole) {
    Parts<TitleTexts> texts;
    Parts<TitleTimes> times;
    std::vector<Version> versions;
    for (const SealedBlock& block : blocks) {
        if (block.kind == Texts) {
            Take(texts, block.first, ReadTexts(block));
        } else if (block.kind == Times) {
            Take(times, block.first, ReadTimes(block));
        } else if (block.kind == OneVersion) {
            if (auto version = ReadVersion(block, texts, times))
                versions.push_back(*std::move(version));
            else
                whole = false;
        }
    }
    return versions;
}

} // namespace RecoveryVersions
