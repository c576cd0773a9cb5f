#include "base/checksum.h"

#include <cstring>

std::uint64_t Checksum(std::string_view bytes, std::uint64_t sum) {
    const auto mix = [&sum](std::uint64_t word) {
        sum = (sum ^ word) * 0x100000001b3ULL;
        sum ^= sum >> 32U;
    };
    while (bytes.size() >= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), 8);
        mix(word);
        bytes.remove_prefix(8);
    }
    for (const char byte : bytes)
        mix(static_cast<unsigned char>(byte));
    return sum;
}
