// Fills the desktop entry in from the table of formats: quelmar_desktopentry TEMPLATE ENTRY.
// @TYPES@ becomes the formats' MIME types, @EXTENSIONS@ their extensions.

#include "base/wholefile.h"
#include "formats/format.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// The words in the table's order, each once, a ";" after each.
template <typename WORDS>
std::string List(WORDS words) {
    std::vector<std::string> seen{""};
    std::string list;
    for (const Format& format : Formats()) {
        for (const std::string& word : words(format)) {
            if (std::find(seen.begin(), seen.end(), word) != seen.end())
                continue;
            seen.push_back(word);
            list += word + ';';
        }
    }
    return list;
}

std::string Types() {
    return List([](const Format& format) { return std::vector<std::string>{format.mimeType}; });
}

std::string Extensions() {
    return List([](const Format& format) {
        std::vector<std::string> words;
        for (const std::string& extension : format.extensions)
            words.push_back(extension.substr(1));
        return words;
    });
}

void Replace(std::string& text, std::string_view mark, const std::string& list) {
    const std::size_t at = text.find(mark);
    if (at != std::string::npos)
        text.replace(at, mark.size(), list);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return EXIT_FAILURE;
    const auto entry = ReadWholeFile(argv[1]);
    if (!entry)
        return EXIT_FAILURE;
    std::string text(entry->View());
    Replace(text, "@TYPES@", Types());
    Replace(text, "@EXTENSIONS@", Extensions());
    std::ofstream out(argv[2]);
    out << text;
    out.close();
    return out ? EXIT_SUCCESS : EXIT_FAILURE;
}
