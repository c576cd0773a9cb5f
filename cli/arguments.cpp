#include "cli/arguments.h"

#include "model/numbers.h"
#include "model/times.h"

#include <algorithm>
#include <cmath>

namespace {

const std::string NoValue;
/// What nobody can mean is mistyped. Some count frames in milliseconds.
constexpr double LowestRate = 0.001;
constexpr double HighestRate = 100'000;
/// 32,768 hours, which no file can hold (seconds).
constexpr double BeyondAllTimes = 32768 * 3600.0;

/// The shape of a time, its two digits of hours made "00"; there may be more.
bool LooksLikeTime(std::string_view text) {
    constexpr std::string_view Shape = ":00:00,000";
    if (text.size() < Shape.size() + 2)
        return false;
    const auto isDigit = [](char c) {
        return c >= '0' && c <= '9';
    };
    const std::string_view hours = text.substr(0, text.size() - Shape.size());
    const std::string_view rest = text.substr(hours.size());
    if (!std::all_of(hours.begin(), hours.end(), isDigit))
        return false;
    for (std::size_t i = 0; i < Shape.size(); ++i) {
        const bool fits = Shape[i] == '0'
                              ? isDigit(rest[i])
                              : rest[i] == Shape[i] || (Shape[i] == ',' && rest[i] == '.');
        if (!fits)
            return false;
    }
    return true;
}

} // namespace

std::optional<Arguments> Arguments::Parse(std::span<const std::string> words,
                                          std::span<const Option> options, std::string& fault) {
    Arguments arguments;
    bool optionsEnded = false;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (optionsEnded || !word->starts_with('-') || *word == "-") {
            arguments.m_files.push_back(*word);
            continue;
        }
        if (*word == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = word->find('=');
        const std::string name = word->substr(0, equals);
        const auto option = std::find_if(options.begin(), options.end(),
                                         [&name](const Option& o) { return o.name == name; });
        const bool attached = equals != std::string::npos;
        if (option == options.end() || (attached && option->value.empty())) {
            fault = "unknown option " + *word;
            return std::nullopt;
        }
        std::string& value = arguments.m_values[name];
        if (attached) {
            value = word->substr(equals + 1);
        } else if (!option->value.empty()) {
            if (++word == words.end()) {
                fault = name + " needs a value";
                return std::nullopt;
            }
            value = *word;
        }
    }
    return arguments;
}

const std::string& Arguments::Value(std::string_view option) const {
    const auto found = m_values.find(option);
    return found == m_values.end() ? NoValue : found->second;
}

std::optional<double> RateOf(std::string_view text) {
    const std::optional<double> rate = Number(text);
    return rate && *rate >= LowestRate && *rate <= HighestRate ? rate : std::nullopt;
}

std::optional<double> TimeOf(std::string_view text) {
    const std::optional<double> seconds = Number(text);
    if (seconds)
        return std::abs(*seconds) < BeyondAllTimes ? seconds : std::nullopt;
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    if (!LooksLikeTime(text))
        return std::nullopt;
    return negative ? -ParseTime(text) : ParseTime(text);
}
