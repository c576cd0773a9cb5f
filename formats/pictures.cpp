#include "formats/pictures.h"

namespace {

using namespace std::string_view_literals;

/// The head of a program stream's pack, as in a VobSub .sub.
constexpr std::string_view Pack = "\x00\x00\x01\xBA"sv;
/// The text beside it says where its pictures are.
constexpr std::string_view Index = "# VobSub index file";

/// A segment of Blu-ray pictures: "PG", two times of four bytes each, a kind, a length.
bool IsPresentationGraphics(std::string_view bytes) {
    constexpr std::size_t KindAt = 10;
    constexpr std::size_t HeaderSize = 13;
    constexpr std::string_view Kinds = "\x14\x15\x16\x17\x80"sv;
    return bytes.size() >= HeaderSize && bytes.starts_with("PG") &&
           Kinds.find(bytes[KindAt]) != std::string_view::npos;
}

/// A DVD's picture: "SP", two times.
bool IsDvdPicture(std::string_view bytes) {
    constexpr std::size_t HeaderSize = 10;
    constexpr std::string_view NoTimeAfterwards = "\0\0\0\0"sv;
    return bytes.size() >= HeaderSize && bytes.starts_with("SP") &&
           bytes.substr(6, NoTimeAfterwards.size()) == NoTimeAfterwards;
}

} // namespace

const char* PicturesIn(std::string_view bytes) {
    if (bytes.starts_with(Pack) || bytes.starts_with(Index))
        return "VobSub";
    if (IsPresentationGraphics(bytes))
        return "PGS";
    return IsDvdPicture(bytes) ? "DVD" : nullptr;
}
