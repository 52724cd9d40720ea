// Rules that switch parts of the stereo path on and off, observed in what the host gets back:
// the start-up guard (id 7), the click remover's enable, the loud-output detector's gate and
// the middle of the swap cross-fade (id 5). Without tuning the stand-in passes 16-bit samples
// through unchanged, so the output is the input one frame and the delay line late except where
// the rule under test acts.
#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

namespace {

constexpr int kLatency = kFrame + kPopDelayFrames;

// `frames` stereo frames of silence, then loud noise: one hard edge at `frames`.
std::vector<int32_t> EdgeAt(int frames, int total) {
    std::vector<int32_t> in = As16(Noise32(total, 2, 3));
    std::fill(in.begin(), in.begin() + 2 * frames, 0);
    return in;
}

// Plays `in` as 32-bit blocks of `block` frames; `before(k)` runs ahead of block k.
std::vector<int32_t> Play(
        PipelineHost& host, const std::vector<int32_t>& in, int block,
        const std::function<void(int)>& before = [](int) {}) {
    constexpr audio_format_t k32 = AUDIO_FORMAT_PCM_32_BIT;
    std::vector<int32_t> out;
    for (int k = 0; 2 * k * block < static_cast<int>(in.size()); ++k) {
        before(k);
        const std::vector<uint8_t> got =
                host.Run(FromInt32(FrameSlice(in, 2, k * block, block), k32), block, 2, k32, 2);
        const std::vector<int32_t> samples = To32(got, k32);
        out.insert(out.end(), samples.begin(), samples.end());
    }
    return out;
}

std::vector<int32_t> Reference(const std::vector<int32_t>& in) {
    std::vector<int32_t> ref = Delayed(in, kLatency, 2);
    ref.resize(in.size());
    return ref;
}

// Id 7 counts 64 down by 8 before each block's frames run, so the frames completed in the
// next seven blocks are guarded: the first loud sample arms the guard and every later frame
// of that span is silent, provided the effect is on.
TEST(PipelineGatingTest, StartGuardMutesExactlyItsSpanThenOutputResumes) {
    const struct {
        int block, widen, effect;
        bool mutes;
    } kCases[] = {{480, 1, 1, true}, {960, 1, 1, true}, {480, 1, 0, false}, {480, 0, 1, false}};
    const int setAt = 4;  // blocks played before id 7, past the fade-in at the start
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message()
                     << "block " << c.block << " id0 " << c.widen << " id32 " << c.effect);
        HostOptions options;
        options.tuned = false;
        PipelineHost host(options);
        host.Effect()->KivParamsSetInt(kIdWidenEnable, c.widen);
        host.Effect()->KivParamsSetInt(kIdEffectEnable, c.effect);
        const std::vector<int32_t> in = As16(Noise32(24 * kFrame, 2, 9));
        const std::vector<int32_t> out = Play(host, in, c.block, [&](int k) {
            if (k == setAt) {
                host.Effect()->KivParamsSetInt(kIdStartGuard, 1);
            }
        });
        std::vector<int32_t> want = Reference(in);
        if (c.mutes) {
            const int first = kFrame + setAt * c.block + 1;  // after the arming frame
            const int end = kFrame + (setAt + 7) * c.block;
            std::fill(want.begin() + 2 * first, want.begin() + 2 * end, 0);
        }
        const int from = kFrame + setAt * c.block - kFrame;  // the start-up fade is over
        EXPECT_TRUE(std::equal(out.begin() + 2 * from, out.end(), want.begin() + 2 * from));
    }
}

// The click remover fades edges when the effect is on, with UI type 0 also in host headphone
// mode 2, and with another UI type also in headphone modes 3D off and game.
TEST(PipelineGatingTest, ClickRemoverFadesEdgesExactlyWhenItsRuleHolds) {
    const struct {
        int uiType, device, effect, modeId, mode;
        bool fades;
    } kCases[] = {
            {0, 1, 1, kIdHpModeUi0, 0, true},  {0, 1, 0, kIdHpModeUi0, 0, false},
            {0, 1, 0, kIdHpModeUi0, 2, true},  {0, 2, 0, kIdHpModeUi0, 1, false},
            {1, 2, 0, kIdHpModeUi1, 3, true},  {1, 2, 0, kIdHpModeUi1, 9, true},
            {1, 2, 0, kIdHpModeUi1, 1, false}, {1, 2, 1, kIdHpModeUi1, 1, true},
    };
    const std::vector<int32_t> in = EdgeAt(3000, 12 * kFrame);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - kCases);
        HostOptions options;
        options.tuned = false;
        options.device = c.device;
        PipelineHost host(options);
        if (c.uiType != 0) {
            host.Root().WriteKiv("kiv_config_vmap.xml",
                                 XmlDocument({"<CFG NUMID=\"0\" PARAM_VALUE=\"1\"/>"}));
            host.Effect()->KivParamsSetInt(kIdReloadConfig, 1);
        }
        host.Effect()->KivParamsSetInt(kIdEffectEnable, c.effect);
        host.Effect()->KivParamsSetInt(c.modeId, c.mode);
        const std::vector<int32_t> out = Play(host, in, kFrame);
        const std::vector<int32_t> ref = Reference(in);
        EXPECT_EQ(out != ref, c.fades);
        // Untouched up to the edge either way.
        EXPECT_TRUE(std::equal(out.begin(), out.begin() + 2 * (3000 + kLatency), ref.begin()));
    }
}

