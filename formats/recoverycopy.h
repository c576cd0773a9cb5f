#pragma once

#include "model/filestyle.h"
#include "model/subtitles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What a recovery copy holds beside the titles and their undo history.
struct RecoveryNotes {
    /// As the file boxes show them.
    std::string mediaFile;
    std::string subtitleFile;
    double frameRate = 25;
    FileStyle style;

    bool operator==(const RecoveryNotes&) const = default;
};

/// A document laid out for storing. Quick to make; afterwards the titles are no longer
/// needed.
class RecoveryBody {
  public:
    RecoveryBody() = default;
    RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes);

    const std::string& Bytes() const { return m_bytes; }
    /// Equal when times and texts of all titles are equal; nothing else counts.
    std::uint64_t TitlesFingerprint() const;

  private:
    std::string m_bytes;
    std::size_t m_titlesAt = 0;
};

/// How a copy came to be, outside the document.
struct RecoveryStamp {
    /// Seconds since 1970.
    std::int64_t time = 0;
    /// The user answered No when asked to save: it is kept but not offered.
    bool declined = false;

    bool operator==(const RecoveryStamp&) const = default;
};

/// The whole copy, with a checksum over all of it.
std::string SealRecoveryCopy(const RecoveryBody& body, const RecoveryStamp& stamp);

/// The same copy with another stamp; nothing when it is damaged.
std::optional<std::string> RestampRecoveryCopy(std::string_view copy, const RecoveryStamp& stamp);

struct RecoveredDocument {
    RecoveryStamp stamp;
    RecoveryNotes notes;
    /// With its undo history; recording is on.
    SUBTITLES titles;
};

/// Nothing when the copy is torn, damaged in any bit, or of another version.
std::optional<RecoveredDocument> ReadRecoveryCopy(std::string_view copy);
