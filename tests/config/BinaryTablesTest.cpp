// The binary table readers: exact sizes, short and missing files, length arguments.
#include <string>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr size_t kTwsFileValues = kTwsScenes * kTwsSceneWords;

// Value i of a table written by DeviceRoot::WriteTable.
int16_t Expected(size_t i) {
    return static_cast<int16_t>(static_cast<uint16_t>(i + 1));
}

TEST(ReadTWS, BothFilesCompleteFillBothTables) {
    DeviceRoot root;
    root.WriteTable("tws_config1.bin", kTwsFileValues);
    std::vector<int16_t> second(kTwsFileValues, -7);
    root.WriteTableValues("tws_config2.bin", second);
    LogCapture log;
    EXPECT_EQ(0, Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords));
    EXPECT_EQ(Expected(0), Orlune::gTwsConfigRaw[0][0]);
    EXPECT_EQ(Expected(kTwsFileValues - 1), Orlune::gTwsConfigRaw[0][kTwsFileValues - 1]);
    EXPECT_EQ(-7, Orlune::gTwsConfigRaw[1][kTwsFileValues - 1]);
    EXPECT_TRUE(log.Has("ReadTWS: ReadTWS config complete", "orlune_mobile", ANDROID_LOG_INFO));
}

TEST(ReadTWS, MissingSecondFileReadsNothingOfEither) {
    DeviceRoot root;
    root.WriteTable("tws_config1.bin", kTwsFileValues);
    LogCapture log;
    EXPECT_EQ(0, Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords));
    EXPECT_EQ(0, Orlune::gTwsConfigRaw[0][0]);
    EXPECT_TRUE(
            log.Has("ReadTWS: get TWS config filename failed", "orlune_mobile", ANDROID_LOG_ERROR));
    EXPECT_EQ(0, log.CountContaining("config complete"));
}

TEST(ReadTWS, ShortFirstFileStopsAtTheFirstMissingScene) {
    DeviceRoot root;
    root.WriteTable("tws_config1.bin", 10 * kTwsSceneWords);
    root.WriteTable("tws_config2.bin", kTwsFileValues);
    LogCapture log;
    Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords);
    const size_t scene9End = 10 * kTwsSceneWords - 1;
    EXPECT_EQ(Expected(scene9End), Orlune::gTwsConfigRaw[0][scene9End]);
    EXPECT_EQ(Expected(scene9End), Orlune::gTwsConfigRaw[1][scene9End]);  // scene 9 of both
    EXPECT_EQ(0, Orlune::gTwsConfigRaw[1][scene9End + 1]);
    EXPECT_EQ(0, Orlune::gTwsConfigRaw[1][kTwsFileValues - 1]);
    EXPECT_TRUE(log.Has("ReadTWS: fread error at scene 10, config 0, elmtRead = 0", "orlune_mobile",
                        ANDROID_LOG_ERROR))
            << log.Dump();
}

TEST(ReadTWS, ShortSecondFileLogsConfigOneWithThePartialCount) {
    DeviceRoot root;
    root.WriteTable("tws_config1.bin", kTwsFileValues);
    root.WriteTable("tws_config2.bin", 3 * kTwsSceneWords + 100);
    LogCapture log;
    Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords);
    EXPECT_TRUE(log.Has("ReadTWS: fread error at scene 3, config 1, elmtRead = 100")) << log.Dump();
    EXPECT_EQ(Expected(3 * kTwsSceneWords), Orlune::gTwsConfigRaw[0][3 * kTwsSceneWords]);
    EXPECT_EQ(0, Orlune::gTwsConfigRaw[0][4 * kTwsSceneWords]);
}

TEST(BinaryReaders, WrongLengthArgumentsAreRejected) {
    DeviceRoot root;
    LogCapture log;
    EXPECT_EQ(-1, Orlune::ReadTWS(Orlune::gTwsConfig, 4104));
    EXPECT_EQ(-1, Orlune::ReadSUR(Orlune::gX2BConfig, 2560));
    EXPECT_EQ(-1, Orlune::ReadLPH(Orlune::gLphConfig, 2052));
    EXPECT_EQ(-1, Orlune::ReadTEH(Orlune::gTehConfig, 9599));
    std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(4u, lines.size()) << log.Dump();
    EXPECT_EQ("ReadTWS: length error", lines[0].message);
    EXPECT_EQ("ReadSUR: length error", lines[1].message);
    EXPECT_EQ("ReadLPH: length error", lines[2].message);
    EXPECT_EQ("ReadTEH: length error", lines[3].message);
}

