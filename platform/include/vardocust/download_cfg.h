// The maker's customisation service: where an over-the-air configuration file lives. The
// device build links the maker's library (libvardocust); a host build has a stub that looks
// under the device root (platform/src/download_cfg.cpp).
#pragma once

#include <stdint.h>

struct DownloadCfgInfo {
    char path[100];     // NUL-terminated absolute path of the downloaded file
    char version[100];  // NUL-terminated version text, digits separated by points
    uint8_t found;      // non-zero when a downloaded file exists
};
static_assert(sizeof(DownloadCfgInfo) == 201, "DownloadCfgInfo layout");

extern "C" {
// A malloc'ed record (release it with free), or null when neither the directory nor the
// file is present.
DownloadCfgInfo* get_download_cfg_file(const char* dir, const char* file);
}
