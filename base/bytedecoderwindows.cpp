#include "base/bytedecoder.h"

#include "base/ascii.h"

#include <charconv>
#include <string_view>

#include <windows.h>

namespace {

/// Windows numbers its pages; of those that carry their number in the name, this is added.
struct Family {
    std::string_view prefix;
    unsigned first;
};
constexpr Family Families[] = {
    {"windows-", 0}, {"cp", 0}, {"ibm", 0}, {"iso-8859-", 28590}, {"iso8859-", 28590}};

struct Single {
    std::string_view name;
    unsigned page;
};
constexpr Single Singles[] = {
    {"koi8-r", 20866}, {"koi8-u", 21866}, {"macintosh", 10000}, {"latin1", 28591}};

unsigned PageNumber(std::string name) {
    name = AsciiLower(name);
    for (const Single& single : Singles)
        if (name == single.name)
            return single.page;
    for (const Family& family : Families) {
        if (!name.starts_with(family.prefix))
            continue;
        unsigned number = 0;
        const char* const end = name.data() + name.size();
        const auto read = std::from_chars(name.data() + family.prefix.size(), end, number);
        if (read.ec == std::errc() && read.ptr == end)
            return family.first + number;
    }
    return 0;
}

} // namespace

ByteDecoder::ByteDecoder(const std::string& page)
    : m_page(PageNumber(page)) {
    CPINFO info;
    if (m_page != 0 && (!IsValidCodePage(m_page) || !GetCPInfo(m_page, &info)))
        m_page = 0;
}

ByteDecoder::~ByteDecoder() = default;

bool ByteDecoder::Valid() const {
    return m_page != 0;
}

ByteDecoder::Outcome ByteDecoder::Decode(unsigned value, char32_t& character) const {
    CPINFO info;
    if (!GetCPInfo(m_page, &info) || info.MaxCharSize != 1)
        return Outcome::NotSingleByte;
    const char in = static_cast<char>(value);
    wchar_t out[2];
    const int count = MultiByteToWideChar(m_page, MB_ERR_INVALID_CHARS, &in, 1, out, 2);
    if (count != 1)
        return count == 0 ? Outcome::Undefined : Outcome::NotSingleByte;
    character = out[0];
    return Outcome::Character;
}
