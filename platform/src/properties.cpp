// System properties on the host: key=value lines of the file named by ORLUNE_PROPERTIES,
// read at every call. Blank lines and lines starting with '#' are ignored; the last line for
// a key wins. Host tools and tests call the platform's names; the effect calls them through
// platform/properties.h.
#include <cutils/properties.h>
#include <platform/properties.h>

#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>

namespace {

// Looks `key` up; true and the raw value when a line for it exists.
bool LookUp(const char* key, std::string* value) {
    const char* file = getenv("ORLUNE_PROPERTIES");
    if (key == nullptr || file == nullptr || file[0] == '\0') {
        return false;
    }
    FILE* fp = fopen(file, "re");
    if (fp == nullptr) {
        return false;
    }
    bool found = false;
    std::string line;
    int c;
    do {
        c = fgetc(fp);
        if (c != '\n' && c != EOF) {
            line.push_back(static_cast<char>(c));
            continue;
        }
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        size_t eq = line.find('=');
        if (!line.empty() && line[0] != '#' && eq != std::string::npos &&
            line.compare(0, eq, key) == 0 && strlen(key) == eq) {
            *value = line.substr(eq + 1);
            found = true;
        }
        line.clear();
    } while (c != EOF);
    fclose(fp);
    return found;
}

int CopyValue(char* out, const char* text) {
    size_t n = strnlen(text, PROPERTY_VALUE_MAX - 1);
    memcpy(out, text, n);
    out[n] = '\0';
    return static_cast<int>(n);
}

}  // namespace

extern "C" {

int property_get(const char* key, char* value, const char* defaultValue) {
    std::string found;
    if (LookUp(key, &found) && !found.empty()) {
        return CopyValue(value, found.c_str());
    }
    return CopyValue(value, defaultValue != nullptr ? defaultValue : "");
}

int32_t property_get_int32(const char* key, int32_t defaultValue) {
    char text[PROPERTY_VALUE_MAX];
    if (property_get(key, text, "") == 0) {
        return defaultValue;
    }
    errno = 0;
    char* end = nullptr;
    intmax_t v = strtoimax(text, &end, 0);
    if (end == text || errno == ERANGE || v < INT32_MIN || v > INT32_MAX) {
        return defaultValue;
    }
    return static_cast<int32_t>(v);
}

}  // extern "C"

namespace orlune_platform {

static_assert(PROPERTY_VALUE_MAX == kPropertyValueMax, "value buffer size");

int PropertyGet(const char* key, char* value, const char* defaultValue) {
    return property_get(key, value, defaultValue);
}

int32_t PropertyGetInt32(const char* key, int32_t defaultValue) {
    return property_get_int32(key, defaultValue);
}

}  // namespace orlune_platform
