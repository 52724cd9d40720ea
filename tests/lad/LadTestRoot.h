// A temporary device root holding the detector's configuration file, and helpers to make the
// bridge's dlopen("liblouddetect.so") find a stand-in: an object already loaded with that
// SONAME is reused by the loader.
#pragma once

#include <dlfcn.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "lad/LoudAbnormalDetecter.h"
#include "tests/support/LogCapture.h"

constexpr const char* kStandinTag = "louddetect_standin";
constexpr const char* kStandinLad = ORLUNE_STANDIN_DIR "/liblouddetect.so";
constexpr const char* kStandinLadWithoutDelete =
        ORLUNE_STANDIN_DIR "/lad-missing-delete/liblouddetect.so";

class LadTestRoot : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/lad_root_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        mRoot = pattern;
        std::filesystem::create_directories(mRoot + "/odm/etc/kiv");
        WriteConfig("lad_config_brisel.xml", "<lad_config limit_dbfs=\"-6.0\"/>\n");
        setenv("ORLUNE_DEVICE_ROOT", mRoot.c_str(), 1);
    }
    void TearDown() override {
        unsetenv("ORLUNE_DEVICE_ROOT");
        std::filesystem::remove_all(mRoot);
    }

    void WriteConfig(const std::string& name, const std::string& text) {
        std::ofstream(mRoot + "/odm/etc/kiv/" + name) << text;
    }
    // Loads a stand-in by path so that the bridge's lookup by SONAME finds it.
    static void* Preload(const char* path) {
        void* handle = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
        EXPECT_NE(handle, nullptr) << dlerror();
        return handle;
    }
    static bool IsLoaded(const char* path) {
        void* handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
        return handle != nullptr && dlclose(handle) == 0;
    }

    std::string mRoot;
};
