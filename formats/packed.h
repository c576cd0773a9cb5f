#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// Numbers and texts laid out as bytes: numbers little-endian, texts led by their length.

template <typename NUMBER>
void PutNumber(std::string& out, NUMBER number) {
    static_assert(std::endian::native == std::endian::little);
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    out.append(bytes, sizeof number);
}

inline void PutText(std::string& out, std::string_view text) {
    PutNumber(out, static_cast<std::uint32_t>(text.size()));
    out.append(text);
}

/// Reads such bytes back, in the order in which they were put. Once anything lies
/// outside the bytes it has `Failed`, and all that is read is 0 or empty.
class PackedReader {
  public:
    explicit PackedReader(std::string_view bytes)
        : m_bytes(bytes) {}

    template <typename NUMBER>
    NUMBER Number() {
        NUMBER number{};
        const std::string_view bytes = Bytes(sizeof number);
        if (!m_failed)
            std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }

    /// A view of the bytes themselves.
    std::string_view View() { return Bytes(Number<std::uint32_t>()); }
    std::string Text() { return std::string(View()); }

    /// A number that must be below the limit.
    template <typename NUMBER>
    NUMBER Below(NUMBER limit) {
        const auto number = Number<NUMBER>();
        m_failed = m_failed || number >= limit;
        return m_failed ? NUMBER{} : number;
    }

    std::size_t Left() const { return m_bytes.size(); }
    bool Failed() const { return m_failed; }
    void Fail() { m_failed = true; }

  private:
    std::string_view Bytes(std::size_t count) {
        if (m_failed || count > m_bytes.size()) {
            m_failed = true;
            return {};
        }
        const std::string_view bytes = m_bytes.substr(0, count);
        m_bytes.remove_prefix(count);
        return bytes;
    }

    std::string_view m_bytes;
    bool m_failed = false;
};
