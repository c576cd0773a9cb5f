#include "benchmarks/limits.h"

#include "base/wholefile.h"

#include <charconv>
#include <cstring>
#include <string_view>

namespace {

unsigned Digits(const char* at, int count) {
    unsigned value = 0;
    for (int i = 0; i < count; ++i)
        value = value * 10 + static_cast<unsigned>(at[i] - '0');
    return value;
}

double TimeAt(const char* at) {
    return (Digits(at, 2) * 60 + Digits(at + 3, 2)) * 60 + Digits(at + 6, 2) +
           Digits(at + 9, 3) / 1000.0;
}

const char* LineAfter(const char* at, const char* end) {
    const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    return found == nullptr ? end : static_cast<const char*>(found) + 1;
}

char* PutNumber(char* to, unsigned value, unsigned least) {
    for (unsigned below = least; below > 1 && value < below; below /= 10)
        *to++ = '0';
    return std::to_chars(to, to + 12, value).ptr;
}

char* PutTime(char* to, double time) {
    // The least work, and no time is negative.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    const auto milliseconds = static_cast<unsigned long long>(time * 1000 + 0.5);
    to = PutNumber(to, static_cast<unsigned>(milliseconds / 3'600'000), 10);
    *to++ = ':';
    to = PutNumber(to, static_cast<unsigned>(milliseconds / 60'000 % 60), 10);
    *to++ = ':';
    to = PutNumber(to, static_cast<unsigned>(milliseconds / 1000 % 60), 10);
    *to++ = ',';
    return PutNumber(to, static_cast<unsigned>(milliseconds % 1000), 100);
}

} // namespace

std::vector<PlainTitle> ScanSubRip(const std::filesystem::path& file) {
    std::vector<PlainTitle> titles;
    const auto bytes = ReadWholeFile(file);
    if (!bytes)
        return titles;
    const char* at = bytes->data.get();
    const char* const end = at + bytes->size;
    while (at < end) {
        const char* const times = LineAfter(at, end);
        const char* const text = LineAfter(times, end);
        const char* next = LineAfter(text, end);
        const char* textEnd = next;
        while (next < end && *next != '\r') {
            next = LineAfter(next, end);
            textEnd = next;
        }
        titles.push_back({TimeAt(times), TimeAt(times + 17), std::string(text, textEnd - 2)});
        at = LineAfter(next, end);
    }
    return titles;
}

bool DumpSubRip(const std::filesystem::path& file, const SUBTITLES& titles, bool flush) {
    constexpr std::size_t BesideEach = 64;
    std::size_t room = 0;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        room += titles.Text(i).size() + BesideEach;
    const auto buffer = std::make_unique_for_overwrite<char[]>(room + 1);
    char* to = buffer.get();
    const auto put = [&to](std::string_view text) {
        std::memcpy(to, text.data(), text.size());
        to += text.size();
    };
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        to = std::to_chars(to, to + 12, i).ptr;
        put("\r\n");
        to = PutTime(to, titles.StartTime(i));
        put(" --> ");
        to = PutTime(to, titles.EndTime(i));
        put("\r\n");
        put(titles.Text(i));
        put("\r\n\r\n");
    }
    return WriteWholeFile(file, {buffer.get(), static_cast<std::size_t>(to - buffer.get())}, flush);
}
