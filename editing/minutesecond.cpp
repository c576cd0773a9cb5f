#include "editing/minutesecond.h"

#include "editing/typed.h"
#include "model/numbers.h"
#include "model/times.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int LastMinute = 3600;
constexpr double Minute = 60;
constexpr double SecondsStep = 0.1;
/// From 100 hours on, a time text does not tell its seconds.
constexpr double FirstUnreadable = 100 * 3600.0;

/// As a whole number; far outside the box's range it matters no more how far.
int WholeMinutes(double minutes) {
    return RoundToInteger(std::clamp<double>(minutes, -2, LastMinute + 2));
}

double By(Spin step, double amount) {
    return step == Spin::Up ? amount : -amount;
}

MinutesSeconds Carry(std::string_view minutes, double seconds) {
    // The thousandths are settled by the first minute taken off, so that 119.9996
    // carries twice. Whatever is still whole minutes then goes over at once.
    double carried = 1;
    std::string text = ThousandthsText(seconds - Minute);
    double rest = ToNumber(text);
    while (rest >= Minute) {
        carried += std::floor(rest / Minute);
        text = ThousandthsText(std::fmod(rest, Minute));
        rest = ToNumber(text);
    }
    const double sum = WholeMinutes(Val(minutes)) + carried;
    return {NumberText(std::min<double>(sum, LastMinute)), text};
}

} // namespace

std::optional<double> AmountOf(std::string_view minutes, std::string_view seconds) {
    const std::optional<double> wholes = TypedNumber(minutes);
    const std::optional<double> rest = TypedNumber(seconds);
    if (!wholes || !rest)
        return std::nullopt;
    return *wholes * Minute + *rest;
}

std::optional<std::string> MinutesInRange(std::string_view minutes) {
    if (!TypedNumber(minutes))
        return std::nullopt;
    const int number = WholeMinutes(Val(minutes));
    const int inRange = std::clamp(number, 0, LastMinute);
    if (inRange == number)
        return std::nullopt;
    return NumberText(inRange);
}

std::optional<MinutesSeconds> SecondsInRange(std::string_view minutes, std::string_view seconds,
                                             SecondsRule rule) {
    const std::optional<double> number = TypedNumber(seconds);
    if (!number)
        return std::nullopt;
    if (*number < 0)
        return MinutesSeconds{std::string(minutes), "0.000"};
    if (*number < Minute)
        return std::nullopt;
    if (rule == SecondsRule::Clamp)
        return MinutesSeconds{std::string(minutes), "59.999"};
    return Carry(minutes, *number);
}

std::optional<std::string> StepMinutes(std::string_view minutes, Spin step) {
    const int number = WholeMinutes(Val(minutes) + By(step, 1));
    if (step == Spin::Up ? number >= LastMinute : number < 0)
        return std::nullopt;
    return NumberText(number);
}

std::optional<std::string> StepSeconds(std::string_view seconds, Spin step) {
    const std::optional<double> typed = TypedNumber(seconds);
    if (!typed)
        return std::nullopt;
    const double number = *typed + By(step, SecondsStep);
    if (step == Spin::Up ? number >= Minute : number < 0)
        return std::nullopt;
    return ThousandthsText(number);
}

std::optional<std::string> StepTime(std::string_view time, Spin step) {
    const std::optional<double> typed = TypedTime(time);
    if (!typed)
        return std::nullopt;
    const double moment = *typed + By(step, 1);
    if (step == Spin::Up ? !(moment < FirstUnreadable) : !(moment > 0))
        return std::nullopt;
    return FormatTime(moment);
}
