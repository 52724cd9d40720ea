// Two streams driven as an audio server drives them: per instance an audio thread and a
// parameter thread, plus a control thread that reloads the configuration, switches dumps and
// switches the region once. Every parameter the threads change maps to the same tuning, so the
// output must stay exactly the processed input, except for the one re-initialisation that the
// region switch causes.
#include <math.h>
#include <stdint.h>
#include <string.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <android/log.h>
#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"

namespace {

constexpr audio_format_t kFloat = AUDIO_FORMAT_PCM_FLOAT;
constexpr int kBlock = 256;
constexpr int kPeriodFrames = 7680;  // the input repeats: whole blocks and whole frames
constexpr int kLatencyFrames = kFrame + kPopDelayFrames;
constexpr int kMinBlocks = 200;  // each stream runs at least this long, and while the
constexpr auto kControlTime = std::chrono::milliseconds(1500);  // control thread works
// Where a stream starts from silence (at the start, and when set-up re-initialises it): one
// frame of primed silence and the pop eliminator's delay line, then its fade-in.
constexpr int kEdgeFrames = 2 * kFrame + kPopDelayFrames;
constexpr size_t kMaxRuns = 16;
const char* const kHeadsets[] = {"Vardo BX71", "Lumen XE", "unknown headset"};

// Every speaker and headphone situation the parameter threads can reach names records 41/42.
void WriteUniformTuning(const DeviceRoot& root) {
    std::vector<std::string> map;
    for (int id = 0; id < 3 * 4000; ++id) {
        if (id % 4000 < 2 * 400 && id % 400 < 9 * 20 && id % 20 < 7) {
            map.push_back(NvMap(id, 41, 42));
        }
    }
    for (int key = 0; key < 9 * 80; ++key) {
        if (key % 80 < 4 * 20 && key % 20 < 7) {
            map.push_back(NvMap(41000 + key, 41, 42));
        }
    }
    map.push_back("<HPMAP NUMID=\"14\" NAME=\"Vardo BX71\"/>");
    map.push_back("<HPMAP NUMID=\"11\" NAME=\"Lumen XE\"/>");
    WriteTestTuning(root, map);
}

// A stream and what its audio thread saw: the output is compared with the expectation block
// by block, and every run of differing frames is kept.
struct Stream {
    HostOrlune* effect = nullptr;
    std::vector<uint8_t> input;  // one period, float stereo, left equal to right
    std::vector<uint8_t> want;   // the processed period, from kLatencyFrames on, float stereo
    int64_t blocks = 0;
    std::vector<std::pair<int64_t, int64_t>> runs;  // first and last differing frame

    float Want(int64_t frame) const {
        const float* processed = reinterpret_cast<const float*>(want.data());
        return frame < kLatencyFrames ? 0.0f
                                      : processed[2 * ((frame - kLatencyFrames) % kPeriodFrames)];
    }
    void Check(const float* out, int64_t firstFrame) {
        for (int i = 0; i < kBlock; ++i) {
            const int64_t frame = firstFrame + i;
            const float want = Want(frame);
            // A swap fade step can move a sample by a few of its 32-bit units.
            if (fabsf(out[2 * i] - want) <= 1e-6f && fabsf(out[2 * i + 1] - want) <= 1e-6f) {
                continue;
            }
            if (!runs.empty() && runs.back().second == frame - 1) {
                runs.back().second = frame;
            } else if (runs.size() < kMaxRuns) {
                runs.push_back({frame, frame});
            }
        }
    }
};

// An audio thread without pacing, so that its blocks overlap everything the other threads do.
void Play(Stream& s, const std::atomic<bool>& controlDone) {
    const size_t blockBytes = kBlock * 2 * sizeof(float);
    std::vector<uint8_t> buffer(kBlock * 4 * sizeof(float));
    while (s.blocks < kMinBlocks || !controlDone) {
        const int64_t frame = s.blocks * kBlock;
        memcpy(buffer.data(), s.input.data() + (frame % kPeriodFrames) * 2 * sizeof(float),
               blockBytes);
        s.effect->KivOutProcPlaySamples(reinterpret_cast<short*>(buffer.data()), kBlock, 2, kFloat);
        s.Check(reinterpret_cast<const float*>(buffer.data()), frame);
        ++s.blocks;
    }
}

// Changes everything a host changes at any time, counting the wrong replies.
void ChangeParameters(HostOrlune* effect, uint32_t stream, const std::atomic<bool>& stop,
                      std::atomic<int>& wrong) {
    std::mt19937 rng(stream);  // each stream its own sequence of changes
    auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<uint32_t>(n)); };
    // Device, scene, orientation, fold state, volume indices and dB, swap, headset name,
    // playing applications, detector volumes with a stream start or stop, and two queries.
    const std::function<void()> changes[] = {
            [&] { effect->KivParamsSetInt(kIdDeviceType, 1 + pick(3)); },
            [&] { effect->KivParamsSetInt(kIdScene, pick(9)); },
            [&] { effect->KivParamsSetInt(kIdOrientation, pick(2)); },
            [&] { effect->KivParamsSetInt(kIdFoldState, pick(3)); },
            [&] { effect->KivParamsSetInt(kIdVolumeIndexRing + pick(5), pick(16)); },
            [&] { effect->KivParamsSetFloat(kIdVolumeDb, -static_cast<float>(pick(60))); },
            [&] { effect->KivParamsSetInt(kIdChannelSwap, pick(2)); },
            [&] { effect->KivParamsSetString(kIdHeadsetName, kHeadsets[pick(3)]); },
            [&] {
                effect->KivParamsSetString(kIdPlayingApps,
                                           "[a.music, b.v" + std::to_string(pick(4)) + "]");
            },
            [&] {
                effect->KivParamsSetFloat(kIdMasterVolume + pick(3),
                                          static_cast<float>(pick(4)) / 4);
                effect->KivParamsSetInt(kIdStartStream + pick(2), 3);
            },
            [&] { wrong += effect->KivParamsGet(android::String8("EFFECT_ENABLE_STATE")) != "1"; },
            [&] {
                const std::string reply =
                        effect->KivParamsGet(android::String8("HP_TYPE;HIFIPARA")).c_str();
                wrong += reply.find("HIFIPARA=STEREOWIDEN_Enable=true;HP_TYPE=") != 0;
            },
    };
    while (!stop) {
        changes[pick(12)]();
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
}

