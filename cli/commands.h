#pragma once

#include "cli/arguments.h"
#include "model/subtitles.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// What a command does to the titles between loading and saving.
using Edit = std::function<void(SUBTITLES&)>;

/// One command: everything that differs between them is a row here.
struct Command {
    std::string_view name;
    /// What stands between the name and the two files.
    std::string_view usage;
    std::string_view help;
    /// Beside those that every command has.
    std::span<const Option> options;
    /// Nothing, and the reason in `fault`, when the arguments make no sense.
    std::optional<Edit> (*prepare)(const Arguments& arguments, std::string& fault);
};

std::span<const Command> Commands();
/// The options that every command has.
std::span<const Option> CommonOptions();
