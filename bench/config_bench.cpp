// Loading the configuration of the generated sample device: binary tables, both XML files and
// the table pointers, as the effect's first set-up does. Log lines are formatted but dropped,
// so the figure is the readers' own cost, not the terminal's. Goal: at most 10 ms for the
// whole load.
#include <stdlib.h>
#include <sys/stat.h>

#include <string>

#include <android/log.h>
#include <benchmark/benchmark.h>

#include "effect/orlune.h"
#include "tools/config/LoadOrder.h"

namespace {

const std::string kSampleDevice = std::string(ORLUNE_BINARY_DIR) + "/sample-device";

void DropLine(const __android_logger_data*, const char*) {}

// Points the device root at the sample device; false (and the benchmark skipped) when it has not
// been generated.
bool UseSampleDevice(benchmark::State& state) {
    struct stat st;
    if (stat((kSampleDevice + "/odm/etc/kiv/kiv_config.xml").c_str(), &st) != 0) {
        state.SkipWithError("build the sample_device target first");
        return false;
    }
    setenv("ORLUNE_DEVICE_ROOT", kSampleDevice.c_str(), 1);
    setenv("ORLUNE_PROPERTIES", (kSampleDevice + "/sample.properties").c_str(), 1);
    __android_log_set_logger(DropLine);
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    return true;
}

void BM_LoadSampleConfiguration(benchmark::State& state) {
    if (!UseSampleDevice(state)) {
        return;
    }
    for (auto _ : state) {
        ResetConfigurationTables();
        LoadAsFirstInstance(false);
        benchmark::DoNotOptimize(PublishedTables().gVituralMapTable.size());
    }
    state.counters["virtual_ids"] = static_cast<double>(PublishedTables().gVituralMapTable.size());
}
BENCHMARK(BM_LoadSampleConfiguration)->Unit(benchmark::kMillisecond);

void BM_ReadMainXml(benchmark::State& state) {
    if (!UseSampleDevice(state)) {
        return;
    }
    for (auto _ : state) {
        ConfigUpdate update;
        update.Tables().gRealMapTable.clear();
        update.Tables().gRealMapTableExt.clear();
        Orlune::KivReadConfigFromXML(false);
    }
    const ParamTableSet& tables = PublishedTables();
    state.counters["records"] =
            static_cast<double>(tables.gRealMapTable.size() + tables.gRealMapTableExt.size());
}
BENCHMARK(BM_ReadMainXml)->Unit(benchmark::kMillisecond);

void BM_ReadVirtualMapXml(benchmark::State& state) {
    if (!UseSampleDevice(state)) {
        return;
    }
    for (auto _ : state) {
        ConfigUpdate update;
        update.Tables().gVituralMapTable.clear();
        update.Tables().gHpMapTable.clear();
        Orlune::KivReadConfigTableFromXML(false);
    }
}
BENCHMARK(BM_ReadVirtualMapXml)->Unit(benchmark::kMillisecond);

void BM_ReadBinaryTables(benchmark::State& state) {
    if (!UseSampleDevice(state)) {
        return;
    }
    for (auto _ : state) {
        for (int step = 1; step <= 6; ++step) {  // the six table readers
            kConfigLoadSteps[step].run(false);
        }
    }
}
BENCHMARK(BM_ReadBinaryTables)->Unit(benchmark::kMillisecond);

}  // namespace
