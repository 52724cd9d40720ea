// The binary tables (exact sizes, short and missing files, length arguments), the table pointers
// that KivInitConfigPointer hangs on the extended records, and resolving a virtual id.
#include <string.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr size_t kScene = kTwsSceneWords;
constexpr size_t kTwsFileValues = kTwsScenes * kScene;
const char* const kTag = "orlune_mobile";

// Value i of a table file: i + 1, negated for the second TWS file so that the two differ.
int16_t Value(size_t i, int sign) {
    return static_cast<int16_t>(sign * static_cast<int>(i + 1));
}

// The first `read` of a table's `size` values hold the file's, the rest are zero.
void ExpectFilled(const int16_t* table, size_t read, size_t size, int sign = 1) {
    for (size_t i : {size_t{0}, read - 1, read, size - 1}) {  // read - 1 wraps when read is 0
        EXPECT_EQ(i < read ? Value(i, sign) : 0, i < size ? table[i] : 0) << i;
    }
}

TEST(ReadTWS, BothFilesOrNothingAndShortFilesStopAtTheirFirstMissingScene) {
    // Values in each file (0: no second file), values that reach each table, message.
    const std::tuple<size_t, size_t, size_t, size_t, const char*> cases[] = {
            {kTwsFileValues, kTwsFileValues, kTwsFileValues, kTwsFileValues,
             "ReadTWS: ReadTWS config complete"},
            {kTwsFileValues, 0, 0, 0, "ReadTWS: get TWS config filename failed"},
            {10 * kScene, kTwsFileValues, 10 * kScene, 10 * kScene,
             "ReadTWS: fread error at scene 10, config 0, elmtRead = 0"},
            {kTwsFileValues, 3 * kScene + 100, 4 * kScene, 3 * kScene + 100,
             "ReadTWS: fread error at scene 3, config 1, elmtRead = 100"},
    };
    for (const auto& [file1, file2, read1, read2, message] : cases) {
        SCOPED_TRACE(message);
        memset(Orlune::gTwsConfigRaw, 0, sizeof(Orlune::gTwsConfigRaw));
        DeviceRoot root;
        root.WriteTable("tws_config1.bin", file1);
        if (file2 > 0) {
            root.WriteTable("tws_config2.bin", file2, -1);
        }
        LogCapture log;
        EXPECT_EQ(0, Orlune::ReadTWS(Orlune::gTwsConfig, kTwsSceneWords));
        EXPECT_EQ(1,
                  log.Count(message, kTag, file2 == file1 ? ANDROID_LOG_INFO : ANDROID_LOG_ERROR));
        ExpectFilled(Orlune::gTwsConfigRaw[0], read1, kTwsFileValues);
        ExpectFilled(Orlune::gTwsConfigRaw[1], read2, kTwsFileValues, -1);
    }
}

TEST(BinaryReaders, LengthMissingShortAndFullFiles) {
    DeviceRoot root;
    LogCapture log;
    // A length other than the table's is refused.
    EXPECT_EQ(-1, Orlune::ReadTWS(Orlune::gTwsConfig, 4104));
    EXPECT_EQ(-1, Orlune::ReadSUR(Orlune::gX2BConfig, 2560));
    EXPECT_EQ(-1, Orlune::ReadLPH(Orlune::gLphConfig, 2052));
    EXPECT_EQ(-1, Orlune::ReadTEH(Orlune::gTehConfig, 9599));
    // File, reader, table and its size, values in the file, the message and its priority.
    const std::tuple<const char*, std::function<int()>, const int16_t*, size_t, size_t, const char*,
                     int>
            cases[] = {
                    // SUR reads twice its length argument.
                    {"sur_config.bin", [] { return Orlune::ReadSUR(Orlune::gX2BConfig, 1280); },
                     Orlune::gX2BConfig, kSurWords, kSurWords, "ReadSUR: ReadSUR config complete",
                     ANDROID_LOG_INFO},
                    // 19 rows: the twentieth read comes back empty.
                    {"lph_config.bin", [] { return Orlune::ReadLPH(Orlune::gLphConfig, 2053); },
                     reinterpret_cast<const int16_t*>(Orlune::gLphConfig), kLphRows * kLphRowWords,
                     19 * kLphRowWords, "ReadLPH: fread error, elmtRead = 0", ANDROID_LOG_WARN},
                    {"teh_config.bin", [] { return Orlune::ReadTEH(Orlune::gTehConfig, 9600); },
                     Orlune::gTehConfig, kTehWords, 9000, "ReadTEH: fread error, elmtRead = 9000",
                     ANDROID_LOG_ERROR},
                    {"ascconfig1.bin", [] { return Orlune::ReadASC1(Orlune::gAscConfig1, 2053); },
                     Orlune::gAscConfig1, kAsc1Words, 10, "fread error, elmtRead = 10",
                     ANDROID_LOG_INFO},
            };
    for (const auto& [file, read, table, size, written, message, priority] : cases) {
        SCOPED_TRACE(message);
        EXPECT_EQ(-1, read()) << "missing " << file;
        root.WriteTable(file, written);
        log.Clear();
        EXPECT_EQ(0, read());
        EXPECT_EQ(1, log.Count(message, kTag, priority)) << log.Dump();
        ExpectFilled(table, written, size);
    }
}

