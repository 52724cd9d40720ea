// Finding configuration files: product name nodes, product-specific before generic names, path
// limits, and the version of the local configuration.
#include <unistd.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "config/ConfigPaths.h"
#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

std::string RealConfig(const char* base, const char* ext) {
    char out[kPathBytes] = {};
    const char* p = Orlune::GetRealConfigFile(base, ext, out);
    return p != nullptr ? p : "(null)";
}

TEST(ProductName, NoNodeKeepsTheNameUnknownAndOnlyTheGenericFileIsTried) {
    DeviceRoot root;
    root.WriteKiv("kiv_config.xml", "<a/>");
    LogCapture log;
    Orlune::GetProductNameConfig();
    EXPECT_EQ(2, log.Count("GetProductNameConfig product name path do not find", "orlune_mobile",
                           ANDROID_LOG_ERROR));
    EXPECT_EQ(0u, Orlune::gGetProductNameResult);

    log.Clear();
    EXPECT_EQ("/odm/etc/kiv/kiv_config.xml", RealConfig("kiv_config", "xml"));
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size()) << log.Dump();
    EXPECT_EQ("read getRealConfigFile realConfigFile kiv/kiv_config.xml", lines[0].message);
    EXPECT_EQ("GetFileRealPath realFilePath /odm/etc/kiv/kiv_config.xml", lines[1].message);
    EXPECT_EQ(ANDROID_LOG_INFO, lines[1].priority);
}

TEST(ProductName, SecondNodeWinsAndItsFileComesBeforeTheGenericOne) {
    DeviceRoot root;
    root.SetProductNode(0, "ALPHA");
    root.SetProductNode(1, "BETA");
    root.WriteKiv("kiv_config.xml", "<a/>");
    root.WriteKiv("kiv_config_ALPHA.xml", "<a/>");
    root.WriteKiv("kiv_config_BETA.xml", "<a/>");
    Orlune::GetProductNameConfig();
    EXPECT_STREQ("BETA", Orlune::gProductName);
    EXPECT_EQ(4u, Orlune::gGetProductNameResult);
    LogCapture log;
    EXPECT_EQ("/odm/etc/kiv/kiv_config_BETA.xml", RealConfig("kiv_config", "xml"));
    EXPECT_TRUE(log.Has("read getRealConfigFile realConfigFile kiv/kiv_config_BETA.xml"))
            << log.Dump();
}

TEST(ProductName, FailedSecondNodeLeavesTheFirstNodesName) {
    DeviceRoot root;
    root.SetProductNode(0, "ALPHA");
    // A dangling link: the node exists as a name but cannot be resolved.
    std::filesystem::create_directories(root.HostPath("/proc/device-tree/audio_hw_config"));
    std::filesystem::create_symlink(
            root.HostPath("/nowhere"),
            root.HostPath("/proc/device-tree/audio_hw_config/product_name"));
    LogCapture log;
    Orlune::GetProductNameConfig();
    EXPECT_STREQ("ALPHA", Orlune::gProductName);
    EXPECT_EQ(5u, Orlune::gGetProductNameResult);
    EXPECT_EQ(1, log.Count("GetProductNameConfig product name path do not find"));
}

TEST(ProductName, TrailingNewlineIsKeptSoTheProductFileIsNotFound) {
    DeviceRoot root;
    root.SetProductNode(1, "GAMMA\n");
    root.WriteKiv("kiv_config.xml", "<a/>");
    root.WriteKiv("kiv_config_GAMMA.xml", "<a/>");
    Orlune::GetProductNameConfig();
    EXPECT_STREQ("GAMMA\n", Orlune::gProductName);
    EXPECT_EQ(6u, Orlune::gGetProductNameResult);
    EXPECT_EQ("/odm/etc/kiv/kiv_config.xml", RealConfig("kiv_config", "xml"));
}

TEST(RealConfigFile, UnusableProductFileFallsBackToTheGenericName) {
    DeviceRoot root;
    root.SetProductNode(0, "DELTA");
    root.WriteKiv("tws_config1.bin", "xx");
    std::filesystem::create_symlink(root.HostPath("/gone.bin"),
                                    root.HostPath("/odm/etc/kiv/tws_config1_DELTA.bin"));
    Orlune::GetProductNameConfig();
    LogCapture log;
    EXPECT_EQ("/odm/etc/kiv/tws_config1.bin", RealConfig("tws_config1", "bin"));
    EXPECT_EQ(1, log.Count("GetFileRealPath get file fail", "orlune_mobile", ANDROID_LOG_ERROR));
    EXPECT_TRUE(log.Has("read getRealConfigFile realConfigFile kiv/tws_config1.bin"));
}

