#pragma once

#include "cli/arguments.h"
#include "model/filestyle.h"
#include "model/subtitles.h"

#include <functional>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <variant>

/// What a command does to the titles between loading and saving.
using Edit = std::function<void(SUBTITLES&)>;

/// Makes the titles from a file that is no subtitle file. false, and the reason in `fault`, when
/// that is not possible.
using Source = std::function<bool(const std::string& file, SUBTITLES& titles, FileStyle& style,
                                  std::string& fault)>;
/// Tells something about a file, and writes none. The same.
using Report = std::function<bool(const std::string& file, std::ostream& out, std::string& fault)>;
/// A report takes one file, the others take two.
using Task = std::variant<Edit, Source, Report>;

/// One command: everything that differs between them is a row here.
struct Command {
    std::string_view name;
    /// What stands between the name and the files.
    std::string_view usage;
    std::string_view help;
    /// Beside those that every command has.
    std::span<const Option> options;
    /// Nothing, and the reason in `fault`, when the arguments make no sense.
    std::optional<Task> (*prepare)(const Arguments& arguments, std::string& fault);
};

std::span<const Command> Commands();
/// The options that every command has.
std::span<const Option> CommonOptions();
