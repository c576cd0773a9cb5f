#include "formats/format.h"

#include "formats/microdvd.h"
#include "formats/reading.h"
#include "formats/sami.h"
#include "formats/subrip.h"

#include <array>

std::span<const Format> Formats() {
    static const std::array<Format, 3> All{SamiFormat(), SubRipFormat(), MicroDvdFormat()};
    return All;
}

const Format* FormatByName(std::string_view fileName) {
    constexpr std::size_t ExtensionLength = 4;
    const std::string_view name = Trim(fileName);
    if (name.size() < ExtensionLength)
        return nullptr;
    std::string extension(name.substr(name.size() - ExtensionLength));
    for (char& c : extension)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    for (const Format& format : Formats()) {
        if (extension == format.extension)
            return &format;
    }
    return nullptr;
}

const Format* FormatByFirstLine(std::string_view firstLine) {
    for (const Format& format : Formats()) {
        if (format.recognise(firstLine))
            return &format;
    }
    return nullptr;
}
