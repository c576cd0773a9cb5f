#include "tests/sound/filmmaking.h"

#include <cmath>
#include <cstdlib>
#include <stdexcept>

std::string ClickSound(double seconds, int frequency) {
    const std::string about = "(mod(t\\,2.5)-1.25)";
    return "-f lavfi -i \"aevalsrc=0.9*cos(2*PI*1500*" + about + ")*exp(-pow(" + about +
           "/0.0007\\,2)):s=" + std::to_string(frequency) + ":d=" + std::to_string(seconds) + "\" ";
}

std::string Pictures(double seconds) {
    return "-f lavfi -i \"testsrc2=s=96x64:r=25:d=" + std::to_string(seconds) + "\" ";
}

void Ffmpeg(const TestFolder& folder, const std::string& words) {
    const std::string command =
        "cd '" + folder.Path().string() + "' && ffmpeg -nostdin -v error -y " + words;
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error(command);
}

std::vector<double> Clicks(SoundReader& reader) {
    constexpr float Loud = 0.2F;
    constexpr std::int64_t Apart = SoundReader::Frequency / 10;
    std::vector<double> clicks;
    std::int64_t peakAt = -Apart;
    float peak = 0;
    SoundReader::Block block;
    while (reader.Read(block)) {
        std::int64_t at = block.first;
        for (const float sample : block.samples) {
            const float size = std::abs(sample);
            if (size > Loud && at - peakAt >= Apart) {
                clicks.push_back(0);
                peak = 0;
            }
            if (size > Loud && size > peak) {
                peak = size;
                peakAt = at;
                clicks.back() = static_cast<double>(at) / SoundReader::Frequency;
            }
            ++at;
        }
    }
    return clicks;
}
