// The effect's one time source: systemTime(SYSTEM_TIME_MONOTONIC) in nanoseconds.
#pragma once

#include <stdint.h>

namespace orlune_platform {

int64_t MonotonicNs();

// Tests replace the clock with their own function; null restores the system clock.
using ClockFn = int64_t (*)();
void SetClockForTest(ClockFn clock);

}  // namespace orlune_platform
