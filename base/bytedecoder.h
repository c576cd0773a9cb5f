#pragma once

#include <cstdint>
#include <string>

/// Decodes the single bytes of a code page by the platform's own tables.
class ByteDecoder {
  public:
    /// A page by its usual name ("windows-1250", "ISO-8859-2", "KOI8-R").
    explicit ByteDecoder(const std::string& page);
    ~ByteDecoder();
    ByteDecoder(const ByteDecoder&) = delete;
    ByteDecoder& operator=(const ByteDecoder&) = delete;

    enum class Outcome : std::uint8_t { Character, Undefined, NotSingleByte };

    /// false: the platform knows no such page.
    bool Valid() const;
    Outcome Decode(unsigned value, char32_t& character) const;

  private:
#ifdef _WIN32
    unsigned m_page = 0;
#else
    void* m_handle;
#endif
};
