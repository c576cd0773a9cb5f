#pragma once

#include "formats/packed.h"
#include "formats/recoverycopy.h"

#include <utility>
#include <vector>

/// The pieces of which recovery copies are made. The layouts are numbered: 1 knew of no
/// formats that keep things of their own but SAMI; 2 had one checksum for all; 3 is in
/// blocks. Readers take all of them.
namespace RecoveryLayout {

constexpr std::uint32_t First = 1;
constexpr std::uint32_t InBlocks = 3;

void PutNotes(std::string& out, const RecoveryNotes& notes);
RecoveryNotes ReadNotes(PackedReader& reader, std::uint32_t layout);

void PutStyle(std::string& out, const FileStyle& style);
FileStyle ReadStyle(PackedReader& reader, std::uint32_t layout);

void PutDraft(std::string& out, const Draft& draft);
Draft ReadDraft(PackedReader& reader);

void PutHistory(std::string& out, const UndoHistory& history);
std::vector<UndoHistory::Record> ReadHistory(PackedReader& reader, std::uint32_t layout);

using NumberedExtra = std::pair<std::int32_t, TitleExtra>;
void PutExtras(std::string& out, const SUBTITLES& titles);
std::vector<NumberedExtra> ReadExtras(PackedReader& reader, std::uint32_t layout);

/// What a title takes beside its text.
constexpr std::size_t LeastTitleSize = 8 + 8 + 4;
void PutTitle(std::string& out, const SUBTITLES& titles, std::int32_t index);
/// Appends that many titles.
void ReadTitles(PackedReader& reader, std::uint32_t count, SUBTITLES& titles);

} // namespace RecoveryLayout
