// Which XML files the readers choose: over-the-air copy against the local version, region
// files, product-specific files.
#include <string>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

// A main file whose only record, 41, carries `marker` as its first word.
std::string MainWithMarker(int marker) {
    return XmlDocument({NvRecord(41, {marker})});
}

int LoadedMarker() {
    auto it = Orlune::gRealMapTable.find(41);
    return it == Orlune::gRealMapTable.end() ? -1 : it->second.words[0];
}

struct OtaCase {
    const char* localVersion;  // content of version.txt, or null for none
    const char* otaVersion;
    int expectedMarker;  // 1 local, 2 downloaded
};

class OtaChoice : public ::testing::TestWithParam<OtaCase> {};

TEST_P(OtaChoice, DownloadedFileNeedsAStrictlyNewerVersionAndALocalOne) {
    const OtaCase& c = GetParam();
    DeviceRoot root;
    root.WriteKiv("kiv_config.xml", MainWithMarker(1));
    if (c.localVersion != nullptr) {
        root.SetVersionText(c.localVersion);
    }
    root.SetOta(MainWithMarker(2), c.otaVersion);
    LogCapture log;
    Orlune::KivReadConfigFromXML(false);
    EXPECT_EQ(c.expectedMarker, LoadedMarker()) << log.Dump();
    EXPECT_TRUE(log.Has(c.expectedMarker == 2
                                ? "Read orlune config file /soundalgorithm/kiv_config.xml"
                                : "Read orlune config file /odm/etc/kiv/kiv_config.xml"))
            << log.Dump();
}

std::string OtaCaseName(const ::testing::TestParamInfo<OtaCase>& info) {
    static const char* const kNames[] = {"Newer", "Equal", "Older", "NoVersionFile",
                                         "NoVersionWord"};
    return kNames[info.index];
}

INSTANTIATE_TEST_SUITE_P(Versions, OtaChoice,
                         ::testing::Values(OtaCase{"version=1.9.9", "2.0.0", 2},
                                           OtaCase{"version=2.0.0", "2.0.0", 1},
                                           OtaCase{"version=2.0.1", "2.0.0", 1},
                                           OtaCase{nullptr, "9.9.9", 1},
                                           OtaCase{"no number here", "9.9.9", 1}),
                         OtaCaseName);

TEST(OtaChoice, ServiceAnswersAreLogged) {
    DeviceRoot root;
    root.WriteKiv("kiv_config.xml", MainWithMarker(1));
    LogCapture log;
    Orlune::KivReadConfigFromXML(false);
    EXPECT_TRUE(log.Has("KivReadConfigFromXML 764: get_download_cfg_file return nullptr",
                        "orlune_mobile", ANDROID_LOG_ERROR))
            << log.Dump();
    root.SetOtaDirOnly();
    log.Clear();
    Orlune::KivReadConfigFromXML(false);
    EXPECT_TRUE(log.Has("KivReadConfigFromXML 767: cota kiv_config.xml not found", "orlune_mobile",
                        ANDROID_LOG_ERROR))
            << log.Dump();
    EXPECT_EQ(1, LoadedMarker());
}

TEST(OtaChoice, DownloadedFileReplacesAMissingLocalOne) {
    DeviceRoot root;
    root.SetVersionText("version=1");
    root.SetOta(MainWithMarker(2), "2");
    LogCapture log;
    Orlune::KivReadConfigFromXML(false);
    EXPECT_EQ(2, LoadedMarker()) << log.Dump();
    EXPECT_EQ(0, log.Count("read kiv_config.xml:path is null"));
}

TEST(RegionFiles, BothReadersReadTheRegionFileWhenEnabled) {
    DeviceRoot root;
    root.SetProperty("ro.config.music_region", "eu");
    root.WriteKiv("kiv_config.xml", MainWithMarker(1));
    root.WriteKiv("kiv_config_vmap.xml", XmlDocument({NvMap(7000, 41, 42)}));
    root.WriteKiv("kiv_config_eu.xml", XmlDocument({NvRecord(41, {3}), NvMap(8000, 41, 42)}));
    LogCapture log;
    Orlune::KivReadConfigFromXML(true);
    Orlune::KivReadConfigTableFromXML(true);
    EXPECT_EQ(3, LoadedMarker());
    EXPECT_EQ(1u, Orlune::gVituralMapTable.count(8000));
    EXPECT_EQ(0u, Orlune::gVituralMapTable.count(7000));
    EXPECT_TRUE(log.Has("Read orlune config file /odm/etc/kiv/kiv_config_eu.xml"));
    EXPECT_TRUE(log.Has("Read orlune config vmap file /odm/etc/kiv/kiv_config_eu.xml"))
            << log.Dump();
}

TEST(RegionFiles, DisabledOrNormalRegionReadsTheGenericFiles) {
    DeviceRoot root;
    root.SetProperty("ro.config.music_region", "eu");
    root.WriteKiv("kiv_config.xml", MainWithMarker(1));
    root.WriteKiv("kiv_config_eu.xml", MainWithMarker(3));
    Orlune::KivReadConfigFromXML(false);
    EXPECT_EQ(1, LoadedMarker());
    Orlune::gRealMapTable.erase(41);
    root.SetProperty("ro.config.music_region", "normal");
    Orlune::KivReadConfigFromXML(true);
    EXPECT_EQ(1, LoadedMarker());
}

TEST(RegionFiles, ProductSpecificRegionFileComesFirst) {
    DeviceRoot root;
    root.SetProductNode(0, "ZETA");
    root.SetProperty("ro.config.music_region", "eu");
    root.WriteKiv("kiv_config_eu.xml", MainWithMarker(3));
    root.WriteKiv("kiv_config_eu_ZETA.xml", MainWithMarker(4));
    Orlune::GetProductNameConfig();
    Orlune::KivReadConfigFromXML(true);
    EXPECT_EQ(4, LoadedMarker());
}

}  // namespace