struct Measures {
    int in = 0, out = 0;
    static void Count(void* self, int output, float, float) {
        ++(output != 0 ? static_cast<Measures*>(self)->out : static_cast<Measures*>(self)->in);
    }
};

// Frames reach the detector, before and after the algorithm, only on the loudspeaker while
// the host has said that a stream runs (id 51 = 3, the state after set-up).
TEST(PipelineGatingTest, DetectorSeesFramesOnlyOnTheLoudspeakerDuringAStream) {
    void* lad = PreloadStandin(StandinPath("liblouddetect.so"));
    ASSERT_NE(lad, nullptr);
    using Observe = void (*)(void (*)(void*, int, float, float), void*);
    const auto observe = reinterpret_cast<Observe>(dlsym(lad, "LadStandinObserve"));
    ASSERT_NE(observe, nullptr);
    const struct {
        int device, stream;
        bool measured;
    } kCases[] = {{1, -1, true}, {1, 2, false}, {2, -1, false}, {3, 3, false}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << "device " << c.device << " id51 " << c.stream);
        HostOptions options;
        options.device = c.device;
        PipelineHost host(options);
        // The detector is loaded by a set-up that finds its configuration file.
        host.Root().WriteKiv("lad_config_brisel.xml", "<lad_config limit_dbfs=\"-1.0\"/>");
        host.Effect()->KivOutProcPlayInit();
        if (c.stream >= 0) {  // else as set-up left it
            host.Effect()->KivParamsSetInt(kIdStartStream, c.stream);
        }
        Measures m;
        observe(Measures::Count, &m);
        host.Run16(Noise32(6 * kFrame, 2, 4), kFrame, 2, 2);
        observe(nullptr, nullptr);
        EXPECT_EQ(m.in, c.measured ? 6 : 0);
        EXPECT_EQ(m.out, m.in);
    }
}

// While id 5 fades to the swapped state each output frame is a mix w L + (1 - w) R on the left
// and w R + (1 - w) L on the right of the input frame: the two weights sum to one, w falls
// steadily from 1 to 0 over 9600 frames, and the channels end exchanged.
TEST(PipelineGatingTest, SwapCrossFadeMixesBothInputsWithWeightsSummingToOne) {
    constexpr int kFade = 9600;
    HostOptions options;
    options.tuned = false;
    PipelineHost host(options);
    const int start = 4 * kFrame;
    const std::vector<int32_t> in = As16(Noise32(start + kFade + 6 * kFrame, 2, 6));
    const std::vector<int32_t> out = Play(host, in, kFrame, [&](int k) {
        if (k * kFrame == start) {
            host.Effect()->KivParamsSetInt(kIdChannelSwap, 1);
        }
    });
    double last = 1.0;
    int inside = 0;  // frames strictly between the two states
    for (int t = start; t + kLatency < static_cast<int>(in.size()) / 2; ++t) {
        const int64_t l = in[2 * t], r = in[2 * t + 1];
        const int64_t ol = out[2 * (t + kLatency)], orr = out[2 * (t + kLatency) + 1];
        // Each product is truncated on its own, and the stand-in's mid/side pass adds one.
        ASSERT_LE(std::llabs(ol + orr - (l + r)), 3) << "frame " << t;
        if (std::llabs(l - r) < (1 << 24)) {
            continue;  // too close to read a weight from
        }
        const double w = (static_cast<double>(ol - orr) / static_cast<double>(l - r) + 1) / 2;
        ASSERT_GE(w, -1e-6) << "frame " << t;
        ASSERT_LE(w, last + 1e-6) << "frame " << t;
        last = w;
        inside += w > 1e-6 && w < 1 - 1e-6;
        // The fade is linear in time: 1 - w is the share of the fade done.
        ASSERT_NEAR(w, std::max(0.0, 1.0 - static_cast<double>(t - start + 1) / kFade), 1e-4)
                << "frame " << t;
    }
    EXPECT_LT(last, 1e-6);  // exchanged at the end
    EXPECT_GT(inside, kFade * 9 / 10);
}

}  // namespace
