#include "base/bytedecoder.h"

#include <array>
#include <cerrno>

#include <iconv.h>

ByteDecoder::ByteDecoder(const std::string& page)
    : m_handle(iconv_open("UTF-32LE", page.c_str())) {}

ByteDecoder::~ByteDecoder() {
    if (Valid())
        iconv_close(m_handle);
}

bool ByteDecoder::Valid() const {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface's own way to say "none"
    return m_handle != reinterpret_cast<iconv_t>(-1);
}

ByteDecoder::Outcome ByteDecoder::Decode(unsigned value, char32_t& character) const {
    char in = static_cast<char>(value);
    std::array<unsigned char, 16> out{};
    char* from = &in;
    auto* to = reinterpret_cast<char*>(out.data());
    std::size_t fromLeft = 1;
    std::size_t toLeft = out.size();
    iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
    errno = 0;
    if (iconv(m_handle, &from, &fromLeft, &to, &toLeft) == static_cast<std::size_t>(-1))
        return errno == EILSEQ ? Outcome::Undefined : Outcome::NotSingleByte;
    // Some pages hold a character back until it is known what follows.
    iconv(m_handle, nullptr, nullptr, &to, &toLeft);
    if (out.size() - toLeft != sizeof(char32_t))
        return Outcome::NotSingleByte;
    character = static_cast<char32_t>(out[0]) | static_cast<char32_t>(out[1]) << 8 |
                static_cast<char32_t>(out[2]) << 16;
    return Outcome::Character;
}
