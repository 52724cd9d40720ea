#include "standin/louddetect/LadConfig.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>

namespace lad_standin {

namespace {

const char* const kConfigFiles[kConfigTypes] = {
        "/odm/etc/kiv/lad_config_dts.xml",
        "/odm/etc/kiv/lad_config_brisel.xml",
        "/odm/etc/kiv/lad_config_lowlatency.xml",
        "/odm/etc/kiv/lad_config_dsp_orlune.xml",
};

constexpr size_t kMaxConfigBytes = 4096;

bool ReadFile(const std::string& path, std::string* text) {
    FILE* file = fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return false;
    }
    char buffer[kMaxConfigBytes];
    size_t n = fread(buffer, 1, sizeof buffer - 1, file);
    fclose(file);
    text->assign(buffer, n);
    return true;
}

}  // namespace

float ReadLimitDbfs(int type, bool* found) {
    *found = false;
    if (type < 0 || type >= kConfigTypes) {
        return kDefaultLimitDbfs;
    }
    const char* root = getenv("ORLUNE_DEVICE_ROOT");
    std::string path = (root != nullptr) ? root : "";
    path += kConfigFiles[type];
    std::string text;
    if (!ReadFile(path, &text)) {
        return kDefaultLimitDbfs;
    }
    static const char kAttribute[] = "limit_dbfs=\"";
    size_t at = text.find(kAttribute);
    if (at == std::string::npos) {
        return kDefaultLimitDbfs;
    }
    const char* start = text.c_str() + at + strlen(kAttribute);
    char* end = nullptr;
    float value = strtof(start, &end);
    if (end == start || *end != '"' || !isfinite(value)) {
        return kDefaultLimitDbfs;
    }
    *found = true;
    return value;
}

}  // namespace lad_standin