TEST(PipelineStressTest, TwoStreamsStayExactUnderParameterReloadDumpAndRegionThreads) {
    // Hundreds of thousands of lines otherwise; the threads still log at error level.
    __android_log_set_minimum_priority(ANDROID_LOG_ERROR);
    DeviceRoot root;
    WriteUniformTuning(root);
    root.WriteKiv("lad_config_brisel.xml", "<lad_config limit_dbfs=\"-1.0\"/>");
    root.WriteFile("/data/audio_debug/.keep", "");
    ASSERT_NE(PreloadStandin(StandinPath("lib64orlune7_1.so")), nullptr);
    ASSERT_NE(PreloadStandin(StandinPath("liblouddetect.so")), nullptr);
    HostLibrary library;
    ASSERT_TRUE(library.Loaded());

    Stream streams[2];
    for (int i = 0; i < 2; ++i) {
        Stream& s = streams[i];
        s.effect = library.Create();
        s.effect->KivOutProcPlayInit();
        s.effect->KivParamsSetInt(kIdDeviceType, 1);
        s.effect->KivParamsSetInt(kIdWidenEnable, 1);
        s.effect->KivParamsSetInt(kIdEffectEnable, 1);
        std::vector<int32_t> stereo;
        for (int32_t v : Noise32(kPeriodFrames, 1, 7 + i)) {
            stereo.insert(stereo.end(), {v, v});
        }
        s.input = FromInt32(stereo, kFloat);
        // The stand-in treats each frame alone, and the period is whole frames: in steady state
        // the output is the processed period.
        s.want = FromInt32(Standin(To32(s.input, kFloat), 2, true), kFloat);
    }

    std::atomic<bool> controlDone{false};
    std::atomic<int> wrongReplies{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back(Play, std::ref(streams[i]), std::cref(controlDone));
        threads.emplace_back(ChangeParameters, streams[i].effect, 100 + i, std::cref(controlDone),
                             std::ref(wrongReplies));
    }
    std::thread control([&] {
        const auto end = std::chrono::steady_clock::now() + kControlTime;
        for (int round = 0; std::chrono::steady_clock::now() < end; ++round) {
            HostOrlune* effect = streams[round % 2].effect;
            effect->KivParamsSetInt(kIdReloadConfig, 1);
            effect->KivParamsSetInt(kIdPcmDump, round % 4 < 2 ? 1 : 0);
            if (round == 3) {
                streams[0].effect->KivParamsSetInt(kIdMusicRegion, 1);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        controlDone = true;
    });
    control.join();
    for (std::thread& t : threads) {
        t.join();
    }
    EXPECT_EQ(wrongReplies, 0);

    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(testing::Message()
                     << "stream " << i << ", " << streams[i].blocks << " blocks");
        const Stream& s = streams[i];
        // Every block came back processed and in order. The output differs from the processed
        // input only where the signal starts from silence: at the start of the stream and, on
        // the stream whose region switch re-ran set-up, once more from a block boundary on.
        std::vector<int64_t> edges;  // first differing frame of each
        for (const auto& [first, last] : s.runs) {
            if (edges.empty() || last >= edges.back() + kEdgeFrames) {
                edges.push_back(first);
            }
            EXPECT_LT(last, edges.back() + kEdgeFrames) << "frames " << first << " to " << last;
        }
        ASSERT_EQ(edges.size(), i == 0 ? 2u : 1u) << "last edge at frame " << edges.back();
        EXPECT_EQ(edges[0], kLatencyFrames);  // the first samples to come out
        if (i == 0) {
            EXPECT_EQ(edges[1] % kBlock, 0);  // the re-initialisation came between two blocks
        }
    }
    for (Stream& s : streams) {
        library.Delete(s.effect);
    }
}

}  // namespace
