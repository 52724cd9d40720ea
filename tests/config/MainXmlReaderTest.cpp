// The main XML reader: fixed tables, records through the staging records, first-wins merging,
// value lists and their limits, and reading whole files.
#include <string>

#include <gtest/gtest.h>

#include "config/ValueCountObserver.h"
#include "effect/orlune.h"
#include "tests/config/ConfigTestUtil.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

const AudioOrluneMobilePara* MainRecord(int32_t id) {
    auto it = Orlune::gRealMapTable.find(id);
    return it == Orlune::gRealMapTable.end() ? nullptr : &it->second;
}

const AudioOrluneMobileParaExt* ExtRecord(int32_t id) {
    auto it = Orlune::gRealMapTableExt.find(id);
    return it == Orlune::gRealMapTableExt.end() ? nullptr : &it->second;
}

TEST(MainXmlFixedTables, HexAndDecimalIdsSelectTheThresholdTable) {
    LogCapture log;
    StartMain("NV", {"ID", "0x75D0", "PARAM_VALUE", "{1, 2, 3}"});
    EXPECT_EQ(1, Orlune::gVolumeThrRaw[0]);
    EXPECT_EQ(3, Orlune::gVolumeThrRaw[2]);
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", "9"});
    EXPECT_EQ(9, Orlune::gVolumeThrRaw[0]);
    EXPECT_EQ(2, Orlune::gVolumeThrRaw[1]);  // the table is not cleared either
    EXPECT_EQ(2, log.Count("XMLLengthCheck:30160", "orlune_mobile", ANDROID_LOG_INFO));
    EXPECT_EQ(0, log.CountContaining("attrIDValue")) << "fixed tables are not records";
    EXPECT_TRUE(Orlune::gRealMapTable.count(30160) == 0 &&
                Orlune::gRealMapTableExt.count(30160) == 0);
}

TEST(MainXmlFixedTables, LengthCheckIsLoggedOnlyWhenTheListEndsWithinTheTable) {
    LogCapture log;
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", HexList(36).c_str()});
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", HexList(37, 100).c_str()});
    EXPECT_EQ(2, log.Count("XMLLengthCheck:30160"));
    log.Clear();
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", HexList(40, 200).c_str()});
    EXPECT_EQ(0u, log.Lines().size()) << log.Dump();
    EXPECT_EQ(200, Orlune::gVolumeThrRaw[0]);
    EXPECT_EQ(236, Orlune::gVolumeThrRaw[36]);
}

TEST(MainXmlFixedTables, HeadphoneTypeWordsComeInTwoParts) {
    StartMain("NV", {"ID", "30181", "PARAM_VALUE", HexList(300, 1).c_str()});
    StartMain("NV", {"ID", "30182", "PARAM_VALUE", HexList(300, 1000).c_str()});
    EXPECT_EQ(1, Orlune::gParameterHpType[0]);
    EXPECT_EQ(256, Orlune::gParameterHpType[255]);
    EXPECT_EQ(1000, Orlune::gParameterHpType[256]);
    EXPECT_EQ(1031, Orlune::gParameterHpType[287]);
}

TEST(MainXmlFixedTables, EmptyListLogsNoValues) {
    LogCapture log;
    StartMain("NV", {"ID", "30182", "PARAM_VALUE", " ,;{}[]=\t\n\r"});
    EXPECT_TRUE(log.Has("StartElement() paramPtr or elem is null, elemNum: 0", "orlune_mobile",
                        ANDROID_LOG_ERROR));
    EXPECT_EQ(1u, log.Lines().size());
}

TEST(MainXmlValues, TokensAreHexWithAnyDelimiterAndKeepTheirLow16Bits) {
    StartMain("NV", {"ID", "30160", "PARAM_VALUE",
                     "{1A;FF}[0x10]=7\t8\n9\r0x1G,ZZ,0x8000,1FFFF,-1,ffff"});
    const int16_t expected[] = {0x1a, 0xff, 0x10, 7, 8, 9, 1, 0, -32768, -1, -1, -1};
    for (size_t i = 0; i < sizeof(expected) / sizeof(expected[0]); ++i) {
        EXPECT_EQ(expected[i], Orlune::gVolumeThrRaw[i]) << "word " << i;
    }
}

TEST(MainXmlRecords, ShortListPatchesOnlyTheFrontOfThePreviousRecord) {
    StartMain("NV", {"ID", "41", "PARAM_VALUE", HexList(kMainParaWords, 100).c_str()});
    StartMain("NV", {"ID", "42", "PARAM_VALUE", HexList(kExtParaWords, 500).c_str()});
    StartMain("NV", {"ID", "43", "PARAM_VALUE", "{1,2,3}"});
    const AudioOrluneMobilePara* r43 = MainRecord(43);
    ASSERT_NE(nullptr, r43);
    EXPECT_EQ(1, r43->words[0]);
    EXPECT_EQ(3, r43->words[2]);
    EXPECT_EQ(103, r43->words[3]);
    EXPECT_EQ(100 + kMainParaWords - 1, r43->words[kMainParaWords - 1]);
    // The even staging record is separate: 44 inherits from 42, not from 43.
    StartMain("NV", {"ID", "44", "PARAM_VALUE", "7"});
    const AudioOrluneMobileParaExt* r44 = ExtRecord(44);
    ASSERT_NE(nullptr, r44);
    EXPECT_EQ(7, r44->words[0]);
    EXPECT_EQ(501, r44->words[1]);
    // The stored records are copies: the earlier ones keep their own words.
    EXPECT_EQ(100, MainRecord(41)->words[0]);
}

