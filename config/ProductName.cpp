// The handset's product name, read once from the device tree; it selects product-specific
// configuration files.
#include <string.h>
#include <unistd.h>

#include <platform/device_fs.h>

#include "base/ConfigFile.h"
#include "config/ConfigPaths.h"
#include "base/Log.h"
#include "effect/orlune.h"

namespace {

// Both nodes are read in this order, so the second one wins when both exist.
constexpr const char* kProductNameNodes[] = {
        "/proc/device-tree/soc/audio_alg_info/product_name",
        "/proc/device-tree/audio_hw_config/product_name",
};

}  // namespace

void Orlune::GetProductNameConfig() {
    for (const char* node : kProductNameNodes) {
        char resolved[kResolvedPathBytes] = {};
        if (orlune_platform::DevRealpath(node, resolved) == nullptr ||
            orlune_platform::DevAccess(node, R_OK) != 0) {
            ORLUNE_LOGE(kTagMobile, "%s product name path do not find", "GetProductNameConfig");
            continue;
        }
        FILE* fp = OpenConfigFile(resolved, ConfigFileKind::Text).file;
        if (fp == nullptr) {
            ORLUNE_LOGE(kTagMobile, "%s get product name fopen fail", "GetProductNameConfig");
            continue;
        }
        // An empty node leaves the buffer, and so the length, as it was.
        if (fgets(gProductName, sizeof(gProductName), fp) == nullptr) {
            gProductName[sizeof(gProductName) - 1] = '\0';
        }
        gGetProductNameResult = strnlen(gProductName, sizeof(gProductName));
        fclose(fp);
    }
}
