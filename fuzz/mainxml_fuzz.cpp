// Fuzzes the main XML reader: the input becomes /odm/etc/kiv/kiv_config.xml of a temporary
// device root and is read as on the device. The tables are emptied before every run.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include <android/log.h>

#include "effect/orlune.h"
#include "tools/config/LoadOrder.h"

namespace {

std::string gKivFile;

void DropLine(const __android_logger_data*, const char*) {}

void RemoveRoot() {
    std::error_code ec;
    std::filesystem::remove_all(getenv("ORLUNE_DEVICE_ROOT"), ec);
}

void MakeRoot() {
    char dir[] = "/tmp/orlune-fuzz-mainxml-XXXXXX";
    if (mkdtemp(dir) == nullptr) {
        abort();
    }
    std::filesystem::create_directories(std::string(dir) + "/odm/etc/kiv");
    setenv("ORLUNE_DEVICE_ROOT", dir, 1);
    unsetenv("ORLUNE_PROPERTIES");
    gKivFile = std::string(dir) + "/odm/etc/kiv/kiv_config.xml";
    atexit(RemoveRoot);
    __android_log_set_logger(DropLine);
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (gKivFile.empty()) {
        MakeRoot();
    }
    FILE* fp = fopen(gKivFile.c_str(), "wb");
    if (fp == nullptr) {
        return 0;
    }
    fwrite(data, 1, size, fp);
    fclose(fp);
    ResetConfigurationTables();
    Orlune::KivReadConfigFromXML(false);
    return 0;
}
