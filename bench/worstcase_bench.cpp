// The worst blocks, not the average one: per-block times of 480-frame stereo 16-bit blocks of
// instances set up as on a device (the generated sample device, the stand-in algorithm and
// detector), while
//   - another thread changes parameters and reloads the configuration (id 33), or
//   - 1, 2, 4 or 8 instances run on threads of their own.
// Each benchmark is one run (Iterations(1)); its figures are counters. Block times are wall
// time, so waits for the instance lock count; a block that another job on the machine preempts
// counts too. Beside the percentiles: how often the audio thread slept (`slept`: every wait for
// the instance lock or for anything else puts it to sleep) and was preempted (`preempted`).
// Log lines are formatted and dropped.
#include <dlfcn.h>
#include <pthread.h>
#include <sched.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <android/log.h>
#include <benchmark/benchmark.h>

#include "effect/orlune.h"
#include "params/ParamIds.h"

namespace {

constexpr int kFrames = 480;
constexpr int kSamples = kFrames * 2;
constexpr int kTrafficBlocks = 100000;
// A block every 20 us instead of every 10 ms: 500 times denser than on a device, and still
// with time between blocks in which parameter calls take the instance lock. Back to back, the
// audio thread would take the lock again at once every time, and a waiting parameter call
// would have to be woken after every block.
constexpr int64_t kTrafficPeriodNs = 20000;
constexpr int kBlocksPerInstance = 25000;

const std::string kDevice = std::string(ORLUNE_BINARY_DIR) + "/sample-device";

void DropLine(const __android_logger_data*, const char*) {}

int64_t Now(clockid_t clock) {
    timespec ts;
    clock_gettime(clock, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

struct Switches {
    long slept;      // voluntary context switches
    long preempted;  // involuntary ones
};

Switches ThreadSwitches() {
    rusage usage;
    getrusage(RUSAGE_THREAD, &usage);
    return Switches{usage.ru_nvcsw, usage.ru_nivcsw};
}

// The sample device as the device root, and the stand-in libraries loaded so that set-up
// finds them by name; without `detector` instances made afterwards run without the stand-in
// loud-output detector. False (the benchmark skipped) when something is missing.
bool UseSampleDevice(benchmark::State& state, bool detector = true) {
    struct stat st;
    if (stat((kDevice + "/odm/etc/kiv/kiv_config.xml").c_str(), &st) != 0) {
        state.SkipWithError("build the sample_device target first (scripts/demo.sh)");
        return false;
    }
    static void* const algo =
            dlopen(ORLUNE_STANDIN_DIR "/lib64orlune7_1.so", RTLD_NOW | RTLD_GLOBAL);
    static void* lad = nullptr;
    if (detector && lad == nullptr) {
        lad = dlopen(ORLUNE_STANDIN_DIR "/liblouddetect.so", RTLD_NOW | RTLD_GLOBAL);
    } else if (!detector && lad != nullptr) {
        dlclose(lad);  // the bridge opens it by name: now it finds none
        lad = nullptr;
    }
    if (algo == nullptr || (detector && lad == nullptr)) {
        state.SkipWithError("stand-in libraries not built");
        return false;
    }
    setenv("ORLUNE_DEVICE_ROOT", kDevice.c_str(), 1);
    setenv("ORLUNE_PROPERTIES", (kDevice + "/sample.properties").c_str(), 1);
    __android_log_set_logger(DropLine);
    __android_log_set_minimum_priority(ANDROID_LOG_INFO);
    return true;
}

// An instance set up as the host does it: loudspeaker, effect on, past its first block.
std::unique_ptr<Orlune> MakeInstance() {
    std::unique_ptr<Orlune> o(new Orlune());
    o->KivParamsSetInt(kIdDeviceType, 1);
    o->KivOutProcPlayInit();
    o->KivParamsSetInt(kIdWidenEnable, 1);
    o->KivParamsSetInt(kIdEffectEnable, 1);
    std::vector<int16_t> block(kSamples, 0);
    o->KivOutProcPlaySamples(block.data(), kFrames, 2, AUDIO_FORMAT_PCM_16_BIT);
    return o;
}

// Music-like material: two tones, so that the pop eliminator sees zero crossings.
std::vector<int16_t> Tones(int frames) {
    std::vector<int16_t> s(static_cast<size_t>(frames) * 2);
    for (int f = 0; f < frames; ++f) {
        const double t = f / 48000.0;
        s[2 * f] = static_cast<int16_t>(9000 * (sin(2 * M_PI * 441 * t) + sin(2 * M_PI * 997 * t)));
        s[2 * f + 1] =
                static_cast<int16_t>(9000 * (sin(2 * M_PI * 331 * t) - sin(2 * M_PI * 1201 * t)));
    }
    return s;
}

// Gives the calling thread the real-time priority that a platform's audio threads run with, so
// that the parameter thread does not preempt it; false when the system does not allow it.
bool AudioPriority() {
    sched_param param{};
    param.sched_priority = 2;
    return pthread_setschedparam(pthread_self(), SCHED_FIFO, &param) == 0;
}

void NormalPriority() {
    sched_param param{};
    pthread_setschedparam(pthread_self(), SCHED_OTHER, &param);
}

// Runs `blocks` blocks through `o`, writing each block's wall time in ns to `times`. With a
// `periodNs` each block starts one period after the one before, as an audio thread's blocks
// do (there every 10 ms); the thread waits for it without sleeping.
void RunBlocks(Orlune& o, int blocks, std::vector<int64_t>& times, int64_t periodNs = 0) {
    constexpr int kPeriodBlocks = 100;  // one second of material, repeated
    const std::vector<int16_t> source = Tones(kFrames * kPeriodBlocks);
    std::vector<int16_t> block(kSamples);
    times.resize(static_cast<size_t>(blocks));
    const int64_t start = Now(CLOCK_MONOTONIC);
    for (int b = 0; b < blocks; ++b) {
        while (periodNs > 0 && Now(CLOCK_MONOTONIC) < start + b * periodNs) {
        }
        memcpy(block.data(), source.data() + (b % kPeriodBlocks) * kSamples,
               kSamples * sizeof(int16_t));
        const int64_t t0 = Now(CLOCK_MONOTONIC);
        o.KivOutProcPlaySamples(block.data(), kFrames, 2, AUDIO_FORMAT_PCM_16_BIT);
        times[static_cast<size_t>(b)] = Now(CLOCK_MONOTONIC) - t0;
        benchmark::DoNotOptimize(block.data());
    }
}

// Sorts `times` and returns the value at fraction q (0..1) of the way.
double Quantile(std::vector<int64_t>& times, double q) {
    const size_t at = std::min(times.size() - 1, static_cast<size_t>(q * (times.size() - 1) + 0.5));
    std::nth_element(times.begin(), times.begin() + static_cast<ptrdiff_t>(at), times.end());
    return static_cast<double>(times[at]);
}

void ReportDistribution(benchmark::State& state, std::vector<int64_t>& times) {
    const double median = Quantile(times, 0.5);
    const double p99 = Quantile(times, 0.99);
    const double p999 = Quantile(times, 0.999);
    state.counters["blocks"] = static_cast<double>(times.size());
    state.counters["median_ns"] = median;
    state.counters["p99_ns"] = p99;
    state.counters["p999_ns"] = p999;
    state.counters["max_ns"] = static_cast<double>(*std::max_element(times.begin(), times.end()));
    state.counters["p999_per_median"] = p999 / median;
}

// 100,000 blocks on this thread, one every 20 us, while a parameter thread changes the situation
// (volume index, scene, orientation, fold state, device, headphone mode) every 50 us or so and
// reloads the configuration every 20 ms. The audio thread runs with real-time priority as on a
// device (counter fifo = 1; 0 where the system refused it). With argument 0 the instance runs
// without the stand-in detector, whose level measurement costs more in some situations than in
// others: that separates its share of the tail from the effect's own.
void BM_BlockTimesUnderParameterTrafficAndReloads(benchmark::State& state) {
    if (!UseSampleDevice(state, state.range(0) != 0)) {
        return;
    }
    std::unique_ptr<Orlune> o = MakeInstance();
    std::vector<int64_t> times;
    Switches switches{0, 0};
    bool realtime = false;
    std::atomic<int64_t> paramCalls{0}, reloads{0}, maxReloadNs{0};
    for (auto _ : state) {
        std::atomic<bool> done{false};
        std::thread traffic([&] {
            int64_t lastReload = Now(CLOCK_MONOTONIC);
            for (int n = 0; !done.load(std::memory_order_relaxed); ++n) {
                switch (n % 6) {
                    case 0:
                        o->KivParamsSetInt(kIdVolumeIndexMusic, n % 16);
                        break;
                    case 1:
                        o->KivParamsSetInt(kIdScene, n / 6 % 5);
                        break;
                    case 2:
                        o->KivParamsSetInt(kIdOrientation, n / 6 % 2);
                        break;
                    case 3:
                        o->KivParamsSetInt(kIdFoldState, n / 6 % 3);
                        break;
                    case 4:
                        o->KivParamsSetInt(kIdDeviceType,
                                           n / 60 % 2 == 0 ? 1 : 2);  // speaker, headset
                        break;
                    default:
                        o->KivParamsSetInt(kIdHpModeUi0, n / 6 % 3);
                        break;
                }
                paramCalls.fetch_add(1, std::memory_order_relaxed);
                const int64_t now = Now(CLOCK_MONOTONIC);
                if (now - lastReload >= 20000000) {
                    o->KivParamsSetInt(kIdReloadConfig, 1);
                    const int64_t took = Now(CLOCK_MONOTONIC) - now;
                    maxReloadNs.store(std::max(maxReloadNs.load(), took));
                    reloads.fetch_add(1, std::memory_order_relaxed);
                    lastReload = Now(CLOCK_MONOTONIC);
                }
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        });
        realtime = AudioPriority();
        const Switches before = ThreadSwitches();
        RunBlocks(*o, kTrafficBlocks, times, kTrafficPeriodNs);
        const Switches after = ThreadSwitches();
        NormalPriority();
        switches = Switches{after.slept - before.slept, after.preempted - before.preempted};
        done = true;
        traffic.join();
    }
    ReportDistribution(state, times);
    state.counters["param_calls"] = static_cast<double>(paramCalls.load());
    state.counters["reloads"] = static_cast<double>(reloads.load());
    state.counters["max_reload_ns"] = static_cast<double>(maxReloadNs.load());
    state.counters["slept"] = static_cast<double>(switches.slept);
    state.counters["fifo"] = realtime ? 1 : 0;
    state.counters["preempted"] = static_cast<double>(switches.preempted);
}
BENCHMARK(BM_BlockTimesUnderParameterTrafficAndReloads)
        ->ArgName("detector")
        ->Arg(1)
        ->Arg(0)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);

// N instances, each on its own thread, 25,000 blocks each. per_block_cpu_ns is the thread CPU
// time per block, averaged over the instances: the cost of one instance's block, which should
// not grow with N. The wall-time percentiles include the waits for the machine's two cores.
void BM_InstancesOnOwnThreads(benchmark::State& state) {
    if (!UseSampleDevice(state)) {
        return;
    }
    const int n = static_cast<int>(state.range(0));
    std::vector<std::unique_ptr<Orlune>> instances;
    for (int i = 0; i < n; ++i) {
        instances.push_back(MakeInstance());
    }
    std::vector<std::vector<int64_t>> times(static_cast<size_t>(n));
    std::vector<int64_t> cpuNs(static_cast<size_t>(n));
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int i = 0; i < n; ++i) {
            threads.emplace_back([&, i] {
                const int64_t t0 = Now(CLOCK_THREAD_CPUTIME_ID);
                RunBlocks(*instances[static_cast<size_t>(i)], kBlocksPerInstance,
                          times[static_cast<size_t>(i)]);
                cpuNs[static_cast<size_t>(i)] = Now(CLOCK_THREAD_CPUTIME_ID) - t0;
            });
        }
        for (std::thread& t : threads) {
            t.join();
        }
    }
    std::vector<int64_t> all;
    double cpu = 0;
    for (int i = 0; i < n; ++i) {
        all.insert(all.end(), times[static_cast<size_t>(i)].begin(),
                   times[static_cast<size_t>(i)].end());
        cpu += static_cast<double>(cpuNs[static_cast<size_t>(i)]) / kBlocksPerInstance;
    }
    state.counters["per_block_cpu_ns"] = cpu / n;
    ReportDistribution(state, all);
}
BENCHMARK(BM_InstancesOnOwnThreads)
        ->Arg(1)
        ->Arg(2)
        ->Arg(4)
        ->Arg(8)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();

}  // namespace
