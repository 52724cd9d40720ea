// The effect's one time source: systemTime(SYSTEM_TIME_MONOTONIC) in nanoseconds.
// MonotonicNs is in both builds; the test override exists only in the host build.
#pragma once

#include <stdint.h>

namespace orlune_platform {

int64_t MonotonicNs();

// Host build only: tests replace the clock with their own function; null restores the system
// clock.
using ClockFn = int64_t (*)();
void SetClockForTest(ClockFn clock);

}  // namespace orlune_platform
