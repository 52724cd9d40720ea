// System properties as the handset offers them. On the host the values come from the
// key=value file named by ORLUNE_PROPERTIES, read at every call.
#pragma once

#include <stdint.h>

#define PROP_VALUE_MAX 92
#define PROPERTY_VALUE_MAX 92
#define PROPERTY_KEY_MAX 32

extern "C" {
// Copies the value of `key` (at most PROPERTY_VALUE_MAX - 1 characters) into `value` and
// returns its length; a missing or empty value gives `defaultValue` (or "" when it is null).
int property_get(const char* key, char* value, const char* defaultValue);
// The value read with strtoimax(base 0); missing, empty, no digits or out of int32 range
// gives `defaultValue`.
int32_t property_get_int32(const char* key, int32_t defaultValue);
}
