// Device paths under ORLUNE_DEVICE_ROOT, realpath mapped back, and the unmapped real root.
#include <platform/device_fs.h>

#include <errno.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/platform/TempTree.h"

namespace orlune_platform {
namespace {

std::string Realpath(const char* path) {
    char out[PATH_MAX];
    return DevRealpath(path, out) != nullptr ? out : "<null>";
}

std::string HostPath(const char* path) {
    char out[PATH_MAX];
    return DevHostPath(path, out, sizeof out) ? out : "<false>";
}

class PlatformDeviceFs : public ::testing::Test {
protected:
    PlatformDeviceFs() {
        mTree.Write("root/odm/etc/kiv/version.txt", "1.0.2\n");
        std::filesystem::create_symlink("version.txt", mTree.Path() + "/root/odm/etc/kiv/link");
        std::filesystem::create_directory_symlink("root", mTree.Path() + "/rootlink");
    }
    TempTree mTree;
    std::string mRoot = mTree.Path() + "/root";
};

TEST_F(PlatformDeviceFs, AbsolutePathsAreLookedUpUnderTheRoot) {
    ScopedEnv env("ORLUNE_DEVICE_ROOT", mRoot.c_str());
    EXPECT_EQ(HostPath("/odm/etc/kiv/version.txt"), mRoot + "/odm/etc/kiv/version.txt");
    EXPECT_EQ(HostPath("relative/x"), "relative/x");
    char small[8];
    EXPECT_FALSE(DevHostPath("/odm/etc/kiv/version.txt", small, sizeof small));

    EXPECT_EQ(DevAccess("/odm/etc/kiv/version.txt", R_OK), 0);
    EXPECT_EQ(DevAccess("/odm/etc/kiv/missing", F_OK), -1);
    EXPECT_EQ(errno, ENOENT);
    struct stat st {};
    ASSERT_EQ(DevStat("/odm/etc/kiv/version.txt", &st), 0);
    EXPECT_EQ(st.st_size, 6);
    FILE* fp = DevFopen("/odm/etc/kiv/version.txt", "r");
    ASSERT_NE(fp, nullptr);
    char line[16] = {};
    EXPECT_NE(fgets(line, sizeof line, fp), nullptr);
    fclose(fp);
    EXPECT_STREQ(line, "1.0.2\n");
    EXPECT_EQ(DevFopen("/odm/missing", "r"), nullptr);
}

TEST_F(PlatformDeviceFs, RealpathIsMappedBackToADevicePath) {
    for (const std::string& root : {mRoot, mRoot + "/", mTree.Path() + "/rootlink"}) {
        ScopedEnv env("ORLUNE_DEVICE_ROOT", root.c_str());
        EXPECT_EQ(Realpath("/odm/etc/kiv/version.txt"), "/odm/etc/kiv/version.txt") << root;
        EXPECT_EQ(Realpath("/odm/etc/../etc/kiv/./link"), "/odm/etc/kiv/version.txt") << root;
        EXPECT_EQ(Realpath("/odm"), "/odm") << root;
        EXPECT_EQ(Realpath("/"), "/") << root;
        EXPECT_EQ(Realpath("/odm/etc/kiv/missing"), "<null>") << root;
    }
    ScopedEnv env("ORLUNE_DEVICE_ROOT", mRoot.c_str());
    char* allocated = DevRealpath("/odm/etc/kiv/link", nullptr);
    ASSERT_NE(allocated, nullptr);
    EXPECT_STREQ(allocated, "/odm/etc/kiv/version.txt");
    free(allocated);
}

TEST_F(PlatformDeviceFs, UnsetOrEmptyRootUsesTheRealRoot) {
    for (const char* root : {static_cast<const char*>(nullptr), ""}) {
        ScopedEnv env("ORLUNE_DEVICE_ROOT", root);
        EXPECT_EQ(HostPath("/odm/etc/kiv/version.txt"), "/odm/etc/kiv/version.txt");
        std::string file = mRoot + "/odm/etc/kiv/link";
        EXPECT_EQ(Realpath(file.c_str()),
                  std::filesystem::canonical(mRoot).string() + "/odm/etc/kiv/version.txt");
        EXPECT_EQ(DevAccess(file.c_str(), R_OK), 0);
        EXPECT_EQ(Realpath("/"), "/");
    }
}

}  // namespace
}  // namespace orlune_platform
