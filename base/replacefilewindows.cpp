#include "base/replacefile.h"

#include "base/wholefile.h"

#include <string>
#include <system_error>

#include <windows.h>

namespace {

namespace fs = std::filesystem;

bool HasOtherNames(const fs::path& file) {
    std::error_code error;
    return fs::hard_link_count(file, error) > 1 && !error;
}

/// Rights, attributes and streams stay those of the file that was there.
bool TakeName(const fs::path& temporary, const fs::path& target, bool there) {
    if (there && ReplaceFileW(target.c_str(), temporary.c_str(), nullptr,
                              REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr))
        return true;
    return MoveFileExW(temporary.c_str(), target.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool MayBeWritten(const fs::path& file) {
    HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(handle);
    return true;
}

ReplaceResult OverwriteKept(const fs::path& target, std::string_view bytes,
                            const ReplaceHooks& hooks) {
    const auto old = ReadWholeFile(target);
    if (!old || !hooks.keep || !hooks.keep(old->View()))
        return ReplaceResult::NotKept;
    if (WriteWholeFile(target, bytes, hooks.flush))
        return ReplaceResult::Written;
    return WriteWholeFile(target, old->View(), true) ? ReplaceResult::Failed : ReplaceResult::Torn;
}

} // namespace

ReplaceResult ReplaceBytes(const fs::path& file, std::string_view bytes,
                           const ReplaceHooks& hooks) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    const bool there = fs::exists(status);
    if (there && !fs::is_regular_file(status))
        return ReplaceResult::NotAFile;
    fs::path target = there ? fs::canonical(file, error) : file;
    if (error && there)
        target = file;
    if (there && !MayBeWritten(target))
        return ReplaceResult::Failed;
    if (there && HasOtherNames(target))
        return OverwriteKept(target, bytes, hooks);
    fs::path temporary = target;
    temporary += L".quelmar~";
    if (WriteWholeFile(temporary, bytes, hooks.flush) && TakeName(temporary, target, there))
        return ReplaceResult::Written;
    if (hooks.reason != nullptr)
        *hooks.reason = std::error_code(static_cast<int>(GetLastError()), std::system_category());
    fs::remove(temporary, error);
    return there ? OverwriteKept(target, bytes, hooks) : ReplaceResult::Failed;
}
