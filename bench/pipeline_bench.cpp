// Cost of one 480-frame stereo 16-bit block through the sample pipeline against the bare
// 16 -> 32 -> 16 conversion of the same block that any effect of this shape pays. The pipeline
// runs once with the do-nothing algorithm library, so that the figure is the effect's own share,
// and once with the stand-in algorithm; each reports the round trip measured in the same run
// and the ratio of the two.
#include <dlfcn.h>
#include <string.h>
#include <time.h>

#include <memory>
#include <vector>

#include <android/log.h>
#include <audio_utils/format.h>
#include <benchmark/benchmark.h>

#include "config/VirtualIds.h"
#include "effect/orlune.h"
#include "params/ParamIds.h"

namespace {

constexpr int kFrames = 480;
constexpr int kSamples = kFrames * 2;

// The six entry points of an algorithm library opened by path; the libraries stay loaded.
struct AlgoLibrary : AlgoEntryPoints {
    bool Open(const char* path) {
        void* h = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        if (h != nullptr) {
            static_cast<AlgoEntryPoints&>(*this) = FindAlgoEntryPoints(h);
        }
        return h != nullptr && Complete();
    }
};

constexpr const char* kNullAlgo = ORLUNE_STANDIN_DIR "/liborlune_nullalgo.so";
constexpr const char* kStandinAlgo = ORLUNE_STANDIN_DIR "/lib64orlune7_1.so";

// A tuning for every loudspeaker volume level of the default situation, so that each block
// resolves and copies its records as on a configured device.
void InstallTuning() {
    ConfigUpdate update;
    for (int level = 0; level < vid::kLevels; ++level) {
        update.Tables().gVituralMapTable[vid::SpeakerId(
                FOLD_FULL, ORIENTATION_PORTRAIT, SCENE_MUSIC, level)] = RealParamIdStru{41, 42};
    }
    update.Tables().gRealMapTable[41] = AudioOrluneMobilePara{};
    update.Tables().gRealMapTableExt[42] = AudioOrluneMobileParaExt{};
}

// An instance bound to `algo`, set up for the loudspeaker with the effect on, and past its
// first (re-initialising) block.
std::unique_ptr<Orlune> MakeEffect(const AlgoLibrary& algo) {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    InstallTuning();
    std::unique_ptr<Orlune> o(new Orlune());
    o->mAlgoInit = algo.init;
    o->mAlgoApply = algo.apply;
    o->mAlgoSetPara = algo.setPara;
    o->mAlgoGetPara = algo.getPara;
    o->mAlgoGetVersion = algo.getVersion;
    o->mAlgoGetSize = algo.getSize;
    o->initialised = 1;
    o->mIoInfo.frameLength = kAlgoFrame;
    o->mIoInfo.enable = 1;
    o->mIoInfo.inBuf = o->mIoBuffer;
    o->mIoInfo.outBuf = o->mIoBuffer;
    o->InitPopEliminate();
    o->InitKiv(true);
    o->KivParamsSetInt(kIdDeviceType, 1);
    o->KivParamsSetInt(kIdWidenEnable, 1);
    o->KivParamsSetInt(kIdEffectEnable, 1);
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

// CPU time of the calling thread: the machine is shared, so wall time would count other jobs.
double ThreadNs() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) * 1e9 + static_cast<double>(ts.tv_nsec);
}

double NsPerRoundTrip() {
    RoundTrip rt;
    constexpr int kRuns = 200000;
    const double t0 = ThreadNs();
    for (int i = 0; i < kRuns; ++i) {
        rt.Run();
    }
    return (ThreadNs() - t0) / kRuns;
}

void BM_PipelineStereo16Block(benchmark::State& state, const char* library) {
    AlgoLibrary algo;
    if (!algo.Open(library)) {
        state.SkipWithError("algorithm library not found (build the standin targets)");
        return;
    }
    std::unique_ptr<Orlune> effect = MakeEffect(algo);
    const std::vector<int16_t> source = Source();
    std::vector<int16_t> block(kSamples);
    int64_t blocks = 0;
    const double t0 = ThreadNs();
    for (auto _ : state) {
        memcpy(block.data(), source.data(), kSamples * sizeof(int16_t));
        effect->KivOutProcPlaySamples(block.data(), kFrames, 2, AUDIO_FORMAT_PCM_16_BIT);
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
        ++blocks;
    }
    const double perBlock = (ThreadNs() - t0) / static_cast<double>(blocks > 0 ? blocks : 1);
    const double roundTrip = NsPerRoundTrip();
    state.counters["block_ns"] = perBlock;
    state.counters["round_trip_ns"] = roundTrip;
    state.counters["ratio"] = perBlock / roundTrip;
}
// The effect's own share: the algorithm does nothing.
BENCHMARK_CAPTURE(BM_PipelineStereo16Block, null_algo, kNullAlgo);
BENCHMARK_CAPTURE(BM_PipelineStereo16Block, standin_algo, kStandinAlgo);

void BM_BareRoundTrip16To32To16(benchmark::State& state) {
    RoundTrip rt;
    for (auto _ : state) {
        rt.Run();
    }
}
BENCHMARK(BM_BareRoundTrip16To32To16);

}  // namespace
