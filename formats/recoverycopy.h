#pragma once

#include "model/draft.h"
#include "model/filestyle.h"
#include "model/subtitles.h"
#include "model/times.h"
#include "model/versions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a recovery copy holds beside the titles, their undo history and the versions.
struct RecoveryNotes {
    /// As the file boxes show them.
    std::string mediaFile;
    std::string subtitleFile;
    double frameRate = DefaultFrameRate;
    FileStyle style;
    std::optional<Draft> draft;

    bool operator==(const RecoveryNotes&) const = default;
};

/// A document laid out for storing. Quick to make; afterwards the titles are no longer
/// needed.
class RecoveryBody {
  public:
    /// So many versions, the newest ones, are stored, as far as this room goes (bytes).
    static constexpr std::size_t MostVersions = 10;
    static constexpr std::size_t MostVersionBytes = std::size_t{16} << 20U;

    RecoveryBody() = default;
    RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes);
    RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes, const Versions& earlier);

    const std::string& Bytes() const { return m_bytes; }
    const std::vector<Version>& Earlier() const { return m_earlier; }
    /// Equal when times and texts of all titles are equal; nothing else counts.
    std::uint64_t TitlesFingerprint() const;
    bool HasDraft() const { return m_hasDraft; }

  private:
    std::string m_bytes;
    std::size_t m_titlesAt = 0;
    std::vector<Version> m_earlier;
    bool m_hasDraft = false;
};

/// How a copy came to be, outside the document.
struct RecoveryStamp {
    /// Seconds since 1970.
    std::int64_t time = 0;
    /// The user did not want the work: it is kept but not offered.
    bool declined = false;

    bool operator==(const RecoveryStamp&) const = default;
};

/// The whole copy, with checksums over all of it.
std::string SealRecoveryCopy(const RecoveryBody& body, const RecoveryStamp& stamp);

/// The same copy with another stamp; nothing when it is damaged.
std::optional<std::string> RestampRecoveryCopy(std::string_view copy, const RecoveryStamp& stamp);

struct RecoveredDocument {
    RecoveryStamp stamp;
    RecoveryNotes notes;
    /// With its undo history; recording is on.
    SUBTITLES titles;
    /// The newest first.
    std::vector<Version> earlier;
    /// The copy was damaged; this is what could be read of it.
    bool damaged = false;
    /// Titles that could not be read, as far as that can be told.
    std::int32_t lostTitles = 0;
};

/// Nothing when the copy is torn, damaged in any bit, or of a version yet to come.
std::optional<RecoveredDocument> ReadRecoveryCopy(std::string_view copy);

/// A copy of a layout that only a later release knows.
bool IsLaterRecoveryCopy(std::string_view copy);

/// The same for a whole copy. Of a damaged one, all that its checksums vouch for; the undo
/// history only when no title is lost. Nothing when no title can be read.
std::optional<RecoveredDocument> SalvageRecoveryCopy(std::string_view copy);