TEST(MainXmlRecords, FirstElementWithAnIdWinsAndBothAreLogged) {
    LogCapture log;
    StartMain("NV", {"ID", "41", "PARAM_VALUE", "11"});
    StartMain("NV", {"ID", "41", "PARAM_VALUE", "22"});
    EXPECT_EQ(0x11, MainRecord(41)->words[0]);
    EXPECT_EQ(2, log.Count("attrIDValue:41", "orlune_mobile", ANDROID_LOG_INFO));
    EXPECT_EQ(2, log.Count("XMLLengthCheck:41"));
}

TEST(MainXmlRecords, BuiltInKeyZeroBlocksAnElementWithIdZero) {
    StartMain("NV", {"ID", "0", "PARAM_VALUE", "1234"});
    ASSERT_NE(nullptr, ExtRecord(0));
    EXPECT_EQ(0, ExtRecord(0)->words[0]);
    // Once the key is gone (as after the first instance), the same element is taken.
    Orlune::gRealMapTableExt.erase(0);
    StartMain("NV", {"ID", "0", "PARAM_VALUE", "1234"});
    EXPECT_EQ(0x1234, ExtRecord(0)->words[0]);
}

TEST(MainXmlRecords, IdsWithLeadingZeroAreOctal) {
    StartMain("NV", {"ID", "011", "PARAM_VALUE", "5"});
    EXPECT_NE(nullptr, MainRecord(9));
    EXPECT_EQ(nullptr, MainRecord(11));
}

TEST(MainXmlRecords, NegativeOddIdHasNoTargetButIsLogged) {
    LogCapture log;
    StartMain("NV", {"ID", "-3", "PARAM_VALUE", "5"});
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size()) << log.Dump();
    EXPECT_EQ("StartElement() paramPtr or elem is null, elemNum: 0", lines[0].message);
    EXPECT_EQ("attrIDValue:-3", lines[1].message);
    EXPECT_EQ(0u, Orlune::gRealMapTable.count(-3));
    EXPECT_EQ(0u, Orlune::gRealMapTableExt.count(-3));
    EXPECT_EQ(0, Orlune::gTempRealParam.words[0]);
    StartMain("NV", {"ID", "-4", "PARAM_VALUE", "5"});
    EXPECT_NE(nullptr, ExtRecord(-4));
}

TEST(MainXmlRecords, EmptyListStillStoresTheStagingRecord) {
    StartMain("NV", {"ID", "41", "PARAM_VALUE", "1,2"});
    LogCapture log;
    StartMain("NV", {"ID", "45", "PARAM_VALUE", ""});
    ASSERT_NE(nullptr, MainRecord(45));
    EXPECT_EQ(2, MainRecord(45)->words[1]);
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(2u, lines.size()) << log.Dump();
    EXPECT_EQ("StartElement() paramPtr or elem is null, elemNum: 0", lines[0].message);
    EXPECT_EQ("attrIDValue:45", lines[1].message);
}

TEST(MainXmlRecords, ValuesPastTheRecordAreDroppedAndTheStepIs512) {
    LogCapture log;
    StartMain("NV", {"ID", "41", "PARAM_VALUE", HexList(512, 1).c_str()});
    StartMain("NV", {"ID", "43", "PARAM_VALUE", HexList(513, 1).c_str()});
    StartMain("NV", {"ID", "42", "PARAM_VALUE", HexList(600, 1).c_str()});
    EXPECT_EQ(1, log.Count("XMLLengthCheck:41"));
    EXPECT_EQ(0, log.Count("XMLLengthCheck:43"));
    EXPECT_EQ(0, log.Count("XMLLengthCheck:42"));
    EXPECT_EQ(kMainParaWords, MainRecord(43)->words[kMainParaWords - 1]);
    // The extended record takes 384 words: its own 356 and the pointer area.
    const AudioOrluneMobileParaExt* ext = ExtRecord(42);
    EXPECT_EQ(kExtParaWords, ext->words[kExtParaWords - 1]);
    std::vector<int16_t> all = Words(*ext, kExtParaXmlWords);
    EXPECT_EQ(kExtParaXmlWords, all[kExtParaXmlWords - 1]);
}

TEST(MainXmlRecords, MissingAttributesSkipTheElement) {
    LogCapture log;
    StartMain("NV", {});
    StartMain("NV", {"PARAM_VALUE", "1"});
    StartMain("NV", {"ID", "41"});
    StartMain("OTHER", {});
    StartMain("OTHER", {"ID", "41", "PARAM_VALUE", "1"});
    EXPECT_EQ(3, log.Count("StartElement() attrValue is null", "orlune_mobile", ANDROID_LOG_ERROR));
    EXPECT_EQ(3u, log.Lines().size()) << log.Dump();
    EXPECT_EQ(nullptr, MainRecord(41));
}

