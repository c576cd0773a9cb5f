#include "editing/numberstext.h"

std::string NumbersText(std::span<const std::int32_t> numbers, std::int32_t count) {
    constexpr int MostPieces = 4;
    std::string text = std::to_string(numbers.size()) + " of " + std::to_string(count) +
                       (count == 1 ? " title" : " titles");
    int pieces = 0;
    for (std::size_t at = 0; at < numbers.size();) {
        std::size_t last = at;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
            ++last;
        if (++pieces > MostPieces)
            return text + " and more";
        text += ", " + std::to_string(numbers[at]);
        if (last > at)
            text += " to " + std::to_string(numbers[last]);
        at = last + 1;
    }
    return text;
}
