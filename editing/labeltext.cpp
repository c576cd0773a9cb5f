#include "editing/labeltext.h"

std::string BlanksForLoneBreaks(std::string text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        if (pair)
            ++at;
        else if (text[at] == '\r' || text[at] == '\n')
            text[at] = ' ';
    }
    return text;
}
