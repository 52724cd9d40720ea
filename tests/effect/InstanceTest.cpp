// Construction, counting and the process-wide pruning of the parameter maps.
#include <gtest/gtest.h>

#include <memory>

#include "effect/orlune.h"
#include "tests/support/LogCapture.h"

namespace {

bool Resolves(int id) {
    return Orlune::ResolveVirtualId(id, nullptr, nullptr, nullptr) == Orlune::Resolve::Found;
}

TEST(InstanceTest, CountsLiveInstances) {
    ASSERT_EQ(Orlune::gInstanceNum, 0u);
    auto first = std::make_unique<Orlune>();
    auto second = std::make_unique<Orlune>();
    EXPECT_EQ(Orlune::gInstanceNum, 2u);
    second.reset();
    EXPECT_EQ(Orlune::gInstanceNum, 1u);
    first.reset();
    EXPECT_EQ(Orlune::gInstanceNum, 0u);
}

TEST(InstanceTest, FirstConstructionPrunesKeyZeroOnce) {
    // Before any instance, the built-in zero records answer virtual id 0.
    EXPECT_TRUE(Resolves(0));
    EXPECT_FALSE(Resolves(1));
    auto first = std::make_unique<Orlune>();
    EXPECT_TRUE(Orlune::gMapTableFlag);
    EXPECT_FALSE(Resolves(0));
    EXPECT_EQ(PublishedTables().gHpMapTable.count("DEFALUT"), 1u);

    // Entries that appear later are the configuration's: a second instance leaves them alone.
    {
        ConfigUpdate update;
        update.Tables().gVituralMapTable[0] = RealParamIdStru{1, 2};
        update.Tables().gRealMapTable[1] = AudioOrluneMobilePara{};
        update.Tables().gRealMapTableExt[2] = AudioOrluneMobileParaExt{};
    }
    auto second = std::make_unique<Orlune>();
    EXPECT_TRUE(Resolves(0));
}

TEST(InstanceTest, ConstructionLogsAndSetsDefaults) {
    LogCapture log;
    auto inst = std::make_unique<Orlune>();
    char expected[128];
    snprintf(expected, sizeof(expected), "Orlune: Orlune instance init. %p, tid:%d",
             static_cast<void*>(inst.get()), static_cast<int>(gettid()));
    EXPECT_EQ(log.Count(expected, "orlune_mobile", ANDROID_LOG_INFO), 1) << log.Dump();

    EXPECT_FALSE(inst->GetProcessEnable());
    EXPECT_EQ(inst->initialised, 0);
    EXPECT_EQ(inst->mDumpEnabled, 0);
    uint32_t bits;
    memcpy(&bits, &inst->volumeDb, sizeof(bits));
    EXPECT_EQ(bits, 0xc203ffedu);
    EXPECT_EQ(inst->startStreamState, 3);
    EXPECT_EQ(inst->stopStreamState, 3);
    EXPECT_EQ(inst->mPopCacheSize, 384);
    EXPECT_EQ(inst->inBufOffset, 0);
    EXPECT_EQ(inst->outBufOffset, 0);
    EXPECT_EQ(inst->mLadInfoIn.get(), nullptr);
    EXPECT_EQ(inst->mLadInfoOut.get(), nullptr);
    for (int i = 0; i < DUMP_HANDLE_COUNT; ++i) {
        EXPECT_EQ(inst->mDumpFiles[i], nullptr);
    }
    // The memory lent to the algorithm: first buffers of each pair, then the second ones.
    EXPECT_EQ(inst->mAlgoMemTable[0], inst->mAlgoMem0A);
    EXPECT_EQ(inst->mAlgoMemTable[2], inst->mAlgoMem2A);
    EXPECT_EQ(inst->mAlgoMemTable[3], inst->mAlgoMem0B);
    EXPECT_EQ(inst->mAlgoMemTable[5], inst->mAlgoMem2B);
    EXPECT_EQ(inst->mIoInfo.frameLength, 0);

    inst->SetProcessEnable(true);
    EXPECT_TRUE(inst->GetProcessEnable());
}

}  // namespace
