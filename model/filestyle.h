#pragma once

#include <string>

/// What a document's file was made of beside its titles, so that saving writes it
/// back the way it came. A new document has the defaults.
struct FileStyle {
    enum class Encoding { Utf8, Utf16LittleEndian, Utf16BigEndian, CodePage };

    Encoding encoding = Encoding::Utf8;
    /// The file began with a byte-order mark.
    bool byteOrderMark = false;

    /// Which format `kept` belongs to (`Format::keeps`); empty when none keeps anything.
    std::string format;
    /// What that format writes back beside the titles, such as a header. Only the
    /// format itself reads the bytes; everybody else carries them along.
    std::string kept;

    /// SubRip files are written with italics and bold. Not read from a file: whoever saves
    /// decides it.
    bool subRipStyles = false;

    /// With `Encoding::CodePage` the page's usual name; empty: the one that whoever saves has
    /// set.
    std::string codePage = {};

    bool operator==(const FileStyle&) const = default;
};
