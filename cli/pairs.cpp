#include "cli/pairs.h"

#include "base/ascii.h"
#include "cli/titlefile.h"
#include "formats/format.h"
#include "tracks/filmname.h"

#include <algorithm>
#include <array>
#include <map>

namespace {

constexpr const char* FittedMark = ".fitted";

bool IsFilm(const std::filesystem::path& file) {
    return IsFilmName(NameOf(file.filename()));
}

bool IsTitles(const std::filesystem::path& file) {
    return FormatByName(NameOf(file.filename())) != nullptr &&
           !AsciiLower(NameOf(file.stem())).ends_with(FittedMark);
}

bool IsLetters(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

/// "en", "eng", "pt-br", "zh-hant"
bool IsLanguage(std::string_view part) {
    const std::size_t dash = std::min(part.find_first_of("-_"), part.size());
    const std::string_view language = part.substr(0, dash);
    if (language.size() < 2 || language.size() > 3 || !IsLetters(language))
        return false;
    const std::string_view region = part.substr(std::min(dash + 1, part.size()));
    return dash == part.size() || (region.size() >= 2 && region.size() <= 4 &&
                                   std::all_of(region.begin(), region.end(), [](char c) {
                                       return (c >= 'a' && c <= 'z') || IsAsciiDigit(c);
                                   }));
}

bool IsSuffix(std::string_view suffix) {
    constexpr std::array<std::string_view, 10> Words{
        "forced", "sdh", "hi", "cc", "full", "default", "foreign", "signs", "songs", "commentary"};
    constexpr std::array<std::string_view, 16> Languages{
        "english", "french",  "german", "spanish", "italian", "dutch",     "polish",  "czech",
        "russian", "swedish", "danish", "finnish", "greek",   "norwegian", "turkish", "portuguese"};
    bool named = false;
    while (!suffix.empty()) {
        suffix.remove_prefix(1);
        const std::size_t end = std::min(suffix.find('.'), suffix.size());
        const std::string_view part = suffix.substr(0, end);
        const bool isWord = std::find(Words.begin(), Words.end(), part) != Words.end();
        const bool isLanguage = IsLanguage(part) || std::find(Languages.begin(), Languages.end(),
                                                              part) != Languages.end();
        // A number tells two files of a language apart.
        const bool isNumber = named && part.size() == 1 && IsAsciiDigit(part.front());
        if (!isWord && !isLanguage && !isNumber)
            return false;
        named = true;
        suffix.remove_prefix(end);
    }
    return true;
}

using Files = std::vector<std::filesystem::path>;

/// All files by their folder.
std::map<std::filesystem::path, Files> FilesIn(const std::filesystem::path& folder) {
    std::map<std::filesystem::path, Files> files;
    std::error_code error;
    std::filesystem::recursive_directory_iterator at(
        folder, std::filesystem::directory_options::skip_permission_denied, error);
    const std::filesystem::recursive_directory_iterator end;
    while (!error && at != end) {
        std::error_code unreadable;
        if (at->is_regular_file(unreadable))
            files[at->path().parent_path()].push_back(at->path());
        at.increment(error);
    }
    return files;
}

} // namespace

std::filesystem::path FittedName(const std::filesystem::path& titles) {
    std::filesystem::path name = titles;
    const std::filesystem::path extension = titles.extension();
    name.replace_extension();
    name += FittedMark;
    name += extension;
    return name;
}

bool BelongsTo(const std::string& titles, const std::string& film) {
    const std::string title = AsciiLower(titles);
    const std::string name = AsciiLower(film);
    if (!title.starts_with(name))
        return false;
    const std::string_view suffix = std::string_view(title).substr(name.size());
    if (suffix.empty())
        return true;
    return std::string_view("._-").find(suffix.front()) != std::string_view::npos &&
           IsSuffix(suffix);
}

std::vector<FilmPair> PairsIn(const std::filesystem::path& folder) {
    std::vector<FilmPair> pairs;
    for (auto& [place, files] : FilesIn(folder)) {
        std::sort(files.begin(), files.end());
        const std::size_t first = pairs.size();
        for (const std::filesystem::path& file : files) {
            if (IsFilm(file))
                pairs.push_back({file, {}});
        }
        for (const std::filesystem::path& file : files) {
            if (!IsTitles(file))
                continue;
            FilmPair* best = nullptr;
            std::size_t longest = 0;
            for (std::size_t i = first; i < pairs.size(); ++i) {
                const std::string name = NameOf(pairs[i].film.stem());
                if (name.size() >= longest && BelongsTo(NameOf(file.stem()), name) &&
                    (best == nullptr || name.size() > longest)) {
                    longest = name.size();
                    best = &pairs[i];
                }
            }
            if (best != nullptr)
                best->titles.push_back(file);
        }
    }
    std::erase_if(pairs, [](const FilmPair& pair) { return pair.titles.empty(); });
    return pairs;
}
