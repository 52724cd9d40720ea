// System properties on the device: the platform's own (libcutils).
#include <platform/properties.h>

#include <cutils/properties.h>

static_assert(PROPERTY_VALUE_MAX == orlune_platform::kPropertyValueMax, "value buffer size");

namespace orlune_platform {

int PropertyGet(const char* key, char* value, const char* defaultValue) {
    return property_get(key, value, defaultValue);
}

int32_t PropertyGetInt32(const char* key, int32_t defaultValue) {
    return property_get_int32(key, defaultValue);
}

}  // namespace orlune_platform
