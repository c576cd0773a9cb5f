#include "base/savejournal.h"

#include "base/replacefile.h"
#include "base/wholefile.h"

#include <charconv>
#include <cstdlib>
#include <random>
#include <system_error>
#include <utility>

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <sys/file.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr std::string_view FirstLine = "quelmar save 1\n";
constexpr const char* Suffix = ".saving";
/// Files of the user lie in it.
constexpr fs::perms OwnerOnly = fs::perms::owner_all;

fs::path FromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? fs::path() : fs::path(value);
}

std::string PathBytes(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

/// Running programs hold theirs.
bool Hold([[maybe_unused]] const FileHandle& file) {
#ifdef _WIN32
    return true;
#else
    return flock(file.Get(), LOCK_EX | LOCK_NB) == 0;
#endif
}

FileHandle Open(const fs::path& name) {
#ifdef _WIN32
    return OpenFile(name, _O_RDONLY | _O_BINARY | _O_NOINHERIT, 0);
#else
    return OpenFile(name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0);
#endif
}

/// A number and the line's end are taken off the front.
std::optional<std::size_t> TakeNumber(std::string_view& text) {
    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr == end || *read.ptr != '\n')
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()) + 1);
    return number;
}

/// The file's name, its old bytes and the new ones, in that order.
std::optional<InterruptedSave> Parse(const fs::path& journal, std::string_view text) {
    if (!text.starts_with(FirstLine))
        return std::nullopt;
    text.remove_prefix(FirstLine.size());
    std::size_t sizes[3];
    for (std::size_t& size : sizes) {
        const auto number = TakeNumber(text);
        if (!number || *number > text.size())
            return std::nullopt;
        size = *number;
    }
    const auto take = [&text](std::size_t size) {
        std::string part(text.substr(0, size));
        text.remove_prefix(std::min(size, text.size()));
        return part;
    };
    InterruptedSave save;
    save.journal = journal;
    const std::string name = take(sizes[0]);
    save.file = std::u8string(name.begin(), name.end());
    save.oldBytes = take(sizes[1]);
    if (text.size() != sizes[2])
        return std::nullopt;
    save.newBytes = take(sizes[2]);
    return save;
}

} // namespace

fs::path StateFolder() {
#ifdef _WIN32
    const fs::path base = FromEnvironment("LOCALAPPDATA");
#else
    fs::path base = FromEnvironment("XDG_STATE_HOME");
    if (!base.is_absolute()) {
        base = FromEnvironment("HOME");
        if (!base.empty())
            base /= ".local/state";
    }
#endif
    return base.empty() ? base : base / "Tevo" / "Quelmar";
}

bool SaveJournal::Write(const fs::path& folder, const fs::path& file, std::string_view oldBytes,
                        std::string_view newBytes) {
    std::error_code error;
    const fs::path absolute = fs::absolute(file, error);
    if (folder.empty() || error)
        return false;
    if (fs::create_directories(folder, error))
        fs::permissions(folder, OwnerOnly, error);
    const std::string name = PathBytes(absolute);
    std::string text(FirstLine);
    for (const std::size_t size : {name.size(), oldBytes.size(), newBytes.size()})
        text += std::to_string(size) + '\n';
    text.append(name).append(oldBytes).append(newBytes);

    std::random_device random;
    const fs::path journal =
        folder / (std::to_string(random()) + std::to_string(random()) + Suffix);
    ReplaceHooks hooks;
    hooks.forOwner = true;
    if (ReplaceBytes(journal, text, hooks) != ReplaceResult::Written) {
        fs::remove(journal, error);
        return false;
    }
    m_name = journal;
    m_held = Open(journal);
    Hold(m_held);
    return true;
}

void SaveJournal::Remove() {
    std::error_code error;
    if (!m_name.empty())
        fs::remove(std::exchange(m_name, {}), error);
    m_held.Close();
}

std::vector<InterruptedSave> FindInterruptedSaves(const fs::path& folder) {
    std::vector<InterruptedSave> saves;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const fs::path& name = entry->path();
        if (name.extension() != Suffix)
            continue;
        const FileHandle held = Open(name);
        const auto bytes = held.Valid() && Hold(held) ? ReadWholeFile(name) : std::nullopt;
        auto save = bytes ? Parse(name, bytes->View()) : std::nullopt;
        if (!save)
            continue;
        const auto now = ReadWholeFile(save->file);
        if (now && (now->View() == save->oldBytes || now->View() == save->newBytes)) {
            std::error_code ignored;
            fs::remove(name, ignored);
        } else {
            saves.push_back(std::move(*save));
        }
    }
    return saves;
}
