// orlune-play: runs audio through the effect library the way the platform's audio path does,
// for listening, tuning checks and bug reports.
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "tools/play/EffectLoader.h"
#include "tools/play/EffectLog.h"
#include "tools/play/PlayOptions.h"
#include "tools/play/PlayReport.h"
#include "tools/play/PlaySession.h"
#include "tools/play/RunRecorder.h"

namespace {

// The stand-in detector's hook for watching its measurements, when it has one.
using LadObserve = void (*)(void (*)(void*, int, float, float), void*);

void DetectorMeasured(void* context, int output, float peakDbfs, float rmsDbfs) {
    static_cast<RunRecorder*>(context)->OnDetectorMeasure(output != 0, peakDbfs, rmsDbfs);
}

std::string Absolute(const std::string& path) {
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) != nullptr ? std::string(resolved) : path;
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The environment the effect's platform layer reads; must be set before the library loads.
bool PrepareEnvironment(PlayOptions* o, std::string* error) {
    if (!o->deviceRoot.empty()) {
        if (!IsDirectory(o->deviceRoot)) {
            *error = "device root " + o->deviceRoot + " is not a directory";
            return false;
        }
        o->deviceRoot = Absolute(o->deviceRoot);
        setenv("ORLUNE_DEVICE_ROOT", o->deviceRoot.c_str(), 1);
    }
    // Writing the output would empty the input first: compare the files, not the names, so
    // that a hard link or another spelling of the path is caught too.
    struct stat in;
    struct stat out;
    if (!o->input.empty() && !o->output.empty() && stat(o->input.c_str(), &in) == 0 &&
        stat(o->output.c_str(), &out) == 0 && in.st_dev == out.st_dev && in.st_ino == out.st_ino) {
        *error = "output " + o->output + " is the input file " + o->input;
        return false;
    }
    if (!o->properties.empty()) {
        // Never block on a FIFO, and never run silently without the properties asked for.
        const int fd = open(o->properties.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        struct stat st;
        const bool regular = fd >= 0 && fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
        const std::string why = fd < 0 ? strerror(errno) : "not a regular file";
        if (fd >= 0) {
            close(fd);
        }
        if (!regular) {
            *error = "cannot read --properties " + o->properties + ": " + why;
            return false;
        }
        o->properties = Absolute(o->properties);
        setenv("ORLUNE_PROPERTIES", o->properties.c_str(), 1);
    } else if (const char* env = getenv("ORLUNE_PROPERTIES")) {
        o->properties = env;
    }
    return true;
}

LoaderPaths PathsFor(const PlayOptions& o) {
    LoaderPaths paths = DefaultLoaderPaths();
    if (!o.effectLib.empty()) {
        paths.effectLib = o.effectLib;
    }
    if (o.noAlgo) {
        paths.algoLib.clear();
    } else if (!o.algoLib.empty()) {
        paths.algoLib = o.algoLib;
    }
    if (o.noDetect) {
        paths.detectLib.clear();
    } else if (!o.detectLib.empty()) {
        paths.detectLib = o.detectLib;
    }
    return paths;
}

void PrintAlgorithm(const EffectLogFacts& facts) {
    if (facts.bound) {
        printf("algorithm:        bound\n");
        printf("  compiler:       %s\n", facts.versions[0].c_str());
        printf("  release:        %s\n", facts.versions[1].c_str());
        printf("  release date:   %s\n", facts.versions[2].c_str());
    } else {
        printf("algorithm:        not bound: every block passes through untouched\n");
    }
}

void PrintProblems(const EffectLogFacts& facts) {
    if (facts.problems.empty()) {
        return;
    }
    printf("warnings and errors logged (first %zu):\n", facts.problems.size());
    for (const std::string& line : facts.problems) {
        printf("  %s\n", line.c_str());
    }
}

int RunInfo(const PlayOptions& o, const EffectLoader& loader, const LoaderPaths& paths) {
    PlayEffect* effect = loader.Create();
    if (effect == nullptr) {
        fprintf(stderr, "orlune-play: the library created no instance\n");
        return 3;
    }
    effect->KivOutProcPlayInit();
    const EffectLogFacts& facts = EffectLog::Facts();
    printf("effect library:   %s\n", Absolute(paths.effectLib).c_str());
    printf("algorithm lib:    %s\n",
           loader.AlgoLoaded().empty() ? "none preloaded" : Absolute(loader.AlgoLoaded()).c_str());
    printf("detector lib:     %s\n", loader.DetectLoaded().empty()
                                             ? "none preloaded"
                                             : Absolute(loader.DetectLoaded()).c_str());
    printf("device root:      %s\n", o.deviceRoot.empty() ? "(real root)" : o.deviceRoot.c_str());
    printf("properties:       %s\n", o.properties.empty() ? "(none)" : o.properties.c_str());
    PrintAlgorithm(facts);
    PrintProblems(facts);
    loader.Delete(effect);
    return 0;
}

// Dump files of the run: the highest-numbered set in the dump directory.
void PrintDumps(const std::string& root) {
    const std::string dir = root + "/data/audio_debug";
    DIR* d = opendir(dir.c_str());
    if (d == nullptr) {
        return;
    }
    unsigned best = 0;
    while (const dirent* e = readdir(d)) {
        // brisel_<stem>_<number>.pcm
        const std::string name = e->d_name;
        const size_t underscore = name.rfind('_');
        if (name.rfind("brisel_", 0) != 0 || underscore == std::string::npos || name.size() < 4 ||
            name.compare(name.size() - 4, 4, ".pcm") != 0) {
            continue;
        }
        const unsigned n =
                static_cast<unsigned>(strtoul(name.c_str() + underscore + 1, nullptr, 10));
        best = n > best ? n : best;
    }
    closedir(d);
    if (best == 0) {
        return;
    }
    printf("dump files (headerless 32-bit PCM):\n");
    for (const char* stem : {"handle_in", "algo_in", "algo_out", "handle_out"}) {
        const std::string path = dir + "/brisel_" + stem + "_" + std::to_string(best) + ".pcm";
        struct stat st;
        if (stat(path.c_str(), &st) == 0) {
            printf("  %s  %lld bytes\n", path.c_str(), static_cast<long long>(st.st_size));
        }
    }
}

void PrintSummary(const PlayOptions& o, const PlayResult& r, const EffectLogFacts& facts) {
    const double seconds = static_cast<double>(r.inputFrames) / r.rate;
    printf("%s -> %s\n", o.input.c_str(), o.output.c_str());
    printf("input:            %.3f s, %d Hz, %d channel(s) in the file\n", seconds, r.rate,
           r.fileChannels);
    printf("host blocks:      %lld of %d frames, %s, %d channel layout; output file %d "
           "channels\n",
           static_cast<long long>(r.blocks), o.block, HostFormatName(o.format), o.channels,
           r.outChannels);
    PrintAlgorithm(facts);
    if (facts.bound) {
        int errors = 0;
        for (const auto& e : facts.applyErrors) {
            errors += e.second;
        }
        // The effect logs no line per algorithm run; every 480 frames fed make one run.
        printf("algorithm runs:   %lld (one per 480 frames fed), errors: %d",
               static_cast<long long>(r.framesFed / 480), errors);
        for (const auto& e : facts.applyErrors) {
            printf("  [code %d x %d]", e.first, e.second);
        }
        printf("\n");
        printf("initialisations:  %d\n", facts.initialisations);
    }
    printf("latency:          %d frames (%.1f ms)%s", r.nominalLatency,
           1000.0 * r.nominalLatency / r.rate, o.compensate ? ", removed from the output" : "");
    if (r.measuredLatency >= 0) {
        printf("; first sound in the output %lld frames after the input's",
               static_cast<long long>(r.measuredLatency));
    }
    printf("\n");
    printf("events reported:  %zu\n", facts.events.size());
    for (const std::string& e : facts.events) {
        printf("  %s\n", e.c_str());
    }
    printf("tuning ids used:%s\n", facts.tunings.empty() ? "  none logged" : "");
    for (const std::string& t : facts.tunings) {
        printf("  %s\n", t.c_str());
    }
    if (facts.missingTunings > 0) {
        printf("  %d look-up(s) found no record for the virtual id; the previous tuning stayed "
               "in force\n",
               facts.missingTunings);
    }
    printf("parameters:\n");
    for (const std::string& a : r.applied) {
        printf("  %s\n", a.c_str());
    }
    for (const std::string& refusal : facts.refusals) {
        printf("refused:          %s\n", refusal.c_str());
    }
    const double rtf = seconds > 0.0 ? r.processSeconds / seconds : 0.0;
    printf("processing:       %.1f ms in the effect, real-time factor %.4f",
           1000.0 * r.processSeconds, rtf);
    if (rtf > 0.0) {
        printf(" (%.0fx faster than real time)", 1.0 / rtf);
    }
    printf("\n");
    for (const std::string& n : r.notes) {
        printf("note:             %s\n", n.c_str());
    }
    if (o.dump && !o.deviceRoot.empty()) {
        PrintDumps(o.deviceRoot);
    }
    PrintProblems(facts);
}

}  // namespace

int main(int argc, char** argv) {
    PlayOptions o;
    std::string error;
    if (!ParsePlayOptions(argc, argv, &o, &error)) {
        fprintf(stderr, "orlune-play: %s\n%s", error.c_str(), kPlayUsage);
        return 1;
    }
    if (o.help) {
        printf("%s", kPlayUsage);
        return 0;
    }
    if (!o.info && o.deviceRoot.empty()) {
        fprintf(stderr, "orlune-play: --device-root is required to process audio\n%s", kPlayUsage);
        return 1;
    }
    if (o.dump && o.deviceRoot.empty()) {
        fprintf(stderr, "orlune-play: --dump needs --device-root\n");
        return 1;
    }
    if (!PrepareEnvironment(&o, &error)) {
        fprintf(stderr, "orlune-play: %s\n", error.c_str());
        return 1;
    }
    EffectLog::Install(o.log);

    const LoaderPaths paths = PathsFor(o);
    EffectLoader loader;
    if (!loader.Open(paths, &error)) {
        fprintf(stderr, "orlune-play: %s\n", error.c_str());
        return 3;
    }
    if (o.info) {
        return RunInfo(o, loader, paths);
    }

    // The report's recorder listens from the set-up on, which logs the UI type.
    std::unique_ptr<RunRecorder> recorder;
    LadObserve observe = nullptr;
    if (!o.report.empty()) {
        recorder = std::make_unique<RunRecorder>();
        recorder->Listen();
        observe = reinterpret_cast<LadObserve>(loader.DetectSymbol("LadStandinObserve"));
        if (observe != nullptr) {
            observe(DetectorMeasured, recorder.get());
            recorder->SetDetectorObservable();
        }
    }
    PlayEffect* effect = loader.Create();
    if (effect == nullptr) {
        fprintf(stderr, "orlune-play: the library created no instance\n");
        return 3;
    }
    effect->KivOutProcPlayInit();
    PlayResult result;
    const bool ok = RunPlay(o, effect, &result, &error, recorder.get());
    loader.Delete(effect);
    if (observe != nullptr) {
        observe(nullptr, nullptr);
    }
    if (!ok) {
        fprintf(stderr, "orlune-play: %s\n", error.c_str());
        return 2;
    }
    PrintSummary(o, result, EffectLog::Facts());
    if (recorder != nullptr) {
        const RunTrace trace = recorder->Finish(result.framesFed);
        const PlayReportInput input{
                &o,
                &result,
                &EffectLog::Facts(),
                &trace,
                Absolute(paths.effectLib),
                loader.AlgoLoaded().empty() ? "" : Absolute(loader.AlgoLoaded()),
                loader.DetectLoaded().empty() ? "" : Absolute(loader.DetectLoaded())};
        if (!WritePlayReport(o.report, input, &error)) {
            fprintf(stderr, "orlune-play: %s\n", error.c_str());
            return 2;
        }
    }
    return 0;
}
