// The two XML readers: value tokens, the main file's fixed tables and records (staging records,
// first-wins merging, limits), the virtual-map file's elements, and reading whole files.
#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "config/TokenList.h"
#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

using StartHandler = void (*)(void*, const char*, const char**);
const char* const kTag = "orlune_mobile";

// Calls an element handler as expat would, with name/value pairs.
void Start(StartHandler handler, const char* name, const std::vector<std::string>& pairs) {
    std::vector<const char*> attrs;
    for (const std::string& p : pairs) {
        attrs.push_back(p.c_str());
    }
    attrs.push_back(nullptr);
    handler(nullptr, name, attrs.data());
}

void StartMain(const std::string& id, const std::string& value) {
    Start(Orlune::StartElement, "NV", {"ID", id, "PARAM_VALUE", value});
}

// `count` hexadecimal words first, first + 1, ... (without 0x, so that long lists fit).
std::string HexList(int count, int first = 1) {
    std::string out;
    char word[16];
    for (int i = 0; i < count; ++i) {
        snprintf(word, sizeof(word), "%x,", (first + i) & 0xffff);
        out += word;
    }
    return out;
}

const AudioOrluneMobilePara& Main(int32_t id) {
    return PublishedTables().gRealMapTable.at(id);
}

const AudioOrluneMobileParaExt& Ext(int32_t id) {
    return PublishedTables().gRealMapTableExt.at(id);
}

std::vector<std::string> Split(std::string text, const char* delimiters = kXmlDelimiters) {
    std::vector<std::string> out;
    TokenList tokens(text.data(), delimiters);
    for (const char* t = tokens.Next(); t != nullptr; t = tokens.Next()) {
        out.push_back(t);
    }
    return out;
}

TEST(ValueTokens, SplitAtEveryDelimiterAndReadLikeStrtolInBase16) {
    EXPECT_EQ((std::vector<std::string>{"1A", "FF", "0x10", "7", "8", "9", "a\vb"}),
              Split("{1A;FF}[0x10]=7\t8\n9\r ,a\vb,,;"));
    // Edge cases, then random tokens: a token reads as strtol's low 16 bits, and fits when
    // strtol's whole number is a 16-bit word, signed or unsigned.
    std::vector<std::string> tokens =
            Split("0|ffff|10000|-8000|-8001|+12|0x1G|0x|x12|--1| 12|\v\f1|-0x10|ffffffffffffffff|"
                  "8000000000000000|-8000000000000001|10000000000000000|00000000000000000000001",
                  "|");
    std::mt19937 rng(7);
    const std::string alphabet = "0123456789abcdefABCDEFxXgz+- \t";
    for (int i = 0; i < 20000; ++i) {
        tokens.emplace_back(1 + rng() % 20, ' ');
        for (char& c : tokens.back()) {
            c = alphabet[rng() % alphabet.size()];
        }
    }
    for (const std::string& t : tokens) {
        errno = 0;
        const long whole = strtol(t.c_str(), nullptr, 16);
        ASSERT_EQ(static_cast<int16_t>(static_cast<uint16_t>(whole)), HexToken(t.c_str()))
                << "token \"" << t << "\"";
        ASSERT_EQ(errno == 0 && whole >= -0x8000 && whole <= 0xffff, HexTokenFits(t.c_str()))
                << "token \"" << t << "\"";
    }
}

TEST(ValueTokens, NumbersThatDoNotFitAreRefusedNotWrapped) {
    // Ids detect their base (octal after a leading 0) and must fit 32 bits.
    const std::tuple<const char*, bool, int32_t> ids[] = {
            {"010", true, 8},
            {"08", true, 0},
            {"-2147483648", true, INT32_MIN},
            {"0x7fffffff", true, INT32_MAX},
            {"2147483648", false, 0},
            {"-0x80000001", false, 0},
            {"99999999999999999999999", false, 0},
    };
    for (const auto& [text, fits, want] : ids) {
        int32_t got = 0;
        EXPECT_EQ(fits, IntegerAttr(text, &got)) << text;
        EXPECT_EQ(want, got) << text;
    }
    EXPECT_EQ(nullptr, FirstUnfitToken("{0x10, -8000; FFFF}"));
    EXPECT_STREQ("10000;FFFF}", FirstUnfitToken("{0x10, 10000;FFFF}"));
}

