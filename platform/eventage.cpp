#include "platform/eventage.h"

#include <QInputEvent>

#include <cstdint>

std::chrono::milliseconds EventAge(const QInputEvent& event) {
    using namespace std::chrono;
    // The window system counts milliseconds of the monotonic clock in 32 bits.
    const auto now = static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    const auto stamp = static_cast<std::uint32_t>(event.timestamp());
    const std::uint32_t age = now - stamp;
    return stamp == 0 || age > 1000 ? milliseconds(0) : milliseconds(age);
}
