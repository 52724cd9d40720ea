// Construction, counting and the process-wide pruning of the parameter maps.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "effect/PipelineLimits.h"
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

// Where no frame is touched (another device, the algorithm off, the swap inhibited, four
// channels on the input) the fade still keeps time: it moves as frame-by-frame steps would.
TEST(InstanceTest, UntouchedFramesMoveTheFadeAsSingleStepsWould) {
    struct Case {
        int device, enable, inhibit, channels, pos, step, frames;
    };
    const Case cases[] = {
            {2, 1, 0, 2, pipeline::kSwapFadeFrames, -1, 480},
            {2, 1, 0, 2, 300, -1, 480},
            {2, 1, 0, 2, 1, -1, 1},
            {1, 0, 0, 2, 0, 1, 480},
            {1, 0, 0, 2, 9500, 1, 240},
            {1, 1, 1, 2, 5000, -1, 0},
            {3, 1, 0, 4, 9599, 1, 4096},
            {2, 0, 0, 2, 0, -1, 480},
            {1, 1, 1, 2, 2, -1, 1},
    };
    std::unique_ptr<Orlune> effect(new Orlune());
    Orlune& o = *effect;
    for (const Case& c : cases) {
        o.mDeviceType = c.device;
        o.mIoInfo.enable = c.enable;
        o.param37Flag = static_cast<uint8_t>(c.inhibit);
        o.mSwapPos = c.pos;
        o.param5Step = c.step;
        o.inBufOffset = c.frames * 2;
        int expected = c.pos;
        for (int f = 0; f < c.frames; ++f) {
            expected = expected + c.step < 1
                               ? 0
                               : std::min(expected + c.step, pipeline::kSwapFadeFrames);
        }
        if (c.channels == 4) {
            o.outBufOffset = 0;
            o.SwapFourChannel(c.frames, 4);
        } else {
            o.SwapChannel(c.frames, 2);
        }
        EXPECT_EQ(o.mSwapPos, expected) << c.device << " " << c.pos << " " << c.frames;
    }
}

}  // namespace
