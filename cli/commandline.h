#pragma once

#include <ostream>
#include <span>
#include <string>

/// The exit codes of the program.
enum class ExitCode {
    Done = 0,
    /// The file was corrupt, refused or not written.
    Failed = 1,
    WrongArguments = 2,
    /// No fit of the titles can be trusted; nothing was written.
    Unsure = 3,
};

/// Runs the program on the words after its name (UTF-8).
ExitCode RunCommandLine(std::span<const std::string> words, std::ostream& out, std::ostream& err);
