// A temporary device root for the configuration fuzz targets: each input is written to one
// configuration file under /odm/etc/kiv/ and read back by the library as on the device. Log
// lines are dropped; the root is removed when the fuzzer exits. A few first bytes stand for the
// file kinds a damaged device presents instead of a file.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include <android/log.h>
#include <sys/stat.h>

#include "base/ConfigFile.h"

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
    // A first byte of 0xFF, 0xFE or 0xFD puts a FIFO, a directory or an oversized (sparse)
    // file in the file's place: the readers must refuse them at once, never block.
    const std::string path = kivDir + name;
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
    const int kind = size > 0 ? data[0] : 0;
    if (kind == 0xFF) {
        return mkfifo(path.c_str(), 0644) == 0;
    }
    if (kind == 0xFE) {
        return std::filesystem::create_directory(path, ec);
    }
    FILE* fp = fopen(path.c_str(), "wb");
    if (fp == nullptr) {
        return false;
    }
    fwrite(data, 1, size, fp);
    fclose(fp);
    if (kind == 0xFD) {
        std::filesystem::resize_file(path, ConfigFileLimit(ConfigFileKindOf(name)) + 1, ec);
    }
    return true;
}

}  // namespace fuzz_root
