// Cost of one 480-frame stereo 16-bit block through the sample pipeline, with an algorithm
// that passes its frame through, against the bare 16 -> 32 -> 16 conversion of the same block
// that any effect of this shape pays. The pipeline benchmark reports the round trip it
// measured in the same run and the ratio of the two.
#include <string.h>

#include <chrono>
#include <memory>
#include <vector>

#include <android/log.h>
#include <audio_utils/format.h>
#include <benchmark/benchmark.h>

#include "effect/orlune.h"

namespace {

constexpr int kFrames = 480;
constexpr int kSamples = kFrames * 2;

int32_t PassInit(void**, void**) {
    return 0;
}
int32_t PassApply(void**, void**, void*, KivIoInfo*) {
    return 0;
}
int32_t PassSetPara(void**, void*, const AudioOrluneMobilePara*, const AudioOrluneMobileParaExt*) {
    return 0;
}
int32_t PassGetPara(void**, void*, AudioOrluneMobilePara*, AudioOrluneMobileParaExt*) {
    return 0;
}
int32_t PassGetVersion(char* versions) {
    versions[0] = '\0';
    return 0;
}
int32_t PassGetSize(int32_t* sizes, KivIoInfo*) {
    sizes[0] = 0;
    return 0;
}

// A tuning for every loudspeaker volume level of the default situation, so that each block
// resolves and copies its records as on a configured device.
void InstallTuning() {
    ConfigUpdate update;
    for (int level = 0; level <= 6; ++level) {
        update.Tables().gVituralMapTable[4000 + level] = RealParamIdStru{41, 42};
    }
    update.Tables().gRealMapTable[41] = AudioOrluneMobilePara{};
    update.Tables().gRealMapTableExt[42] = AudioOrluneMobileParaExt{};
}

// An instance bound to the pass-through algorithm, set up for the loudspeaker with the
// effect on, and past its first (re-initialising) block.
std::unique_ptr<Orlune> MakeEffect() {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    InstallTuning();
    std::unique_ptr<Orlune> o(new Orlune());
    o->mAlgoInit = PassInit;
    o->mAlgoApply = PassApply;
    o->mAlgoSetPara = PassSetPara;
    o->mAlgoGetPara = PassGetPara;
    o->mAlgoGetVersion = PassGetVersion;
    o->mAlgoGetSize = PassGetSize;
    o->initialised = 1;
    o->mIoInfo.frameLength = kAlgoFrame;
    o->mIoInfo.enable = 1;
    o->mIoInfo.inBuf = o->mIoBuffer;
    o->mIoInfo.outBuf = o->mIoBuffer;
    o->InitPopEliminate();
    o->InitKiv(true);
    o->KivParamsSetInt(12, 1);
    o->KivParamsSetInt(0, 1);
    o->KivParamsSetInt(32, 1);
    std::vector<int16_t> block(kSamples, 0);
    o->KivOutProcPlaySamples(block.data(), kFrames, 2, AUDIO_FORMAT_PCM_16_BIT);
    return o;
}

std::vector<int16_t> Source() {
    std::vector<int16_t> source(kSamples);
    uint32_t state = 1;
    for (int16_t& s : source) {
        state = state * 1664525u + 1013904223u;
        s = static_cast<int16_t>(state >> 16);
    }
    return source;
}

struct RoundTrip {
    std::vector<int16_t> source = Source();
    std::vector<int16_t> block = std::vector<int16_t>(kSamples);
    std::vector<int32_t> wide = std::vector<int32_t>(kSamples);
    void Run() {
        memcpy(block.data(), source.data(), kSamples * sizeof(int16_t));
        memcpy_by_audio_format(wide.data(), AUDIO_FORMAT_PCM_32_BIT, block.data(),
                               AUDIO_FORMAT_PCM_16_BIT, kSamples);
        memcpy_by_audio_format(block.data(), AUDIO_FORMAT_PCM_16_BIT, wide.data(),
                               AUDIO_FORMAT_PCM_32_BIT, kSamples);
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
};

double NsPerRoundTrip() {
    RoundTrip rt;
    constexpr int kRuns = 200000;
    const auto t0 = std::chrono::steady_clock::now();
    for (int i = 0; i < kRuns; ++i) {
        rt.Run();
    }
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - t0).count() /
           kRuns;
}

void BM_PipelineStereo16Block(benchmark::State& state) {
    std::unique_ptr<Orlune> effect = MakeEffect();
    const std::vector<int16_t> source = Source();
    std::vector<int16_t> block(kSamples);
    int64_t blocks = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (auto _ : state) {
        memcpy(block.data(), source.data(), kSamples * sizeof(int16_t));
        effect->KivOutProcPlaySamples(block.data(), kFrames, 2, AUDIO_FORMAT_PCM_16_BIT);
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
        ++blocks;
    }
    const double perBlock =
            std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - t0)
                    .count() /
            static_cast<double>(blocks > 0 ? blocks : 1);
    const double roundTrip = NsPerRoundTrip();
    state.counters["block_ns"] = perBlock;
    state.counters["round_trip_ns"] = roundTrip;
    state.counters["ratio"] = perBlock / roundTrip;
}
BENCHMARK(BM_PipelineStereo16Block);

void BM_BareRoundTrip16To32To16(benchmark::State& state) {
    RoundTrip rt;
    for (auto _ : state) {
        rt.Run();
    }
}
BENCHMARK(BM_BareRoundTrip16To32To16);

}  // namespace
