#include "cli/commandline.h"

#include <filesystem>
#include <iostream>
#include <vector>

#ifdef _WIN32
int wmain(int argc, wchar_t** argv) {
#else
int main(int argc, char** argv) {
#endif
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i) {
        const std::u8string word = std::filesystem::path(argv[i]).u8string();
        words.emplace_back(word.begin(), word.end());
    }
    return static_cast<int>(RunCommandLine(words, std::cout, std::cerr));
}
