// A stereo block of exactly one algorithm frame takes a shorter way through the output buffer
// than other blocks (and blocks with the dump running). Both must leave the same output, also
// across algorithm runs that fail and so leave their frame of the buffer unwritten.
#include <dlfcn.h>

#include <memory>

#include <gtest/gtest.h>

#include "effect/orlune.h"
#include "tests/pipeline/PipelineFixture.h"

namespace {

AlgoApplyFn gStandinApply = nullptr;
int gFailed = 0;
int gPassed = 0;

// The stand-in, failing (without touching the frame) for about one frame in three.
int32_t SometimesFailingApply(void** first, void** second, void* params, KivIoInfo* io) {
    if ((static_cast<uint32_t>(io->inBuf[0]) >> 16) % 3 == 0) {
        ++gFailed;
        return 7;
    }
    ++gPassed;
    return gStandinApply(first, second, params, io);
}

std::unique_ptr<Orlune> MakeEffect(bool dumping) {
    std::unique_ptr<Orlune> effect(new Orlune());
    effect->KivOutProcPlayInit();
    effect->KivParamsSetInt(kIdDeviceType, 1);
    effect->KivParamsSetInt(kIdWidenEnable, 1);
    effect->KivParamsSetInt(kIdEffectEnable, 1);
    gStandinApply = effect->mAlgoApply;
    effect->mAlgoApply = SometimesFailingApply;
    // A dump without files: every block takes the general way (and logs the missing files).
    effect->mDumpEnabled = dumping ? 1 : 0;
    return effect;
}

TEST(PipelineHeldFrameTest, SingleFrameBlocksMatchTheGeneralWay) {
    DeviceRoot root;
    WriteTestTuning(root);
    ASSERT_NE(dlopen((std::string(ORLUNE_STANDIN_DIR) + "/lib64orlune7_1.so").c_str(),
                     RTLD_NOW | RTLD_GLOBAL),
              nullptr);
    std::unique_ptr<Orlune> quick = MakeEffect(false);
    std::unique_ptr<Orlune> general = MakeEffect(true);
    ASSERT_NE(gStandinApply, nullptr);
    const int sizes[] = {480, 480, 240, 240, 480, 720, 240, 480, 480, 960, 480, 100, 380, 480};
    const std::vector<int32_t> noise = Noise32(960 * 4, 2, 3);
    size_t at = 0;
    for (int round = 0; round < 6; ++round) {
        for (const int frames : sizes) {
            std::vector<short> a(static_cast<size_t>(frames) * 2);
            for (short& s : a) {
                s = static_cast<short>(noise[at++ % noise.size()] >> 16);
            }
            std::vector<short> b = a;
            quick->KivOutProcPlaySamples(a.data(), frames, 2, kS16);
            general->KivOutProcPlaySamples(b.data(), frames, 2, kS16);
            ASSERT_EQ(a, b) << "round " << round << ", block of " << frames << " frames";
        }
    }
    EXPECT_GT(gFailed, 10);
    EXPECT_GT(gPassed, 10);
}

}  // namespace
