#include "base/filestamp.h"

#include <system_error>

#ifndef _WIN32
#include <sys/stat.h>
#endif

FileStamp StampOf(const std::filesystem::path& file) {
    FileStamp stamp;
#ifdef _WIN32
    std::error_code error;
    stamp.size = std::filesystem::file_size(file, error);
    if (error)
        return {};
    stamp.time = std::filesystem::last_write_time(file, error).time_since_epoch().count();
    stamp.there = !error;
#else
    constexpr std::int64_t InASecond = 1'000'000'000;
    struct stat status {};
    if (stat(file.c_str(), &status) != 0)
        return {};
    stamp.size = static_cast<std::uintmax_t>(status.st_size);
    stamp.time = status.st_mtim.tv_sec * InASecond + status.st_mtim.tv_nsec;
    stamp.number = status.st_ino;
    stamp.device = status.st_dev;
    stamp.there = true;
#endif
    return stamp;
}