TEST(MainXmlRecords, ValueOf3000CharactersDoesNotFitTheBuffer) {
    LogCapture log;
    std::string fits(2999, ' ');
    fits[0] = '5';
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", fits.c_str()});
    EXPECT_EQ(5, Orlune::gVolumeThrRaw[0]);
    EXPECT_EQ(0, log.Count("StartElement() strcpy_s fail"));
    std::string tooLong = fits + " ";
    tooLong[0] = '6';
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", tooLong.c_str()});
    EXPECT_EQ(1, log.Count("StartElement() strcpy_s fail", "orlune_mobile", ANDROID_LOG_ERROR));
    // Nothing of the value was kept: the element had no values.
    EXPECT_EQ(1, log.Count("StartElement() paramPtr or elem is null, elemNum: 0"));
    EXPECT_EQ(5, Orlune::gVolumeThrRaw[0]);
}

std::vector<std::string> gObserved;
void Observe(int32_t id, int given, int capacity) {
    gObserved.push_back(std::to_string(id) + ":" + std::to_string(given) + "/" +
                        std::to_string(capacity));
}

TEST(MainXmlRecords, ObserverSeesEveryValueCount) {
    SetValueCountObserver(Observe);
    StartMain("NV", {"ID", "41", "PARAM_VALUE", HexList(700).c_str()});
    StartMain("NV", {"ID", "42", "PARAM_VALUE", "1 2"});
    StartMain("NV", {"ID", "30160", "PARAM_VALUE", HexList(40).c_str()});
    StartMain("NV", {"ID", "-1", "PARAM_VALUE", "1"});
    SetValueCountObserver(nullptr);
    const std::vector<std::string> expected = {"41:700/419", "42:2/384", "30160:40/37", "-1:0/0"};
    EXPECT_EQ(expected, gObserved);
}

TEST(MainXmlHelpers, XmlParamParseAndLengthCheck) {
    LogCapture log;
    int16_t target[4] = {};
    char text[] = "1;2;3";
    EXPECT_EQ(3, Orlune::XmlParamParse(text, ";", target, 4));
    EXPECT_EQ(3, target[2]);
    EXPECT_TRUE(log.Has("XMLLengthCheck:3"));
    char more[] = "9 9 9 9 9 9";
    EXPECT_EQ(4, Orlune::XmlParamParse(more, " ", target, 4));
    char none[] = ";;";
    EXPECT_EQ(0, Orlune::XmlParamParse(none, ";", target, 4));
    EXPECT_TRUE(log.Has("StartElement() paramPtr or elem is null, elemNum: 0"));
    EXPECT_TRUE(Orlune::XMLLengthCheck(0, 510));
    EXPECT_FALSE(Orlune::XMLLengthCheck(0, 511));
    EXPECT_FALSE(Orlune::XMLLengthCheck(1, 0));
}

TEST(MainXmlFile, ElementsAcrossChunkBoundariesAndLogLines) {
    DeviceRoot root;
    std::vector<std::string> elements;
    for (int id = 101; id < 121; id += 2) {  // about 6 KB: several chunks
        elements.push_back(NvRecord(id, std::vector<int>(100, id)));
    }
    root.WriteKiv("kiv_config.xml", XmlDocument(elements));
    LogCapture log;
    Orlune::KivReadConfigFromXML(false);
    for (int id = 101; id < 121; id += 2) {
        ASSERT_NE(nullptr, MainRecord(id)) << id;
        EXPECT_EQ(id, MainRecord(id)->words[99]);
    }
    EXPECT_TRUE(log.Has("Read orlune config file /odm/etc/kiv/kiv_config.xml", "orlune_mobile",
                        ANDROID_LOG_INFO))
            << log.Dump();
    EXPECT_EQ(0, log.Count("KivReadConfigFromXML status error"));
}

TEST(MainXmlFile, ParseErrorKeepsTheElementsBeforeIt) {
    DeviceRoot root;
    root.WriteKiv("kiv_config.xml",
                  "<config><NV ID=\"41\" PARAM_VALUE=\"1\"/><NV ID=\"43\" "
                  "PARAM_VALUE=\"2\"/><broken</config>");
    LogCapture log;
    Orlune::KivReadConfigFromXML(false);
    EXPECT_NE(nullptr, MainRecord(41));
    EXPECT_NE(nullptr, MainRecord(43));
    EXPECT_EQ(1,
              log.Count("KivReadConfigFromXML status error", "orlune_mobile", ANDROID_LOG_ERROR));
}

TEST(MainXmlFile, NoFileIsNoError) {
    DeviceRoot root;
    LogCapture log;
    Orlune::KivReadConfigFromXML(false);
    EXPECT_TRUE(log.Has("read kiv_config.xml:path is null", "orlune_mobile", ANDROID_LOG_ERROR));
    EXPECT_EQ(0, log.CountContaining("Read orlune config file"));
    EXPECT_EQ(1u, Orlune::gRealMapTable.size());  // only the built-in key 0
}

}  // namespace