TEST(MainXml, FixedTablesFillUpToTheirCapacity) {
    // 30182 first: a spill of 30181 past word 255 would overwrite what it wrote.
    using Table = const int16_t* (*)();
    const std::tuple<const char*, Table, int> tables[] = {
            {"30182", [] { return PublishedTables().gParameterHpType + 256; }, 32},
            {"30181", [] { return PublishedTables().gParameterHpType + 0; }, 256},
            {"30160", [] { return static_cast<const int16_t*>(Orlune::gVolumeThrRaw); }, 37}};
    for (const auto& [id, tableOf, capacity] : tables) {
        SCOPED_TRACE(id);
        StartMain(id, HexList(capacity + 3, 0x1000));  // 40 values for 30160: 37 kept
        EXPECT_EQ(0x1000, tableOf()[0]);
        EXPECT_EQ(0x1000 + capacity - 1, tableOf()[capacity - 1]);
        EXPECT_EQ(0u, PublishedTables().gRealMapTable.count(atoi(id)) +
                              PublishedTables().gRealMapTableExt.count(atoi(id)));
    }
    EXPECT_EQ(0x1000, PublishedTables().gParameterHpType[256]);
    // 0x75D0 is 30160; tokens are hexadecimal with any delimiter, kept as their low 16 bits.
    StartMain("0x75D0", "{1A;FF}[0x10]=7\t8\n9\r0x1G,ZZ,0x8000,-1,ffff");
    // A value that is no 16-bit word, or an id beyond 32 bits, refuses the whole element.
    LogCapture log;
    StartMain("30160", "5,1FFFF");
    StartMain("99999999999", "5");
    EXPECT_EQ(1, log.Count("StartElement() PARAM_VALUE out of range: 1FFFF", kTag));
    EXPECT_EQ(1, log.Count("StartElement() ID out of range: 99999999999", kTag));
    EXPECT_EQ(0u, PublishedTables().gRealMapTable.count(1215752191));
    EXPECT_EQ((std::vector<int16_t>{0x1a, 0xff, 0x10, 7, 8, 9, 1, 0, -32768, -1, -1, 0x100b}),
              std::vector<int16_t>(Orlune::gVolumeThrRaw, Orlune::gVolumeThrRaw + 12));
}

TEST(MainXml, StagingRecordsPatchTheFrontAndExtraValuesAreDropped) {
    StartMain("41", HexList(kMainParaWords, 100));
    StartMain("42", HexList(kExtParaWords, 500));
    StartMain("43", "{1,2,3}");
    StartMain("44", "7");
    EXPECT_EQ(3, Main(43).words[2]);
    EXPECT_EQ(103, Main(43).words[3]);
    EXPECT_EQ(100 + kMainParaWords - 1, Main(43).words[kMainParaWords - 1]);
    EXPECT_EQ(501, Ext(44).words[1]);   // from 42: the even staging record is separate
    EXPECT_EQ(100, Main(41).words[0]);  // stored records are copies
    // 600 values: a main record takes 419, an extended one 384 (through its pointer area).
    StartMain("45", HexList(600));
    StartMain("46", HexList(600));
    EXPECT_EQ(kMainParaWords, Main(45).words[kMainParaWords - 1]);
    int16_t ext[kExtParaXmlWords];
    memcpy(ext, &Ext(46), sizeof(ext));
    EXPECT_EQ(kExtParaXmlWords, ext[kExtParaXmlWords - 1]);
    // The built-in key 0 blocks an element with ID 0 until the maps are emptied, as by a reload.
    StartMain("0", "1234");
    EXPECT_EQ(0, Ext(0).words[0]);
    {
        ConfigUpdate update;
        update.Tables().gRealMapTableExt.clear();
    }
    StartMain("0", "1234");
    EXPECT_EQ(0x1234, Ext(0).words[0]);
}

