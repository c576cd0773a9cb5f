#pragma once

#include <cstdint>
#include <string_view>

/// What an empty text has.
inline constexpr std::uint64_t ChecksumStart = 0xcbf29ce484222325ULL;

/// Tells damaged bytes from whole ones (not from forged ones): FNV-1a by words of eight
/// bytes, each folded, some gigabytes a second. `sum` carries on over several parts,
/// which then must be cut at the same places again.
std::uint64_t Checksum(std::string_view bytes, std::uint64_t sum = ChecksumStart);
