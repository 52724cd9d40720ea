// Finding configuration files under /odm/etc: product-specific name first, then the generic
// one.
#include <string.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <platform/properties.h>
#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

using orlune_platform::DevAccess;
using orlune_platform::DevRealpath;
using orlune_platform::DevStat;

bool IsNoPath(const char* path) {
    return path == nullptr || path[0] == '\0' || strcasecmp(path, "null") == 0;
}

void ConfigBaseName(bool musicRegionEnable, const char* genericBase, char* out, size_t outSize,
                    const char* failMessage) {
    char region[orlune_platform::kPropertyValueMax] = {};
    orlune_platform::PropertyGet(kRegionProperty, region, kRegionDefault);
    int ret;
    if (musicRegionEnable && strcmp(region, kRegionDefault) != 0) {
        ret = snprintf_s(out, outSize, outSize - 1, "kiv_config_%s", region);
    } else {
        ret = snprintf_s(out, outSize, outSize - 1, "%s", genericBase);
    }
    if (ret < 0) {
        ORLUNE_LOGE(kTagMobile, "%s", failMessage);
    }
}

char* Orlune::GetFileRealPath(const char* name, char* out, int outSize) {
    char candidate[kPathBytes] = {};
    if (snprintf_s(candidate, sizeof(candidate), sizeof(candidate) - 1, "%s/%s", kVendorEtcDir,
                   name) < 0) {
        ORLUNE_LOGE(kTagMobile, "%s strncpy_s error", "GetFileRealPath");
        return nullptr;
    }
    char resolved[kResolvedPathBytes] = {};
    if (DevRealpath(candidate, resolved) == nullptr || DevAccess(candidate, R_OK) != 0) {
        ORLUNE_LOGE(kTagMobile, "%s get file fail", "GetFileRealPath");
        return nullptr;
    }
    const ConfigFileOpen opened = OpenConfigFile(resolved, ConfigFileKindOf(candidate));
    if (opened.file == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s get file fail", "GetFileRealPath");
        return nullptr;
    }
    fclose(opened.file);
    if (out == nullptr || outSize <= 0 ||
        strncpy_s(out, static_cast<size_t>(outSize), candidate, kPathBytes - 1) != EOK) {
        ORLUNE_LOGE(kTagMobile, "%s strncpy_s error", "GetFileRealPath");
        return nullptr;
    }
    ORLUNE_LOGI(kTagMobile, "%s realFilePath %s", "GetFileRealPath", out);
    return out;
}

bool Orlune::CheckFileExists(const char* name) {
    char path[kPathBytes] = {};
    if (GetFileRealPath(name, path, sizeof(path)) == nullptr) {
        return false;
    }
    struct stat st;
    return DevStat(path, &st) == 0;
}

char* Orlune::GetRealConfigFile(const char* base, const char* ext, char* out) {
    char name[kPathBytes] = {};
    int ret = 0;
    bool productFile = false;
    if (gGetProductNameResult != 0) {
        ret = snprintf_s(name, sizeof(name), sizeof(name) - 1, "kiv/%s_%s.%s", base, gProductName,
                         ext);
        char scratch[kPathBytes] = {};
        struct stat st;
        productFile = GetFileRealPath(name, scratch, sizeof(scratch)) != nullptr &&
                      DevStat(scratch, &st) == 0 && gGetProductNameResult != 0;
    }
    if (!productFile) {
        ret = snprintf_s(name, sizeof(name), sizeof(name) - 1, "kiv/%s.%s", base, ext);
    }
    if (ret < 0) {
        ORLUNE_LOGE(kTagMobile, "getRealConfigFile() snprintf_s fail");
    }
    ORLUNE_LOGI(kTagMobile, "read getRealConfigFile realConfigFile %s", name);
    return GetFileRealPath(name, out, kPathBytes);
}
