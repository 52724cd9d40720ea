// Finding configuration files: product name nodes, product-specific before generic names, path
// limits, the local version, and the choice of the over-the-air copy (taken whole or not at all)
// and of region files.
#include <string.h>

#include <filesystem>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "config/ConfigPaths.h"
#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

namespace fs = std::filesystem;
const char* const kTag = "orlune_mobile";

std::string RealConfig(const char* base, const char* ext) {
    char out[kPathBytes] = {};
    const char* p = Orlune::GetRealConfigFile(base, ext, out);
    return p != nullptr ? p : "(null)";
}

// Writes `text` at a device path; null writes nothing, and "" a name that cannot be resolved.
void Put(const DeviceRoot& root, const std::string& devicePath, const char* text) {
    if (text != nullptr && text[0] == '\0') {
        fs::create_directories(fs::path(root.HostPath(devicePath)).parent_path());
        fs::create_symlink(root.HostPath("/nowhere"), root.HostPath(devicePath));
    } else if (text != nullptr) {
        root.WriteFile(devicePath, text);
    }
}

// A main file whose only record, 41, carries `marker` as its first word.
std::string MainWithMarker(int marker) {
    return XmlDocument({NvRecord(41, {marker})});
}

int LoadedMarker() {
    const std::map<int32_t, AudioOrluneMobilePara>& records = PublishedTables().gRealMapTable;
    auto it = records.find(41);
    return it == records.end() ? -1 : it->second.words[0];
}

void ForgetRecord41() {
    ConfigUpdate update;
    update.Tables().gRealMapTable.erase(41);
}

TEST(ProductName, BothNodesAreReadInOrderAndTheNameSelectsTheFile) {
    const std::string kNodes[] = {"/proc/device-tree/soc/audio_alg_info/product_name",
                                  "/proc/device-tree/audio_hw_config/product_name"};
    // Node texts (null: no node, "": a dangling link), then the name read, the file chosen, and
    // how many nodes fail.
    const std::tuple<const char*, const char*, const char*, const char*, int> cases[] = {
            {nullptr, nullptr, "", "kiv_config.xml", 2},
            {"ALPHA", "BETA", "BETA", "kiv_config_BETA.xml", 0},
            {"ALPHA", "", "ALPHA", "kiv_config_ALPHA.xml", 1},
            {nullptr, "GAMMA\n", "GAMMA\n", "kiv_config.xml", 1},  // the newline is kept
            {"DELTA", nullptr, "DELTA", "kiv_config.xml", 1},      // its file is a dangling link
    };
    for (const auto& [node0, node1, name, file, nodeFailures] : cases) {
        SCOPED_TRACE(name);
        DeviceRoot root;
        for (const char* suffix : {"", "_ALPHA", "_BETA", "_GAMMA"}) {
            root.WriteKiv(std::string("kiv_config") + suffix + ".xml", "<a/>");
        }
        Put(root, "/odm/etc/kiv/kiv_config_DELTA.xml", "");
        Put(root, kNodes[0], node0);
        Put(root, kNodes[1], node1);
        Orlune::gProductName[0] = '\0';
        Orlune::gGetProductNameResult = 0;
        LogCapture log;
        Orlune::GetProductNameConfig();
        EXPECT_STREQ(name, Orlune::gProductName);
        EXPECT_EQ(strlen(name), Orlune::gGetProductNameResult);
        EXPECT_EQ(nodeFailures, log.Count("GetProductNameConfig product name path do not find",
                                          kTag, ANDROID_LOG_ERROR));
        EXPECT_EQ(std::string("/odm/etc/kiv/") + file, RealConfig("kiv_config", "xml"));
        EXPECT_EQ("(null)", RealConfig("sur_config", "bin"));
    }
}

TEST(FileRealPath, PathsAreLimitedTo127Characters) {
    DeviceRoot root;
    // "/odm/etc/" is 9 characters: a name of 118 gives exactly 127.
    const std::string fits = "kiv/" + std::string(114, 'a');
    const std::string tooLong = fits + "b";
    root.WriteFile("/odm/etc/" + fits, "x");
    root.WriteFile("/odm/etc/" + tooLong, "x");
    char out[kPathBytes] = {};
    ASSERT_NE(nullptr, Orlune::GetFileRealPath(fits.c_str(), out, sizeof(out)));
    EXPECT_EQ("/odm/etc/" + fits, std::string(out));
    EXPECT_EQ(nullptr, Orlune::GetFileRealPath(tooLong.c_str(), out, sizeof(out)));
}

