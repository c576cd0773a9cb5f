#include "platform/eventage.h"

#include <QInputEvent>

#include <cstdint>
#include <optional>

namespace {

using std::chrono::milliseconds;

// As far back as the media clock remembers.
constexpr milliseconds Oldest(2000);

std::optional<milliseconds> AgeByStamp(const QInputEvent& event) {
    using namespace std::chrono;
    // The window system counts milliseconds of the monotonic clock in 32 bits.
    const auto now = static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    const auto stamp = static_cast<std::uint32_t>(event.timestamp());
    const milliseconds age(now - stamp);
    return stamp == 0 || age > Oldest ? std::nullopt : std::optional(age);
}

} // namespace

milliseconds EventAge(const QInputEvent& event) {
    return AgeByStamp(event).value_or(milliseconds(0));
}

std::uint64_t TrueStamp(const QInputEvent& event) {
    return AgeByStamp(event) ? event.timestamp() : 0;
}
