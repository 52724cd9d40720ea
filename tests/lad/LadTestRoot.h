// A temporary device root holding the detector's configuration file for type 1; the bridge's
// dlopen("liblouddetect.so") finds a stand-in preloaded by path (support/HostEffect.h).
#pragma once

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "lad/LoudAbnormalDetecter.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/HostEffect.h"
#include "tests/support/LogCapture.h"

constexpr const char* kStandinTag = "louddetect_standin";
constexpr const char* kStandinLad = ORLUNE_STANDIN_DIR "/liblouddetect.so";
constexpr const char* kStandinLadWithoutDelete =
        ORLUNE_STANDIN_DIR "/lad-missing-delete/liblouddetect.so";

class LadTestRoot : public ::testing::Test {
protected:
    void SetUp() override {
        root.WriteKiv("lad_config_brisel.xml", "<lad_config limit_dbfs=\"-6.0\"/>\n");
    }
    static void* Preload(const char* path) {
        void* handle = PreloadStandin(path);
        EXPECT_NE(handle, nullptr) << dlerror();
        return handle;
    }

    DeviceRoot root;
};
