#include <platform/clock.h>

#include <utils/Timers.h>

#include <atomic>

namespace orlune_platform {
namespace {
std::atomic<ClockFn> gTestClock{nullptr};
}  // namespace

int64_t MonotonicNs() {
    ClockFn clock = gTestClock.load(std::memory_order_acquire);
    return clock != nullptr ? clock() : systemTime(SYSTEM_TIME_MONOTONIC);
}

void SetClockForTest(ClockFn clock) {
    gTestClock.store(clock, std::memory_order_release);
}

}  // namespace orlune_platform
