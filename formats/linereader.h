#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

/// The lines of a text, as views into it: ended by CR LF, LF or CR. The text after
/// the last line end is a line too, unless it is empty.
class LineReader {
  public:
    explicit LineReader(std::string_view text)
        : m_text(text) {}

    bool AtEnd() const { return m_at >= m_text.size(); }
    /// The offset of the line that comes next.
    std::size_t Position() const { return m_at; }
    std::string_view Text() const { return m_text; }

    /// The next line without its end; empty at the end of the text.
    std::string_view Next() {
        const std::size_t begin = m_at;
        // A text without CR, or without LF, is not searched for it once per line.
        if (m_return < begin || m_return == NotSought)
            m_return = Find('\r', begin, m_text.size());
        const std::size_t end = Find('\n', begin, m_return);
        m_at = std::min(end + 1, m_text.size());
        m_crLf = end == m_return && m_at < m_text.size() && m_text[m_at] == '\n';
        if (m_crLf)
            ++m_at;
        return m_text.substr(begin, end - begin);
    }

    /// The line last read was ended by CR LF, as lines within a title are.
    bool EndedByCrLf() const { return m_crLf; }

  private:
    static constexpr std::size_t NotSought = static_cast<std::size_t>(-1);

    /// The offset of the character, or `end`.
    std::size_t Find(char c, std::size_t begin, std::size_t end) const {
        if (begin >= end)
            return end;
        const void* found = std::memchr(m_text.data() + begin, c, end - begin);
        return found == nullptr
                   ? end
                   : static_cast<std::size_t>(static_cast<const char*>(found) - m_text.data());
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_return = NotSought;
    bool m_crLf = false;
};