// The lines one element logs, as "priority message|" each (4 info, 6 error); these lines are
// part of what the library must keep unchanged.
std::string LogsOf(StartHandler handler, const char* name, const std::vector<std::string>& attrs) {
    LogCapture log;
    Start(handler, name, attrs);
    std::string out;
    for (const LogLine& line : log.Lines()) {
        EXPECT_EQ(kTag, line.tag);
        out += std::to_string(line.priority) + " " + line.message + "|";
    }
    return out;
}

using ElementCase = std::tuple<StartHandler, const char*, std::vector<std::string>, std::string>;

// A mapping element of the virtual-map file and the line it logs (with NUMID as read).
ElementCase Mapping(const char* numId, const char* id, const char* extId, const char* read) {
    return {Orlune::StartElementMapTable,
            "NV",
            {"NUMID", numId, "ID", id, "EXTID", extId},
            std::string("4 StartElementMapTable attrNUMIDValue:") + read + ", attrIDValue:" + id +
                    ", attrIDValue:" + extId + "|"};
}

TEST(XmlElements, EachElementLogsItsLinesAndTheFirstEntryForAnIdStays) {
    const StartHandler main = Orlune::StartElement, vmap = Orlune::StartElementMapTable;
    const std::string noValues = "6 StartElement() paramPtr or elem is null, elemNum: 0|";
    const std::string stored = "4 XMLLengthCheck:41|4 attrIDValue:41|";
    const std::string fits = "5" + std::string(2998, ' ');
    const ElementCase cases[] = {
            {main, "NV", {"ID", "41"}, "6 StartElement() attrValue is null|"},
            {main, "OTHER", {"ID", "41", "PARAM_VALUE", "1"}, ""},
            {main, "NV", {"ID", "41", "PARAM_VALUE", "11"}, stored},
            {main, "NV", {"ID", "41", "PARAM_VALUE", "22"}, stored},
            {main, "NV", {"ID", "-3", "PARAM_VALUE", "5"}, noValues + "4 attrIDValue:-3|"},
            // No values: the staging record as the second 41 left it.
            {main, "NV", {"ID", "45", "PARAM_VALUE", ""}, noValues + "4 attrIDValue:45|"},
            // The length check steps by 512 values, past both records.
            {main, "NV", {"ID", "47", "PARAM_VALUE", HexList(513)}, "4 attrIDValue:47|"},
            {main, "NV", {"ID", "30160", "PARAM_VALUE", fits}, "4 XMLLengthCheck:30160|"},
            {main,
             "NV",
             {"ID", "30160", "PARAM_VALUE", "6" + fits},
             "6 StartElement() strcpy_s fail|" + noValues},
            Mapping("41000", "41", "42", "41000"),
            Mapping("0xA028", "43", "44", "41000"),
            Mapping("0", "41", "42", "0"),
            {vmap,
             "NV",
             {"NUMID", "41001", "ID", "41"},
             "6  StartElementMapTable() attrNUMID or attrID or attrEXTID is null|"},
            {vmap, "CFG", {"NUMID", "0", "PARAM_VALUE", "{0x1}"}, "4 XMLLengthCheck:0|"},
            {vmap, "CFG", {"NUMID", "0", "PARAM_VALUE", "1F 2 3"}, ""},
            {vmap, "CFG", {"NUMID", "1", "PARAM_VALUE", "5"}, "6 unsupport cfg id: 1|"},
            {vmap, "CFG", {"NUMID", "0", "PARAM_VALUE", ";"}, noValues},
            {vmap, "CFG", {"PARAM_VALUE", "5"}, "6 XmlCfgParamParse cfgID is null|"},
            {vmap, "CFG", {"NUMID", "0"}, "6 XmlCfgParamParse cfgValue is null|"},
            {vmap, "HPMAP", {"NUMID", "0x10", "NAME", "Lumen XE"}, ""},
            {vmap, "HPMAP", {"NUMID", "3", "NAME", "Lumen XE"}, ""},
            {vmap, "HPMAP", {"NUMID", "1"}, "6 XmlHpMapParse cfgID is null|"},
            {vmap, "HPMAP", {"NAME", "X"}, "6 XmlHpMapParse cfgValue is null|"},
            {vmap,
             "HPMAP",
             {"NUMID", "4", "NAME", std::string(3000, 'n')},
             "6 XmlHpMapParse strcpy_s fail|"},
    };
    for (const auto& [handler, name, attrs, lines] : cases) {
        EXPECT_EQ(lines, LogsOf(handler, name, attrs)) << name << " " << attrs.size();
    }
    const ParamTableSet& t = PublishedTables();
    EXPECT_EQ(0x11, Main(41).words[0]);
    EXPECT_EQ(0u, t.gRealMapTable.count(-3) + t.gRealMapTableExt.count(-3));
    EXPECT_EQ(0x22, Main(45).words[0]);
    EXPECT_EQ(5, Orlune::gVolumeThrRaw[0]);  // nothing of a value that did not fit
    EXPECT_EQ(41, t.gVituralMapTable.at(41000).ID);
    EXPECT_EQ(42, t.gVituralMapTable.at(41000).EXTID);
    EXPECT_EQ(0, t.gVituralMapTable.at(0).ID);  // the built-in key 0 blocks NUMID 0
    EXPECT_EQ(0u, t.gVituralMapTable.count(41001));
    EXPECT_EQ(0x1f, t.gUiType);
    EXPECT_EQ(16, t.gHpMapTable.at("Lumen XE"));
    EXPECT_EQ(0, t.gHpMapTable.at("DEFALUT"));
    EXPECT_EQ(0u, t.gHpMapTable.count("X") + t.gHpMapTable.count(std::string(3000, 'n')));
}

