// The virtual-map reader: map elements, the UI type, headset names, and reading the file.
#include <string>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/config/ConfigTestUtil.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(VmapElements, FirstMappingOfANumidStaysAndBothAreLogged) {
    LogCapture log;
    StartMap("NV", {"NUMID", "41000", "ID", "41", "EXTID", "42"});
    StartMap("NV", {"NUMID", "0xA028", "ID", "43", "EXTID", "44"});
    ASSERT_EQ(1u, Orlune::gVituralMapTable.count(41000));
    EXPECT_EQ(41, Orlune::gVituralMapTable[41000].ID);
    EXPECT_EQ(42, Orlune::gVituralMapTable[41000].EXTID);
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ("StartElementMapTable attrNUMIDValue:41000, attrIDValue:41, attrIDValue:42",
              lines[0].message);
    EXPECT_EQ("StartElementMapTable attrNUMIDValue:41000, attrIDValue:43, attrIDValue:44",
              lines[1].message);
    EXPECT_EQ(ANDROID_LOG_INFO, lines[1].priority);
}

TEST(VmapElements, MapElementNeedsAllThreeNumbers) {
    LogCapture log;
    StartMap("NV", {"NUMID", "41000", "ID", "41"});
    StartMap("NV", {});
    EXPECT_EQ(2, log.Count(" StartElementMapTable() attrNUMID or attrID or attrEXTID is null",
                           "orlune_mobile", ANDROID_LOG_ERROR));
    EXPECT_EQ(0u, Orlune::gVituralMapTable.count(41000));
}

TEST(VmapElements, KeyZeroPlaceholderBlocksNumidZero) {
    StartMap("NV", {"NUMID", "0", "ID", "41", "EXTID", "42"});
    EXPECT_EQ(0, Orlune::gVituralMapTable[0].ID);
}

TEST(VmapCfg, UiTypeFromTheFirstTokenAndTheLastElementWins) {
    LogCapture log;
    StartMap("CFG", {"NUMID", "0", "PARAM_VALUE", "{0x1}"});
    EXPECT_EQ(1, Orlune::gUiType);
    EXPECT_EQ(1, log.Count("XMLLengthCheck:0", "orlune_mobile", ANDROID_LOG_INFO));
    log.Clear();
    StartMap("CFG", {"NUMID", "0", "PARAM_VALUE", "1F 2 3"});
    EXPECT_EQ(0x1f, Orlune::gUiType);
    EXPECT_EQ(0u, log.Lines().size()) << log.Dump();
    StartMap("CFG", {"NUMID", "0", "PARAM_VALUE", "18000"});
    EXPECT_EQ(-32768, Orlune::gUiType);
}

TEST(VmapCfg, RejectedElementsLeaveTheUiType) {
    StartMap("CFG", {"NUMID", "0", "PARAM_VALUE", "2"});
    LogCapture log;
    StartMap("CFG", {"NUMID", "1", "PARAM_VALUE", "5"});
    StartMap("CFG", {"NUMID", "0", "PARAM_VALUE", ";"});
    StartMap("CFG", {"PARAM_VALUE", "5"});
    StartMap("CFG", {"NUMID", "0"});
    EXPECT_EQ(2, Orlune::gUiType);
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(4u, lines.size()) << log.Dump();
    EXPECT_EQ("unsupport cfg id: 1", lines[0].message);
    EXPECT_EQ("StartElement() paramPtr or elem is null, elemNum: 0", lines[1].message);
    EXPECT_EQ("XmlCfgParamParse cfgID is null", lines[2].message);
    EXPECT_EQ("XmlCfgParamParse cfgValue is null", lines[3].message);
}

TEST(VmapHpMap, WholeNameIsTheKeyAndTheFirstNumberStays) {
    StartMap("HPMAP", {"NUMID", "0x10", "NAME", "Lumen XE"});
    StartMap("HPMAP", {"NUMID", "3", "NAME", "Lumen XE"});
    ASSERT_EQ(1u, Orlune::gHpMapTable.count("Lumen XE"));
    EXPECT_EQ(16, Orlune::gHpMapTable["Lumen XE"]);
    EXPECT_EQ(0u, Orlune::gHpMapTable.count("DEFAULT"));
    EXPECT_EQ(0, Orlune::gHpMapTable.at("DEFALUT"));
}

TEST(VmapHpMap, MissingAttributesUseTheSwappedLabels) {
    LogCapture log;
    StartMap("HPMAP", {"NUMID", "1"});
    StartMap("HPMAP", {"NAME", "X"});
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ("XmlHpMapParse cfgID is null", lines[0].message);
    EXPECT_EQ("XmlHpMapParse cfgValue is null", lines[1].message);
    EXPECT_EQ(1u, Orlune::gHpMapTable.size());
}

TEST(VmapHpMap, NameOf3000CharactersIsNotKept) {
    LogCapture log;
    StartMap("HPMAP", {"NUMID", "4", "NAME", std::string(3000, 'n').c_str()});
    EXPECT_TRUE(log.Has("XmlHpMapParse strcpy_s fail", "orlune_mobile", ANDROID_LOG_ERROR));
    StartMap("HPMAP", {"NUMID", "5", "NAME", std::string(2999, 'n').c_str()});
    EXPECT_EQ(5, Orlune::gHpMapTable[std::string(2999, 'n')]);
}

TEST(VmapFile, ReadsTheProductSpecificFileAndLogsIt) {
    DeviceRoot root;
    root.SetProductNode(1, "ETA");
    root.WriteKiv("kiv_config_vmap.xml", XmlDocument({NvMap(1, 41, 42)}));
    root.WriteKiv("kiv_config_vmap_ETA.xml",
                  XmlDocument({"<CFG NUMID=\"0\" PARAM_VALUE=\"1\"/>",
                               "<HPMAP NUMID=\"3\" NAME=\"Lumen XE\"/>",
                               "<group>" + NvMap(2, 41, 42) + "</group>"}));
    Orlune::GetProductNameConfig();
    LogCapture log;
    EXPECT_EQ(0, Orlune::KivReadConfigTableFromXML(false));
    EXPECT_EQ(1u, Orlune::gVituralMapTable.count(2));
    EXPECT_EQ(0u, Orlune::gVituralMapTable.count(1));
    EXPECT_EQ(1, Orlune::gUiType);
    EXPECT_EQ(3, Orlune::gHpMapTable["Lumen XE"]);
    EXPECT_TRUE(log.Has("Read orlune config vmap file /odm/etc/kiv/kiv_config_vmap_ETA.xml",
                        "orlune_mobile", ANDROID_LOG_INFO))
            << log.Dump();
}

TEST(VmapFile, MissingFileAndParseError) {
    DeviceRoot root;
    LogCapture log;
    EXPECT_EQ(-1, Orlune::KivReadConfigTableFromXML(false));
    EXPECT_TRUE(
            log.Has("read kiv_config_vmap.xml:path is null", "orlune_mobile", ANDROID_LOG_ERROR));
    root.WriteKiv("kiv_config_vmap.xml", "<m>" + NvMap(5, 41, 42) + "<NV NUMID=\"6\"</m>");
    log.Clear();
    Orlune::KivReadConfigTableFromXML(false);
    EXPECT_EQ(1u, Orlune::gVituralMapTable.count(5));
    EXPECT_TRUE(
            log.Has("KivReadConfigTableFromXML status error", "orlune_mobile", ANDROID_LOG_ERROR));
}

}  // namespace
