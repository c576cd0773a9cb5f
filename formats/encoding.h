#pragma once

#include "base/wholefile.h"
#include "model/filestyle.h"

#include <string>
#include <string_view>

/// A file's text as UTF-8. What is UTF-8 already is not copied.
///
/// A byte-order mark decides how the bytes are read, and is no part of the text;
/// without one, what is valid UTF-8 is UTF-8 and anything else is in the code
/// page; where that is `GuessedPage`, in the one that is guessed. Broken UTF-16 gives replacement
/// characters; single broken bytes in a file marked as UTF-8 are read in the code page.
class DecodedText {
  public:
    DecodedText(FileBytes bytes, const std::string& codePage);

    std::string_view Text() const {
        return m_inPlace ? m_bytes.View().substr(m_skip) : m_converted;
    }
    FileStyle::Encoding Encoding() const { return m_encoding; }
    bool ByteOrderMark() const { return m_skip > 0; }
    /// The page that was used; empty: none was.
    const std::string& CodePageName() const { return m_codePage; }

  private:
    FileBytes m_bytes;
    std::string m_converted;
    std::string m_codePage;
    FileStyle::Encoding m_encoding = FileStyle::Encoding::Utf8;
    std::size_t m_skip = 0;
    bool m_inPlace = true;
};

/// What a file that is written as UTF-8 begins with.
std::string_view Utf8Mark(const FileStyle& style);
/// The bytes of a whole file, which was composed as UTF-8 with its mark, in the
/// style's encoding; `codePage` counts where the style names none. UTF-8 where the code page lacks
/// a character, or would be taken for UTF-8 by the next reader.
std::string Encode(std::string utf8, const FileStyle& style, const std::string& codePage);
