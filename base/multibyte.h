#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// An encoding whose characters may take several bytes ("Shift_JIS", "GB18030", "EUC-KR",
/// "Big5"), by the platform's own tables. Bytes that make no character are kept: they
/// become characters for private use, and come back as they were.
class MultiByte {
  public:
    /// Null when the platform knows no encoding of that name.
    static std::shared_ptr<const MultiByte> Open(const std::string& name);
    virtual ~MultiByte() = default;

    virtual std::string ToUtf8(std::string_view bytes) const = 0;
    /// Nothing when the text holds a character that the encoding lacks.
    virtual std::optional<std::string> FromUtf8(std::string_view utf8) const = 0;
};
