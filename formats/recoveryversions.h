#pragma once

#include "formats/sealedblocks.h"
#include "model/versions.h"

#include <string>
#include <vector>

/// Versions in the blocks of a recovery copy: texts and times that they share are
/// written once.
namespace RecoveryVersions {

/// Kinds of blocks; a copy's other blocks bear other numbers.
enum Kind : std::uint32_t { Texts = 101, Times, OneVersion };

/// Appends blocks for the versions, the newest first, as long as they take no more than
/// that many bytes.
void Put(std::string& out, const std::vector<Version>& versions, std::size_t most);

/// The versions that are in the blocks; those that lack something are left out. `whole`
/// becomes false when there are any.
std::vector<Version> Read(const std::vector<SealedBlock>& blocks, bool& whole);

} // namespace RecoveryVersions