TEST(RealConfigFile, UnreadableProductFileFallsBackToTheGenericName) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "access() grants everything to root";
    }
    DeviceRoot root;
    root.SetProductNode(0, "DELTA");
    root.WriteKiv("kiv_config.xml", "<a/>");
    root.WriteKiv("kiv_config_DELTA.xml", "<a/>");
    root.Chmod("/odm/etc/kiv/kiv_config_DELTA.xml", 0);
    Orlune::GetProductNameConfig();
    EXPECT_EQ("/odm/etc/kiv/kiv_config.xml", RealConfig("kiv_config", "xml"));
}

TEST(RealConfigFile, NeitherFileGivesNull) {
    DeviceRoot root;
    root.SetProductNode(0, "EPSILON");
    Orlune::GetProductNameConfig();
    LogCapture log;
    EXPECT_EQ("(null)", RealConfig("sur_config", "bin"));
    EXPECT_EQ(2, log.Count("GetFileRealPath get file fail"));
    EXPECT_TRUE(log.Has("read getRealConfigFile realConfigFile kiv/sur_config.bin"));
}

TEST(FileRealPath, PathsAreLimitedTo127Characters) {
    DeviceRoot root;
    // "/odm/etc/" is 9 characters: a name of 118 gives exactly 127.
    const std::string fits = "kiv/" + std::string(114, 'a');
    const std::string tooLong = fits + "b";
    root.WriteFile("/odm/etc/" + fits, "x");
    root.WriteFile("/odm/etc/" + tooLong, "x");
    LogCapture log;
    char out[kPathBytes] = {};
    ASSERT_NE(nullptr, Orlune::GetFileRealPath(fits.c_str(), out, sizeof(out)));
    EXPECT_EQ("/odm/etc/" + fits, std::string(out));
    EXPECT_EQ(nullptr, Orlune::GetFileRealPath(tooLong.c_str(), out, sizeof(out)));
    EXPECT_EQ(1, log.Count("GetFileRealPath strncpy_s error", "orlune_mobile", ANDROID_LOG_ERROR));
}

TEST(FileRealPath, TooSmallOutputBufferFailsAsACopyError) {
    DeviceRoot root;
    root.WriteKiv("kiv_config.xml", "<a/>");
    LogCapture log;
    char out[16] = {};
    EXPECT_EQ(nullptr, Orlune::GetFileRealPath("kiv/kiv_config.xml", out, sizeof(out)));
    EXPECT_TRUE(log.Has("GetFileRealPath strncpy_s error"));
}

TEST(FileRealPath, CheckFileExists) {
    DeviceRoot root;
    root.WriteKiv("teh_config.bin", "xx");
    EXPECT_TRUE(Orlune::CheckFileExists("kiv/teh_config.bin"));
    EXPECT_FALSE(Orlune::CheckFileExists("kiv/missing.bin"));
}

TEST(NoPath, NullEmptyAndTheWordNullInAnyCase) {
    EXPECT_TRUE(IsNoPath(nullptr));
    EXPECT_TRUE(IsNoPath(""));
    EXPECT_TRUE(IsNoPath("null"));
    EXPECT_TRUE(IsNoPath("NuLL"));
    EXPECT_FALSE(IsNoPath("/null"));
    EXPECT_FALSE(IsNoPath("nullx"));
}

int32_t VersionOf(const std::string& text) {
    DeviceRoot root;
    root.SetVersionText(text);
    return Orlune::GetVersionInfo("/odm/etc/kiv/");
}

TEST(VersionInfo, NumberIsTakenFromIndexEightOfTheMatchingWord) {
    EXPECT_EQ(123, VersionOf("version=1.2.3\n"));
    EXPECT_EQ(45, VersionOf("build version:4.5 done"));
    EXPECT_EQ(-1, VersionOf("1.2.3"));
    // From index 8 of "myversion=2.0" the text is "n=2.0": "n=20" reads as 0.
    EXPECT_EQ(0, VersionOf("myversion=2.0"));
    EXPECT_EQ(0, VersionOf("version"));
    EXPECT_EQ(7, VersionOf("version=1.2 version=0.7"));
}

TEST(VersionInfo, AWordTooLongForTheScanEndsTheFile) {
    EXPECT_EQ(1, VersionOf("version=1 " + std::string(100, 'x') + " version=2"));
    EXPECT_EQ(2, VersionOf("version=1 " + std::string(99, 'x') + " version=2"));
}

TEST(VersionInfo, MissingFileAndLogLines) {
    DeviceRoot root;
    LogCapture log;
    EXPECT_EQ(-1, Orlune::GetVersionInfo("/odm/etc/kiv/"));
    EXPECT_TRUE(log.Has("read version.txt realpath is null", "orlune_mobile", ANDROID_LOG_ERROR));
    root.SetVersionText("version=3");
    log.Clear();
    EXPECT_EQ(3, Orlune::GetVersionInfo("/odm/etc/kiv/"));
    EXPECT_TRUE(log.Has("Read version.txt realpath /odm/etc/kiv/version.txt", "orlune_mobile",
                        ANDROID_LOG_INFO))
            << log.Dump();
}

}  // namespace
