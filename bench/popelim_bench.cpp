// One 3840-byte block through the exported pop eliminator.
#include <android/log.h>
#include <benchmark/benchmark.h>
#include <math.h>

#include <vector>

#include "popelim/CuttingEdge.h"

namespace {

// Steady music-like material, two tones at half of full scale: no edge to fade, the usual case.
std::vector<int32_t> SteadyTones() {
    std::vector<int32_t> s(kPopBlockBytes / 4);
    for (size_t f = 0; f < s.size() / 2; ++f) {
        const double t = f / 48000.0;
        s[f * 2] = static_cast<int32_t>((1 << 29) *
                                        (sin(2 * M_PI * 441 * t) + sin(2 * M_PI * 997 * t)));
        s[f * 2 + 1] = static_cast<int32_t>((1 << 29) *
                                            (sin(2 * M_PI * 331 * t) - sin(2 * M_PI * 1201 * t)));
    }
    return s;
}

// A 1 kHz tone whose every zero crossing falls on a sample of exactly 0: each crossing is a
// drop that the falling-edge search has to follow for a frame.
std::vector<int32_t> ZeroCrossingTone() {
    std::vector<int32_t> s(kPopBlockBytes / 4);
    for (size_t f = 0; f < s.size() / 2; ++f) {
        s[f * 2] = static_cast<int32_t>((1 << 30) * sin(2 * M_PI * f / 48.0));
        s[f * 2 + 1] = -s[f * 2];
    }
    return s;
}

// Silence, then a hard onset and a hard stop in each channel: both searches find an edge
// and both fades run.
std::vector<int32_t> Edges() {
    std::vector<int32_t> s(kPopBlockBytes / 4, 0);
    for (size_t f = 100; f < 300; ++f) {
        s[f * 2] = s[f * 2 + 1] = 20000 * 65536;
    }
    return s;
}

void RunBlocks(benchmark::State& state, const std::vector<int32_t>& block) {
    const ProcessConfig config{2, 4, kPopBlockBytes, 0, 3};
    ProcessHandle* handle = CuttingEdgeFadeinoutInit(&config);
    ClearCachedBuffer(handle);
    for (auto _ : state) {
        benchmark::DoNotOptimize(CuttingEdgeProcess(handle, block.data(), kPopBlockBytes, true));
    }
}

void BM_PopElimSteadyBlock(benchmark::State& state) {
    RunBlocks(state, SteadyTones());
}
BENCHMARK(BM_PopElimSteadyBlock);

void BM_PopElimZeroCrossingBlock(benchmark::State& state) {
    RunBlocks(state, ZeroCrossingTone());
}
BENCHMARK(BM_PopElimZeroCrossingBlock);

// The four info lines per block are filtered out here, so that the figure is the eliminator's
// own work rather than the cost of writing log lines to the console.
void BM_PopElimEdgeBlock(benchmark::State& state) {
    __android_log_set_minimum_priority(ANDROID_LOG_WARN);
    RunBlocks(state, Edges());
    __android_log_set_minimum_priority(ANDROID_LOG_INFO);
}
BENCHMARK(BM_PopElimEdgeBlock);

}  // namespace
