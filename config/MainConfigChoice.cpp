#include "config/MainConfigChoice.h"

#include <stdlib.h>
#include <string.h>

#include <string>

#include <vardocust/download_cfg.h>

#include "config/ConfigPaths.h"
#include "config/TokenList.h"
#include "base/Log.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

namespace {

// The downloaded file's version as a number: its digits with the points removed. A version
// that does not fit 32 bits is logged and reads as -1, which is never newer.
int32_t DownloadedVersion(const DownloadCfgInfo& info) {
    std::string digits;
    for (size_t i = 0; i < sizeof(info.version) && info.version[i] != '\0'; ++i) {
        if (info.version[i] != '.') {
            digits += info.version[i];
        }
    }
    int32_t version = -1;
    if (!DecimalText(digits.c_str(), &version)) {
        LogOutOfRange("KivReadConfigFromXML", "cota kiv_config.xml version", digits.c_str());
    }
    return version;
}

}  // namespace

bool ChooseMainConfigFile(bool musicRegionEnable, char* out, bool* downloaded, char* localOut) {
    *downloaded = false;
    localOut[0] = '\0';
    char base[kBaseNameBytes] = {};
    ConfigBaseName(musicRegionEnable, "kiv_config", base, sizeof(base),
                   "ReadConfigFromXML() snprintf_s fail");

    char local[kPathBytes] = {};
    const char* chosen = Orlune::GetRealConfigFile(base, "xml", local);
    const int32_t localVersion = Orlune::GetVersionInfo(kKivDir);

    // The service's record is released on every way out.
    DownloadCfgInfo* info = get_download_cfg_file(kOtaDir, kOtaMainXml);
    if (info == nullptr) {
        ORLUNE_LOGE(kTagMobile, "%s %d: get_download_cfg_file return nullptr",
                    "KivReadConfigFromXML", 764);
    } else if (info->found == 0) {
        ORLUNE_LOGE(kTagMobile, "%s %d: cota kiv_config.xml not found", "KivReadConfigFromXML",
                    767);
    } else if (localVersion != -1 && DownloadedVersion(*info) > localVersion) {
        // A device without a readable version.txt never takes a downloaded file.
        info->path[sizeof(info->path) - 1] = '\0';
        if (!IsNoPath(chosen)) {
            strncpy_s(localOut, kPathBytes, chosen, kPathBytes - 1);
        }
        chosen = info->path;
        *downloaded = true;
    }

    bool ok = !IsNoPath(chosen) && strncpy_s(out, kPathBytes, chosen, kPathBytes - 1) == EOK;
    free(info);
    if (!ok) {
        ORLUNE_LOGE(kTagMobile, "read kiv_config.xml:path is null");
    }
    return ok;
}
