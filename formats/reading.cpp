#include "formats/reading.h"

#include "model/numbers.h"

#include <cmath>

std::int32_t FirstBeyond(const SUBTITLES& titles) {
    const auto canBeShown = [](double time) {
        return std::abs(time) <= LongestTime;
    };
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        if (!canBeShown(titles.StartTime(i)) || !canBeShown(titles.EndTime(i)))
            return i;
    return 0;
}

double LeadingNumber(std::string_view text) {
    constexpr std::size_t MostDigits = 9;
    std::uint32_t value = 0;
    std::size_t at = 0;
    for (; at < text.size() && at < MostDigits; ++at) {
        const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(text[at]) - '0');
        if (digit > 9)
            break;
        value = value * 10 + digit;
    }
    const bool plain = at > 0 && at < MostDigits && (at == text.size() || text[at] != '.');
    return plain ? value : Val(text);
}
