#include "base/runtimeerror.h"
#include "fuzz/fuzzing.h"
#include "model/numbers.h"
#include "model/times.h"

#include <cmath>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    const double time = ParseTime(text);
    Require(!std::isnan(time), "a time is a number");
    if (text.find('-') == std::string_view::npos)
        Require(ParseTime("-" + std::string(text)) == -time, "a sign in front negates");
    // The quick way for plain times and the general one are of one mind: a further
    // digit is beyond the three that count, and takes the general way.
    const std::size_t comma = text.find(',');
    const std::size_t mark = comma == std::string_view::npos ? text.find('.') : comma;
    if (mark != std::string_view::npos && text.size() - mark > 3)
        Require(ParseTime(std::string(text) + "0") == time, "only three digits count");
    try {
        const std::string written = FormatTime(time);
        const double seconds = std::abs(time);
        if (seconds < 359999 && std::fmod(seconds, 60) < 59.999)
            Require(std::abs(ParseTime(written) - time) < 0.000501, "what is written reads back");
    } catch (const RuntimeError& error) {
        Require(error.text() == "Overflow", "only times are out of range");
    }
    return 0;
}
