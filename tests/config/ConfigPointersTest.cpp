// Table pointers in the extended records: which virtual ids are visited, in which order, and
// which TWS scene each one hangs on.
#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/config/ConfigTestUtil.h"
#include "tests/support/LogCapture.h"

namespace {

const int16_t* Scene(int table, int scene) {
    return Orlune::gTwsConfig[table] + scene * kTwsSceneWords;
}

void MapWithRecords(int virtualId, int id, int extId) {
    Orlune::gVituralMapTable[virtualId] = RealParamIdStru{id, extId};
    Orlune::gRealMapTable[id] = AudioOrluneMobilePara{};
    Orlune::gRealMapTableExt[extId] = AudioOrluneMobileParaExt{};
}

TEST(ConfigPointers, HeadphoneRecordGetsSceneZeroAndAllTables) {
    MapWithRecords(41080, 41, 42);
    Orlune::KivInitConfigPointer();
    const AudioOrluneMobileParaExt& ext = Orlune::gRealMapTableExt[42];
    EXPECT_EQ(Scene(0, 0), ext.twsTable1);
    EXPECT_EQ(Scene(1, 0), ext.twsTable2);
    EXPECT_EQ(Orlune::gLphConfig, ext.lphTable);
    EXPECT_EQ(Orlune::gX2BConfig, ext.surTable);
    EXPECT_EQ(Orlune::gTehConfig, ext.tehTable);
    EXPECT_EQ(Orlune::gAscConfig1, ext.ascTable1);
    EXPECT_EQ(Orlune::gAscConfig2, ext.ascTable2);
}

TEST(ConfigPointers, SharedRecordKeepsTheSceneOfTheLastVisitedId) {
    MapWithRecords(41080, 41, 42);
    MapWithRecords(160, 43, 42);  // fold 0, portrait, VOICEENHANCE: TWS scene 2
    Orlune::KivInitConfigPointer();
    EXPECT_EQ(Scene(0, 2), Orlune::gRealMapTableExt[42].twsTable1);
    EXPECT_EQ(Scene(1, 2), Orlune::gRealMapTableExt[42].twsTable2);
}

TEST(ConfigPointers, LandscapeIdsUseTheUpperScenes) {
    MapWithRecords(4000 + 400 + 20 * 1 + 6, 41, 42);  // FULL, LANDSCAPE, GAME, LOUD
    MapWithRecords(8000 + 400 + 20 * 8, 43, 44);      // HALF_FOLDED, LANDSCAPE, VOICEENHANCE
    MapWithRecords(20 * 7 + 3, 45, 46);               // FOLDED, PORTRAIT, RING
    Orlune::KivInitConfigPointer();
    EXPECT_EQ(Scene(0, 9), Orlune::gRealMapTableExt[42].twsTable1);
    EXPECT_EQ(Scene(1, 10), Orlune::gRealMapTableExt[44].twsTable2);
    EXPECT_EQ(Scene(0, 7), Orlune::gRealMapTableExt[46].twsTable1);
}

TEST(ConfigPointers, UnvisitedIdsKeepWhatTheRecordHeld) {
    MapWithRecords(41004, 41, 42);  // headphone level 4: not among the visited ids
    MapWithRecords(41, 43, 44);     // FOLDED, PORTRAIT, MOVIE, level 1: TWS scene 2
    Orlune::KivInitConfigPointer();
    EXPECT_EQ(nullptr, Orlune::gRealMapTableExt[42].twsTable1);
    EXPECT_EQ(Scene(0, 2), Orlune::gRealMapTableExt[44].twsTable1);
}

TEST(ConfigPointers, BuiltInKeyZeroRecordIsReachedByVirtualIdZero) {
    Orlune::KivInitConfigPointer();
    EXPECT_EQ(Scene(0, 0), Orlune::gRealMapTableExt[0].twsTable1);
    EXPECT_EQ(Orlune::gLphConfig, Orlune::gRealMapTableExt[0].lphTable);
}

TEST(ConfigPointers, EveryVisitedIdIsLoggedOnceWhenNothingIsMapped) {
    Orlune::gVituralMapTable.clear();
    LogCapture log;
    Orlune::KivInitConfigPointer();
    EXPECT_EQ(36, log.CountContaining("KivInitConfigPointer HP do not find currentParamID"));
    EXPECT_EQ(378, log.CountContaining("KivInitConfigPointer SPK do not find currentParamID"));
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(414u, lines.size());
    EXPECT_EQ("KivInitConfigPointer HP do not find currentParamID currentParamMode: 41000 ",
              lines[0].message);
    EXPECT_EQ(ANDROID_LOG_DEBUG, lines[0].priority);
    EXPECT_EQ("KivInitConfigPointer HP do not find currentParamID currentParamMode: 41643 ",
              lines[35].message);
    EXPECT_EQ("KivInitConfigPointer SPK do not find currentParamID currentParamMode: 0",
              lines[36].message);
    // Per fold state: 63 portrait ids, then 63 landscape ids.
    EXPECT_EQ("KivInitConfigPointer SPK do not find currentParamID currentParamMode: 400",
              lines[36 + 63].message);
    EXPECT_EQ("KivInitConfigPointer SPK do not find currentParamID currentParamMode: 4000",
              lines[36 + 126].message);
    EXPECT_EQ("KivInitConfigPointer SPK do not find currentParamID currentParamMode: 8566",
              lines[413].message);
}

TEST(ConfigPointers, MissingExtendedRecordHasItsOwnMessages) {
    Orlune::gVituralMapTable[41000] = RealParamIdStru{41, 42};
    Orlune::gVituralMapTable[4000] = RealParamIdStru{41, 42};
    LogCapture log;
    Orlune::KivInitConfigPointer();
    EXPECT_TRUE(
            log.Has("KivInitConfigPointer HP do not currentRealParamExtID currentParamMode: "
                    "41000",
                    "orlune_mobile", ANDROID_LOG_DEBUG));
    EXPECT_TRUE(
            log.Has("KivInitConfigPointer SPK do not find currentRealParamExtID "
                    "currentParamMode: 4000"));
}

}  // namespace
