#pragma once

#include "cli/commandline.h"

/// The command "sync": fits subtitle files to films, sound files or right titles. `words`
/// are those after its name.
ExitCode RunSync(std::span<const std::string> words, std::ostream& out, std::ostream& err);

/// What the help says of it.
void PrintSyncHelp(std::ostream& out);
