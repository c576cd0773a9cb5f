#include "base/runtimeerror.h"
#include "base/utf8.h"
#include "formats/load.h"
#include "fuzz/fuzzing.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

/// A file whose name tells nothing, in memory where the system has such a folder.
class ScratchFile {
  public:
    ScratchFile()
        : m_path((std::filesystem::exists("/dev/shm") ? "/dev/shm"
                                                      : std::filesystem::temp_directory_path()) /
                 ("quelmar-fuzz-" + std::to_string(std::random_device()()))) {}
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::filesystem::path& Holding(std::string_view text) const {
        std::ofstream(m_path, std::ios::binary) << text;
        return m_path;
    }

  private:
    std::filesystem::path m_path;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ScratchFile scratch;
    SUBTITLES titles;
    FileStyle style;
    try {
        const LoadResult result =
            LoadTitles(scratch.Holding(TextOf(data, size)), "windows-1252", titles, style, {});
        Require(result.outcome != LoadOutcome::NotOpened, "the file is there");
        Require((result.format == nullptr) == (result.outcome == LoadOutcome::UnknownFormat),
                "a format that is found is read");
        Require(titles.UndoEnabled() && titles.UndoCount() == 0, "the closing steps are taken");
        for (std::int32_t i = 1; i <= titles.Count(); ++i)
            Require(IsValidUtf8(titles.Text(i)), "texts are UTF-8");
        TryWriters(titles, style);
    } catch (const RuntimeError& error) {
        Require(error.text() == "Input past end of file", "only empty lines are a run-time error");
    }
    return 0;
}
