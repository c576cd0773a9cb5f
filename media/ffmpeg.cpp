#include "media/ffmpeg.h"

#include <optional>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

#ifdef _WIN32

std::string FileName(const char* name, int version) {
    return std::string(name) + "-" + std::to_string(version) + ".dll";
}
void* Open(const std::string& name) {
    return LoadLibraryA(name.c_str());
}
void* Symbol(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

#else

std::string FileName(const char* name, int version) {
    return "lib" + std::string(name) + ".so." + std::to_string(version);
}
void* Open(const std::string& name) {
    return dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
}
void* Symbol(void* library, const char* name) {
    return dlsym(library, name);
}

#endif

template <typename Function>
bool Resolve(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(Symbol(library, name));
    return function != nullptr;
}

/// The libraries are never unloaded: the player may use them too.
std::optional<FfmpegLibrary> Load() {
    void* const avutil = Open(FileName("avutil", LIBAVUTIL_VERSION_MAJOR));
    void* const avcodec = Open(FileName("avcodec", LIBAVCODEC_VERSION_MAJOR));
    void* const avformat = Open(FileName("avformat", LIBAVFORMAT_VERSION_MAJOR));
    void* const swresample = Open(FileName("swresample", LIBSWRESAMPLE_VERSION_MAJOR));
    if (avutil == nullptr || avcodec == nullptr || avformat == nullptr || swresample == nullptr)
        return {};
    FfmpegLibrary table;
    bool complete = true;
#define QUELMAR_FROM(library, name) complete = Resolve(library, #name, table.name) && complete;
#define QUELMAR_FROM_AVUTIL(name) QUELMAR_FROM(avutil, name)
#define QUELMAR_FROM_AVCODEC(name) QUELMAR_FROM(avcodec, name)
#define QUELMAR_FROM_AVFORMAT(name) QUELMAR_FROM(avformat, name)
#define QUELMAR_FROM_SWRESAMPLE(name) QUELMAR_FROM(swresample, name)
    QUELMAR_AVUTIL(QUELMAR_FROM_AVUTIL)
    QUELMAR_AVCODEC(QUELMAR_FROM_AVCODEC)
    QUELMAR_AVFORMAT(QUELMAR_FROM_AVFORMAT)
    QUELMAR_SWRESAMPLE(QUELMAR_FROM_SWRESAMPLE)
    if (!complete)
        return {};
    // Damaged films would fill the terminal.
    table.av_log_set_level(AV_LOG_QUIET);
    return table;
}

} // namespace

const FfmpegLibrary* FfmpegLibrary::Get() {
    static const std::optional<FfmpegLibrary> library = Load();
    return library ? &*library : nullptr;
}