TEST(BinaryReaders, SurReadsTwiceItsLengthArgument) {
    DeviceRoot root;
    root.WriteTable("sur_config.bin", kSurWords);
    LogCapture log;
    EXPECT_EQ(0, Orlune::ReadSUR(Orlune::gX2BConfig, kSurWords / 2));
    EXPECT_EQ(Expected(kSurWords - 1), Orlune::gX2BConfig[kSurWords - 1]);
    EXPECT_TRUE(log.Has("ReadSUR: ReadSUR config complete", "orlune_mobile", ANDROID_LOG_INFO));
    EXPECT_EQ(0, log.CountContaining("fread error"));
}

TEST(BinaryReaders, ShortFilesAreAcceptedWithTheirCountAtTheirPriority) {
    DeviceRoot root;
    root.WriteTable("sur_config.bin", 2000);
    root.WriteTable("lph_config.bin", 19 * kLphRowWords);
    root.WriteTable("teh_config.bin", 9000);
    root.WriteTable("ascconfig1.bin", 10);
    LogCapture log;
    EXPECT_EQ(0, Orlune::ReadSUR(Orlune::gX2BConfig, kSurWords / 2));
    EXPECT_EQ(0, Orlune::ReadLPH(Orlune::gLphConfig, kLphRowWords));
    EXPECT_EQ(0, Orlune::ReadTEH(Orlune::gTehConfig, kTehWords));
    EXPECT_EQ(0, Orlune::ReadASC1(Orlune::gAscConfig1, kAsc1Words));
    EXPECT_TRUE(
            log.Has("ReadSUR: fread error, elmtRead = 2000", "orlune_mobile", ANDROID_LOG_WARN));
    EXPECT_EQ(1,
              log.Count("ReadLPH: fread error, elmtRead = 0", "orlune_mobile", ANDROID_LOG_WARN));
    EXPECT_TRUE(log.Has("ReadLPH: ReadLPH config complete"));
    EXPECT_TRUE(
            log.Has("ReadTEH: fread error, elmtRead = 9000", "orlune_mobile", ANDROID_LOG_ERROR));
    EXPECT_TRUE(log.Has("fread error, elmtRead = 10", "orlune_mobile", ANDROID_LOG_INFO));
    EXPECT_EQ(2, log.Count("Read config complete"));  // TEH and ASC1
    EXPECT_EQ(Expected(2053 * 18 + 5), Orlune::gLphConfig[18][5]);
    EXPECT_EQ(0, Orlune::gLphConfig[19][0]);
    EXPECT_EQ(0, Orlune::gTehConfig[9000]);
    EXPECT_EQ(Expected(9), Orlune::gAscConfig1[9]);
    EXPECT_EQ(0, Orlune::gAscConfig1[10]);
}

TEST(BinaryReaders, MissingFilesReturnMinusOneAndLeaveZeros) {
    DeviceRoot root;
    LogCapture log;
    EXPECT_EQ(-1, Orlune::ReadSUR(Orlune::gX2BConfig, kSurWords / 2));
    EXPECT_EQ(-1, Orlune::ReadLPH(Orlune::gLphConfig, kLphRowWords));
    EXPECT_EQ(-1, Orlune::ReadTEH(Orlune::gTehConfig, kTehWords));
    EXPECT_EQ(-1, Orlune::ReadASC1(Orlune::gAscConfig1, kAsc1Words));
    EXPECT_EQ(-1, Orlune::ReadASC2(Orlune::gAscConfig2, kAsc2Words));
    EXPECT_EQ(0, log.CountContaining("complete"));
    EXPECT_EQ(0, log.CountContaining("fread"));
}

TEST(BinaryReaders, ProductSpecificTableComesFirst) {
    DeviceRoot root;
    root.SetProductNode(0, "THETA");
    root.WriteTable("ascconfig2.bin", kAsc2Words);
    root.WriteTableValues("ascconfig2_THETA.bin", std::vector<int16_t>(kAsc2Words, 42));
    Orlune::GetProductNameConfig();
    EXPECT_EQ(0, Orlune::ReadASC2(Orlune::gAscConfig2, kAsc2Words));
    EXPECT_EQ(42, Orlune::gAscConfig2[kAsc2Words - 1]);
}

}  // namespace
