#pragma once

#include <string>

/// What a document's file was made of beside its titles, so that saving writes it
/// back the way it came. A new document has the defaults.
struct FileStyle {
    enum class Encoding { Utf8, Utf16LittleEndian, Utf16BigEndian, CodePage };

    Encoding encoding = Encoding::Utf8;
    /// The file began with a byte-order mark.
    bool byteOrderMark = false;

    /// A SAMI file was read up to its body tag: `samiHeader`, `samiClass` and
    /// `samiFooter` are its own (UTF-8) and are written back.
    bool keepSamiHeader = false;
    std::string samiHeader;
    std::string samiClass;
    std::string samiFooter;

    bool operator==(const FileStyle&) const = default;
};
