#include "formats/mending.h"

#include "base/utf8.h"

#include <algorithm>
#include <cstring>

namespace {

bool IsWideBlank(char32_t c) {
    switch (c) {
    case ' ':
    case '\t':
    case '\v':
    case '\f':
    case 0x1A: // the end mark of old systems
    case 0x85:
    case 0xA0: // no-break space
    case 0x180E:
    case 0x202F:
    case 0x205F:
    case 0x2060:
    case 0x3000:
    case 0xFEFF: // byte-order mark
        return true;
    default:
        return c >= 0x2000 && c <= 0x200F;
    }
}

} // namespace

std::string_view TrimWide(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        std::size_t next = begin;
        if (!IsWideBlank(NextCodePoint(text, next)))
            break;
        begin = next;
    }
    text.remove_prefix(begin);
    while (!text.empty()) {
        std::size_t last = text.size() - 1;
        while (last > 0 && text.size() - last < 4 &&
               (static_cast<unsigned char>(text[last]) & 0xC0U) == 0x80U)
            --last;
        std::size_t next = last;
        const bool blank = IsWideBlank(NextCodePoint(text, next)) && next == text.size();
        if (!blank)
            break;
        text = text.substr(0, last);
    }
    return text;
}

void MendList::Add(const char* one, const char* more, std::size_t line) {
    const auto known = std::find_if(m_mends.begin(), m_mends.end(), [one](const Mend& mend) {
        return std::strcmp(mend.one, one) == 0;
    });
    if (known != m_mends.end())
        ++known->count;
    else
        m_mends.push_back({one, more, 1, static_cast<std::int32_t>(line)});
}

std::string MendSummary(const std::vector<Mend>& mends, bool withLines) {
    std::string summary;
    for (const Mend& mend : mends) {
        if (!summary.empty())
            summary += ", ";
        summary += std::to_string(mend.count) + " " + (mend.count == 1 ? mend.one : mend.more);
        if (withLines) {
            summary += mend.count == 1 ? " (line " : " (first on line ";
            summary += std::to_string(mend.line) + ")";
        }
    }
    return summary;
}
