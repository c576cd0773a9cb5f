#include "formats/timedtextclock.h"

#include "base/ascii.h"
#include "base/runtimeerror.h"
#include "formats/clocktime.h"
#include "model/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace {

using Unit = TimedTextTime::Unit;

struct Metric {
    std::string_view name;
    Unit unit;
};
/// "ms" comes before "s", which it ends with.
constexpr std::array<Metric, 6> Metrics{{{"ms", Unit::Milliseconds},
                                         {"h", Unit::Hours},
                                         {"m", Unit::Minutes},
                                         {"s", Unit::Seconds},
                                         {"f", Unit::Frames},
                                         {"t", Unit::Ticks}}};
constexpr std::uint8_t MostDecimals = 9;

double SecondsIn(Unit unit, const TimedTextRates& rates) {
    switch (unit) {
    case Unit::Hours:
        return 3600;
    case Unit::Minutes:
        return 60;
    case Unit::Milliseconds:
        return 0.001;
    case Unit::Frames:
        return 1 / rates.frameRate;
    case Unit::Ticks:
        return 1 / rates.tickRate;
    default:
        return 1;
    }
}

bool IsDecimal(std::string_view text) {
    const std::size_t point = std::min(text.find('.'), text.size());
    const auto digits = [](std::string_view part) {
        return !part.empty() && std::all_of(part.begin(), part.end(), IsAsciiDigit);
    };
    return digits(text.substr(0, point)) &&
           (point == text.size() || digits(text.substr(point + 1)));
}

std::uint8_t DecimalsOf(std::string_view text) {
    const std::size_t point = text.find('.');
    return point == std::string_view::npos ? std::uint8_t{0}
                                           : static_cast<std::uint8_t>(std::min<std::size_t>(
                                                 text.size() - point - 1, MostDecimals));
}

/// "00:00:01:12"
std::optional<TimedTextTime> ParseFrames(std::string_view text, const TimedTextRates& rates) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const auto whole = ParseClock(text.substr(0, colon));
    const std::string_view frames = text.substr(colon + 1);
    if (!whole || whole->form.shortened || whole->form.decimals > 0 || !IsDecimal(frames))
        return std::nullopt;
    return TimedTextTime{whole->seconds + Val(frames) / rates.frameRate, Unit::ClockFrames, 0};
}

void AppendFixed(std::string& out, double value, std::uint8_t decimals) {
    std::array<char, 64> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                      std::chars_format::fixed, decimals);
    out.append(digits.data(), result.ptr);
}

/// How many decimals tell the value to the thousandth of a second.
std::uint8_t DecimalsFor(double seconds, double unit, std::uint8_t least) {
    constexpr double Grain = 0.0005;
    double power = std::pow(10.0, least);
    while (least < MostDecimals &&
           std::abs(std::round(seconds / unit * power) / power * unit - seconds) >= Grain) {
        ++least;
        power *= 10;
    }
    return least;
}

void AppendClockForm(std::string& out, double seconds, std::uint8_t decimals) {
    const double power = std::pow(10.0, decimals);
    const double rounded = std::round(seconds * power) / power;
    const double whole = std::floor(rounded);
    AppendClock(out, whole, {.hourDigits = 2, .shortened = false, .decimals = 0, .point = '.'});
    if (decimals == 0)
        return;
    std::string fraction;
    AppendFixed(fraction, rounded - whole, decimals);
    out.append(fraction, 1);
}

void AppendFrames(std::string& out, double seconds, const TimedTextRates& rates) {
    double whole = std::floor(seconds);
    auto frame = static_cast<int>(std::lround((seconds - whole) * rates.frameRate));
    if (frame >= static_cast<int>(std::ceil(rates.frameRate))) {
        whole += 1;
        frame = 0;
    }
    AppendClock(out, whole, {.hourDigits = 2, .shortened = false, .decimals = 0, .point = '.'});
    out += frame < 10 ? ":0" : ":";
    out += std::to_string(frame);
}

} // namespace

std::optional<TimedTextTime> ParseTimedTextTime(std::string_view text,
                                                const TimedTextRates& rates) {
    if (const auto clock = ParseClock(text); clock && !clock->form.shortened && clock->seconds >= 0)
        return TimedTextTime{clock->seconds, Unit::Clock, DecimalsOf(text)};
    if (const auto frames = ParseFrames(text, rates))
        return frames;
    for (const Metric& metric : Metrics) {
        if (!text.ends_with(metric.name))
            continue;
        const std::string_view number = text.substr(0, text.size() - metric.name.size());
        if (!IsDecimal(number))
            return std::nullopt;
        return TimedTextTime{Val(number) * SecondsIn(metric.unit, rates), metric.unit,
                             DecimalsOf(number)};
    }
    return std::nullopt;
}

void AppendTimedTextTime(std::string& out, double seconds, const TimedTextTime& form,
                         const TimedTextRates& rates) {
    constexpr double TooManyHours = 32768;
    if (!(std::abs(seconds) / 3600 < TooManyHours))
        throw RuntimeError(RuntimeError::Number::Overflow);
    seconds = std::max(seconds, 0.0);
    if (form.unit == Unit::ClockFrames)
        return AppendFrames(out, seconds, rates);
    if (form.unit == Unit::Clock)
        return AppendClockForm(out, seconds, DecimalsFor(seconds, 1, form.decimals));
    const double unit = SecondsIn(form.unit, rates);
    // Whole frames and ticks are as fine as the file's times can be.
    const bool counted = form.unit == Unit::Frames || form.unit == Unit::Ticks;
    AppendFixed(out, seconds / unit,
                counted ? form.decimals : DecimalsFor(seconds, unit, form.decimals));
    out += std::find_if(Metrics.begin(), Metrics.end(), [&](const Metric& metric) {
               return metric.unit == form.unit;
           })->name;
}
