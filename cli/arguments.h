#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// An option of a command: "--name" or, where it takes a value, "--name VALUE".
struct Option {
    std::string_view name;
    /// How the help names the value; empty for an option without one.
    std::string_view value;
    std::string_view help;
};

/// What stands after the name of a command, told apart but not yet understood.
class Arguments {
  public:
    /// Nothing, and the reason in `fault`, when an option is unknown or lacks its
    /// value. What follows "--" is no option.
    static std::optional<Arguments> Parse(std::span<const std::string> words,
                                          std::span<const Option> options, std::string& fault);

    bool Has(std::string_view option) const { return m_values.contains(option); }
    /// Empty when the option was not given; the last one when it was given twice.
    const std::string& Value(std::string_view option) const;
    const std::vector<std::string>& Files() const { return m_files; }

  private:
    std::map<std::string, std::string, std::less<>> m_values;
    std::vector<std::string> m_files;
};

/// A number that can be a frame rate: 0.001 to 100,000.
std::optional<double> RateOf(std::string_view text);
/// 'hh:mm:ss,mmm' or a number of seconds, both with or without a sign, below
/// 32,768 hours.
std::optional<double> TimeOf(std::string_view text);