TEST(VersionInfo, NumberFromIndexEightOfTheLastMatchingWord) {
    const std::pair<std::string, int32_t> cases[] = {
            {"version=1.2.3\n", 123},
            {"build version:4.5 done", 45},
            {"myversion=2.0", 0},  // from index 8: "n=2.0", and "n=20" reads as 0
            {"version=1.2 version=0.7", 7},
            // A word too long for the 99-character scan ends the file.
            {"version=1 " + std::string(100, 'x') + " version=2", 1},
            {"version=1 " + std::string(99, 'x') + " version=2", 2},
    };
    for (const auto& [text, version] : cases) {
        SCOPED_TRACE(text.substr(0, 24));
        DeviceRoot root;
        root.WriteKiv("version.txt", text);
        EXPECT_EQ(version, Orlune::GetVersionInfo("/odm/etc/kiv/"));
    }
    DeviceRoot root;
    EXPECT_EQ(-1, Orlune::GetVersionInfo("/odm/etc/kiv/"));
}

TEST(OtaChoice, DownloadedFileNeedsAStrictlyNewerVersionALocalOneAndIsTakenWhole) {
    const std::string good = XmlDocument({NvRecord(30160, {9}), NvRecord(41, {2})});
    const std::string cut = good.substr(0, good.find("ID=\"41\"") + 12);
    // version.txt (null: none), whether a local file (marker 1) exists, the over-the-air text
    // and version (null: no directory, "": the directory only), the marker read (2: the
    // downloaded file, -1: none), and an error line.
    const std::tuple<const char*, bool, std::string, const char*, int, const char*> cases[] = {
            {"version=1.9.9", true, good, "2.0.0", 2, nullptr},
            {"version=2.0.0", true, good, "2.0.0", 1, nullptr},
            {nullptr, true, good, "2.0.0", 1, nullptr},
            {"version=1", false, good, "2.0.0", 2, nullptr},
            {"version=1", true, "", nullptr, 1,
             "KivReadConfigFromXML 764: get_download_cfg_file return nullptr"},
            {"version=1", true, "", "", 1,
             "KivReadConfigFromXML 767: cota kiv_config.xml not found"},
            {"version=1", false, "", nullptr, -1, "read kiv_config.xml:path is null"},
            {"version=1", true, cut, "2.0", 1,
             "is not well-formed, reading the local kiv_config.xml instead"},
            {"version=1", true, "<root><other/></root>", "2.0", 1,
             "holds no record, reading the local"},
            {"version=1", true, "", "2.0", 1, "is not well-formed, reading the local"},
            {"version=1", true, good, "99999999999.9", 1,
             "KivReadConfigFromXML cota kiv_config.xml version out of range: 999999999999"},
    };
    for (const auto& [versionText, localXml, ota, otaVersion, marker, error] : cases) {
        SCOPED_TRACE(testing::Message()
                     << (versionText != nullptr ? versionText : "-") << " " << localXml << " "
                     << ota.substr(0, 60) << " " << (otaVersion != nullptr ? otaVersion : "-"));
        DeviceRoot root;
        if (localXml) {
            root.WriteKiv("kiv_config.xml", MainWithMarker(1));
        }
        if (versionText != nullptr) {
            root.WriteKiv("version.txt", versionText);
        }
        if (otaVersion != nullptr && otaVersion[0] == '\0') {
            root.SetOtaDirOnly();
        } else if (otaVersion != nullptr) {
            root.SetOta(ota, otaVersion);
        }
        ForgetRecord41();
        Orlune::gVolumeThrRaw[0] = 5;
        LogCapture log;
        Orlune::KivReadConfigFromXML(false);
        EXPECT_EQ(marker, LoadedMarker());
        EXPECT_EQ(marker == 2 ? 9 : 5, Orlune::gVolumeThrRaw[0]);  // nothing of a cut file
        EXPECT_TRUE(error == nullptr || log.CountContaining(error, kTag, ANDROID_LOG_ERROR) == 1)
                << log.Dump();
    }
}

TEST(RegionFiles, BothReadersReadTheRegionFileOnlyWhenEnabled) {
    DeviceRoot root;
    root.SetProperty("ro.config.music_region", "eu");
    root.WriteKiv("kiv_config.xml", MainWithMarker(1));
    root.WriteKiv("kiv_config_vmap.xml", XmlDocument({NvMap(7000, 41, 42)}));
    root.WriteKiv("kiv_config_eu.xml", XmlDocument({NvRecord(41, {3}), NvMap(8000, 41, 42)}));
    Orlune::KivReadConfigFromXML(false);
    EXPECT_EQ(1, LoadedMarker());
    ForgetRecord41();
    Orlune::KivReadConfigFromXML(true);
    Orlune::KivReadConfigTableFromXML(true);
    EXPECT_EQ(3, LoadedMarker());
    EXPECT_EQ(1u, PublishedTables().gVituralMapTable.count(8000));
    EXPECT_EQ(0u, PublishedTables().gVituralMapTable.count(7000));
}

}  // namespace