TEST(XmlFiles, ElementsBeforeAParseErrorStayAndAMissingMapFileIsLogged) {
    DeviceRoot root;
    LogCapture log;
    EXPECT_EQ(-1, Orlune::KivReadConfigTableFromXML(false));
    EXPECT_TRUE(log.Has("read kiv_config_vmap.xml:path is null", kTag, ANDROID_LOG_ERROR));
    std::string text = "<config>";
    for (int id = 101; id < 121; id += 2) {  // about 6 KB: several chunks
        text += "<group>" + NvRecord(id, std::vector<int>(100, id)) + "</group>";
    }
    root.WriteKiv("kiv_config.xml", text + "<broken</config>");
    root.WriteKiv(
            "kiv_config_vmap.xml",
            "<m><CFG NUMID=\"0\" PARAM_VALUE=\"2\"/><HPMAP NUMID=\"3\" NAME=\"Lumen XE\"/><g>" +
                    NvMap(5, 41, 42) + "</g><NV NUMID=\"6\"</m>");
    log.Clear();
    Orlune::KivReadConfigFromXML(false);
    Orlune::KivReadConfigTableFromXML(false);
    for (int id = 101; id < 121; id += 2) {
        EXPECT_EQ(id, Main(id).words[99]) << id;
    }
    EXPECT_EQ(42, PublishedTables().gVituralMapTable.at(5).EXTID);
    EXPECT_EQ(2, PublishedTables().gUiType);
    EXPECT_EQ(3, PublishedTables().gHpMapTable.at("Lumen XE"));
    EXPECT_EQ(1, log.Count("KivReadConfigFromXML status error", kTag, ANDROID_LOG_ERROR));
    EXPECT_EQ(1, log.Count("KivReadConfigTableFromXML status error", kTag, ANDROID_LOG_ERROR));
}

}  // namespace
