#include "mainwindow/fileexists.h"

#include <filesystem>
#include <system_error>

namespace {

constexpr bool NamesIgnoreCase =
#ifdef _WIN32
    true;
#else
    false;
#endif

std::filesystem::path PathOf(const std::string& utf8) {
#ifdef _WIN32
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
#else
    return utf8;
#endif
}

std::string Utf8Of(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

/// Bytes of the character that begins here.
std::size_t CharacterLength(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80)
        ++length;
    return length;
}

char Folded(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameCharacter(std::string_view a, std::string_view b, bool ignoreCase) {
    if (!ignoreCase || a.size() != 1 || b.size() != 1)
        return a == b;
    return Folded(a.front()) == Folded(b.front());
}

} // namespace

bool WildcardMatch(std::string_view pattern, std::string_view name, bool ignoreCase) {
    if (pattern == "*.*")
        return true;
    // Where to go on after the last star when a comparison fails.
    std::string_view afterStar;
    std::string_view retry;
    bool star = false;
    while (!name.empty()) {
        if (!pattern.empty() && pattern.front() == '*') {
            pattern.remove_prefix(1);
            star = true;
            afterStar = pattern;
            retry = name;
            continue;
        }
        if (!pattern.empty()) {
            const std::string_view expected = pattern.substr(0, CharacterLength(pattern));
            const std::string_view found = name.substr(0, CharacterLength(name));
            if (expected == "?" || SameCharacter(expected, found, ignoreCase)) {
                pattern.remove_prefix(expected.size());
                name.remove_prefix(found.size());
                continue;
            }
        }
        if (!star)
            return false;
        retry.remove_prefix(CharacterLength(retry));
        pattern = afterStar;
        name = retry;
    }
    return pattern.find_first_not_of('*') == std::string_view::npos;
}

bool FileExists(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos)
        return false;
    std::error_code error;
    const std::filesystem::path wanted = PathOf(path);
    const auto isFile = [&](const std::filesystem::path& candidate) {
        const auto status = std::filesystem::status(candidate, error);
        return std::filesystem::is_regular_file(status);
    };
    if (isFile(wanted))
        return true;
    const std::string pattern = Utf8Of(wanted.filename());
    if (pattern.find_first_of("*?") == std::string::npos)
        return false;
    const std::filesystem::path folder = wanted.has_parent_path() ? wanted.parent_path() : ".";
    std::filesystem::directory_iterator entries(
        folder, std::filesystem::directory_options::skip_permission_denied, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error))
        if (WildcardMatch(pattern, Utf8Of(entries->path().filename()), NamesIgnoreCase) &&
            isFile(entries->path()))
            return true;
    return false;
}
