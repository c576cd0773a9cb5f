#pragma once

#include "model/filestyle.h"
#include "model/subtitles.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// Some titles in a row as a version keeps them: never changed, and shared by all
/// versions in which these titles are the same.
struct TitleTexts {
    /// One behind the other.
    std::string bytes;
    /// Where each text ends in them.
    std::vector<std::uint32_t> ends;
    /// What each title carries beside times and text; empty when none does.
    std::vector<TitleExtra> extras;

    bool operator==(const TitleTexts&) const = default;
};

/// Start and end of each title in a row, in seconds.
struct TitleTimes {
    std::vector<double> startsAndEnds;
};

/// A stretch of titles; as many times as texts.
struct TitleBlock {
    std::shared_ptr<const TitleTexts> texts;
    std::shared_ptr<const TitleTimes> times;
};

/// The document as it was before a step.
struct Version {
    /// The step's name for people, such as "Stretch".
    std::string step;
    /// When the step began: seconds since 1970.
    std::int64_t time = 0;
    /// As the file box showed it.
    std::string subtitleFile;
    FileStyle style;
    std::int32_t count = 0;
    std::vector<TitleBlock> blocks;
};

/// The titles of a version, without an undo history and with recording on.
SUBTITLES TitlesOf(const Version& version);

/// How many titles one has that the other has not, by times, text and what it carries, the larger
/// of both ways: 1 after one edit, insertion or deletion; all of them after a shift.
std::int32_t DifferingTitles(const Version& one, const Version& other);

/// The latest versions of the document, in storage that they share: a version costs what
/// changed since the others. The oldest ones go when there are more than `Most`, or when
/// they take more than `MostBytes`; the newest one always stays.
class Versions {
  public:
    static constexpr std::size_t Most = 100;
    static constexpr std::size_t MostBytes = std::size_t{64} << 20U;

    explicit Versions(std::size_t mostBytes = MostBytes)
        : m_mostBytes(mostBytes) {}

    /// What the version says of itself comes from `about`, its titles from the list.
    /// Linear: about 2 ms for 32,700 titles.
    void Keep(const SUBTITLES& titles, Version about);
    /// The titles of now, sharing what they can with the versions; they are not kept.
    Version Present(const SUBTITLES& titles) const;
    /// The newest goes; without one nothing happens.
    void DropNewest();
    /// Takes a stored version back in, as the oldest one.
    void Restore(Version version);

    std::size_t Count() const { return m_versions.size(); }
    /// The newest is 0; the age is below `Count`.
    const Version& At(std::size_t age) const { return m_versions[age]; }
    /// What all versions take together.
    std::size_t Bytes() const { return m_bytes; }
    void Clear();

  private:
    template <typename PART>
    using Pool = std::unordered_multimap<std::size_t, std::shared_ptr<const PART>>;

    template <typename PART>
    static std::shared_ptr<const PART> Find(const Pool<PART>& pool, const PART& part);
    template <typename PART>
    void Hold(Pool<PART>& pool, std::shared_ptr<const PART>& part);
    template <typename PART>
    void Release(Pool<PART>& pool, std::shared_ptr<const PART>& part);
    void Hold(Version& version);
    void Drop(Version version);
    void DropOldest();

    std::size_t m_mostBytes;
    std::deque<Version> m_versions;
    std::size_t m_bytes = 0;
    Pool<TitleTexts> m_texts;
    Pool<TitleTimes> m_times;
};
