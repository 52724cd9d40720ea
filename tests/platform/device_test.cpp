// The host's device: paths under ORLUNE_DEVICE_ROOT with realpath mapped back, and the
// customisation stub's three answers.
#include <gtest/gtest.h>
#include <limits.h>
#include <platform/device_fs.h>
#include <stdlib.h>
#include <vardocust/download_cfg.h>

#include <filesystem>
#include <string>

#include "tests/support/DeviceRoot.h"

namespace orlune_platform {
namespace {

std::string Realpath(const char* path) {
    char out[PATH_MAX];
    return DevRealpath(path, out) != nullptr ? out : "<null>";
}

TEST(PlatformDevice, RealpathIsMappedBackFromTheRootOrTheRealRoot) {
    DeviceRoot root;
    root.WriteKiv("version.txt", "1.0.2\n");
    std::filesystem::create_symlink("version.txt", root.HostPath("/odm/etc/kiv/link"));
    EXPECT_EQ(Realpath("/odm/etc/../etc/kiv/./link"), "/odm/etc/kiv/version.txt");
    EXPECT_EQ(Realpath("/odm"), "/odm");
    EXPECT_EQ(Realpath("/"), "/");
    EXPECT_EQ(Realpath("/odm/etc/kiv/missing"), "<null>");
    // Unset: the real root.
    unsetenv("ORLUNE_DEVICE_ROOT");
    EXPECT_EQ(Realpath("/odm/etc/kiv/link"), "<null>");
    EXPECT_EQ(Realpath(root.HostPath("/odm/etc/kiv/link").c_str()),
              root.HostPath("/odm/etc/kiv/version.txt"));
}

// "null", or "<found> <path> <version>" of the record.
std::string DownloadCfg(const char* dir) {
    DownloadCfgInfo* info = get_download_cfg_file(dir, "/soundalgorithm/kiv_config.xml");
    std::string out =
            info == nullptr ? "null"
                            : std::to_string(info->found) + " " + info->path + " " + info->version;
    free(info);
    return out;
}

TEST(PlatformDevice, DownloadCfgAnswersFileDirectoryOrNothing) {
    DeviceRoot root;
    EXPECT_EQ(DownloadCfg("/soundalgorithm"), "null");
    root.SetOtaDirOnly();
    EXPECT_EQ(DownloadCfg("/soundalgorithm"), "0  ");
    root.WriteFile("/soundalgorithm/kiv_config.xml", "<xml/>");
    EXPECT_EQ(DownloadCfg("/soundalgorithm"), "1 /soundalgorithm/kiv_config.xml ");
    root.WriteFile("/soundalgorithm/cfg_version", "2.0.1.7\nsecond line\n");
    EXPECT_EQ(DownloadCfg("/soundalgorithm/"), "1 /soundalgorithm/kiv_config.xml 2.0.1.7");
}

}  // namespace
}  // namespace orlune_platform
