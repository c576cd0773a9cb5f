#pragma once

#include <cstddef>

/// Asks the system to back a block that is about to be filled with large pages: a
/// file of 100 MB then costs fifty page faults, not 26,000. Only a hint: small blocks
/// and other systems do without.
void AdviseLargePages(const void* block, std::size_t size);
