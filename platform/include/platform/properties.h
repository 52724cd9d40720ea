// System properties as the effect reads them. The device build takes the platform's own
// properties; a host build reads the key=value file named by ORLUNE_PROPERTIES instead.
#pragma once

#include <stdint.h>

namespace orlune_platform {

// Bytes of a property value buffer, terminator included (the platform's PROP_VALUE_MAX).
constexpr int kPropertyValueMax = 92;

// Copies the value of `key` (at most kPropertyValueMax - 1 characters) into `value` and returns
// its length; a missing or empty value gives `defaultValue` (or "" when it is null).
int PropertyGet(const char* key, char* value, const char* defaultValue);
// The value as a number (base prefixes accepted); missing, empty, no digits or out of int32
// range gives `defaultValue`.
int32_t PropertyGetInt32(const char* key, int32_t defaultValue);

}  // namespace orlune_platform
