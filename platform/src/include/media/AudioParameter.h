// key=value parameter lists as the platform's audio framework passes them.
#pragma once

#include <utils/Errors.h>
#include <utils/KeyedVector.h>
#include <utils/String8.h>

namespace android {

class AudioParameter {
public:
    AudioParameter() = default;
    // Splits at ';' (empty pieces ignored) and each piece at its first '='; a piece without '='
    // is a key with the value ""; a repeated key keeps the last value.
    explicit AudioParameter(const String8& keyValuePairs);

    // NO_ERROR and the value, or BAD_VALUE with `value` untouched.
    status_t get(const String8& key, String8& value) const;
    // NO_ERROR for a new key; an existing key takes the new value and gives ALREADY_EXISTS.
    status_t add(const String8& key, const String8& value);
    status_t addInt(const String8& key, int value);      // "%d"
    status_t addFloat(const String8& key, float value);  // "%.10f"
    status_t remove(const String8& key);
    size_t size() const { return mParameters.size(); }
    // "k=v" pairs in key order (strcmp) joined by ';', no trailing ';'.
    String8 toString() const;

private:
    KeyedVector<String8, String8> mParameters;
};

}  // namespace android
