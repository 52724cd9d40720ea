// A temporary device root for the configuration fuzz targets: each input is written to one
// configuration file under /odm/etc/kiv/ and read back by the library as on the device. Log
// lines are dropped; the root is removed when the fuzzer exits. (What is not a regular file of
// sane size, the readers refuse before parsing; the configuration tests cover that.)
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <android/log.h>

namespace fuzz_root {

inline void DropLine(const __android_logger_data*, const char*) {}

inline void RemoveRoot() {
    std::error_code ec;
    std::filesystem::remove_all(getenv("ORLUNE_DEVICE_ROOT"), ec);
}

// Writes the input to /odm/etc/kiv/`name` under the root, making the root on the first call.
inline bool WriteConfigFile(const char* name, const uint8_t* data, size_t size) {
    static std::string kivDir;
    if (kivDir.empty()) {
        char dir[] = "/tmp/orlune-fuzz-XXXXXX";
        if (mkdtemp(dir) == nullptr) {
            abort();
        }
        kivDir = std::string(dir) + "/odm/etc/kiv/";
        std::filesystem::create_directories(kivDir);
        setenv("ORLUNE_DEVICE_ROOT", dir, 1);
        unsetenv("ORLUNE_PROPERTIES");
        atexit(RemoveRoot);
        __android_log_set_logger(DropLine);
        __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    }
    std::ofstream file(kivDir + name, std::ios::binary | std::ios::trunc);
    return static_cast<bool>(file.write(reinterpret_cast<const char*>(data), size));
}

}  // namespace fuzz_root
