#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// A set of single-byte characters that is quick to ask.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char c : characters)
            m_holds[static_cast<unsigned char>(c)] = true;
    }
    constexpr bool Holds(char c) const { return m_holds[static_cast<unsigned char>(c)]; }
    /// The offset of the first one at or after `at`, or the size of the text.
    constexpr std::size_t Find(std::string_view text, std::size_t at) const {
        while (at < text.size() && !Holds(text[at]))
            ++at;
        return at;
    }

  private:
    std::array<bool, 256> m_holds{};
};

/// Copies the text; the rest of it from each of the characters on is given to the
/// function, which answers how much of it it has taken care of, 0 for nothing.
template <typename TAKE>
void CopyBut(std::string_view text, const CharacterSet& characters, std::string& out, TAKE take) {
    std::size_t kept = 0;
    for (std::size_t at = characters.Find(text, 0); at < text.size();
         at = characters.Find(text, at)) {
        out += text.substr(kept, at - kept);
        kept = at;
        const std::size_t taken = take(text.substr(at));
        at += taken == 0 ? 1 : taken;
        kept += taken;
    }
    out += text.substr(kept);
}
