// Where the configuration files live on the device, and the buffer sizes their paths use.
#pragma once

#include <stddef.h>

inline constexpr const char kVendorEtcDir[] = "/odm/etc";
inline constexpr const char kKivDir[] = "/odm/etc/kiv/";
inline constexpr const char kOtaDir[] = "/soundalgorithm";
inline constexpr const char kOtaMainXml[] = "/soundalgorithm/kiv_config.xml";
inline constexpr const char kRegionProperty[] = "ro.config.music_region";
inline constexpr const char kRegionDefault[] = "normal";

constexpr int kPathBytes = 128;      // every path handed between the helpers
constexpr int kBaseNameBytes = 256;  // base names of the XML files
constexpr int kResolvedPathBytes = 4096;

// True for a chosen path that names no file: null, empty, or the word "null" in any case.
bool IsNoPath(const char* path);

// The base name of a configuration XML: "kiv_config_<region>" when region files are enabled and
// the region property is not "normal", else `genericBase`. A formatting failure logs
// `failMessage`.
void ConfigBaseName(bool musicRegionEnable, const char* genericBase, char* out, size_t outSize,
                    const char* failMessage);