const int16_t* Scene(int table, int scene) {
    return Orlune::gTwsConfig[table] + scene * kTwsSceneWords;
}

void MapWithRecords(int virtualId, int id, int extId) {
    ConfigUpdate update;
    update.Tables().gVituralMapTable[virtualId] = RealParamIdStru{id, extId};
    update.Tables().gRealMapTable[id] = AudioOrluneMobilePara{};
    update.Tables().gRealMapTableExt[extId] = AudioOrluneMobileParaExt{};
}

TEST(ConfigPointers, EachVisitedIdHangsItsSceneAndTheSharedTables) {
    // Virtual id, its extended record, and the TWS scene it gets (-1: the id is not visited).
    const int cases[][3] = {
            {41080, 42, 2},  // headphone, scene 0, then shared with 160, which comes later
            {160, 42, 2},    // FOLDED, PORTRAIT, VOICEENHANCE
            {4000 + 400 + 20 * 1 + 6, 44, 9},  // FULL, LANDSCAPE, GAME, LOUD
            {8000 + 400 + 20 * 8, 46, 10},     // HALF_FOLDED, LANDSCAPE, VOICEENHANCE
            {41643, 50, 0},                    // headphone, the last one
            {41004, 52, -1},                   // headphone level 4
            {vid::HeadphoneId(HP_3D_FRONT, MULTI_MODE, VOL_ONE), 54, -1},  // not the default kind
    };
    for (const auto& c : cases) {
        MapWithRecords(c[0], c[1] - 1, c[1]);
    }
    Orlune::KivInitConfigPointer();
    for (const auto& [virtualId, extId, scene] : cases) {
        SCOPED_TRACE(virtualId);
        const AudioOrluneMobileParaExt& ext = PublishedTables().gRealMapTableExt.at(extId);
        using Tables = std::vector<const void*>;
        const Tables got = {ext.twsTable1, ext.twsTable2, ext.lphTable, ext.surTable,
                            ext.tehTable,  ext.ascTable1, ext.ascTable2};
        EXPECT_EQ((scene < 0 ? Tables(7, nullptr)
                             : Tables{Scene(0, scene), Scene(1, scene), Orlune::gLphConfig,
                                      Orlune::gX2BConfig, Orlune::gTehConfig, Orlune::gAscConfig1,
                                      Orlune::gAscConfig2}),
                  got);
    }
    // Virtual id 0 reaches the built-in zero record.
    EXPECT_EQ(Scene(0, 0), PublishedTables().gRealMapTableExt.at(0).twsTable1);
}

// The resolution itself is checked against the direct tables; key 0 is special: it answers
// until the first instance prunes the built-in placeholders.
TEST(Resolution, KeyZeroAnswersUntilTheFirstInstancePrunesIt) {
    auto resolve = [](int id) { return Orlune::ResolveVirtualId(id, nullptr, nullptr, nullptr); };
    MapWithRecords(5, 7, 8);
    EXPECT_EQ(Orlune::Resolve::Found, resolve(0));
    auto first = std::make_unique<Orlune>();
    EXPECT_EQ(Orlune::Resolve::NoVirtualId, resolve(0));
    EXPECT_EQ(Orlune::Resolve::Found, resolve(5));
}

}  // namespace
