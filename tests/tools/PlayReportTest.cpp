// orlune-play's report data from scripted runs of the shipped library in this process, and the
// page's size bound on a trace far busier than any run.
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <tuple>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/BuiltProgram.h"
#include "tools/play/EffectLoader.h"
#include "tools/play/EffectLog.h"
#include "tools/play/PlayReport.h"
#include "tools/play/PlaySession.h"
#include "tools/play/RunRecorder.h"

namespace {

const std::string kSample = std::string(ORLUNE_BINARY_DIR) + "/sample-device";

using LadObserve = void (*)(void (*)(void*, int, float, float), void*);

void Measured(void* context, int output, float peak, float rms) {
    static_cast<RunRecorder*>(context)->OnDetectorMeasure(output != 0, peak, rms);
}

ParamEvent At(double seconds, int id, int value) {
    ParamEvent e;
    e.seconds = seconds;
    e.atStart = seconds < 0;
    e.id = id;
    e.intValue = value;
    return e;
}

// Plays the bundled sample through the shipped library, as orlune-play does with --report.
RunTrace Play(int block, const std::vector<ParamEvent>& events) {
    setenv("ORLUNE_DEVICE_ROOT", kSample.c_str(), 1);
    setenv("ORLUNE_PROPERTIES", (kSample + "/sample.properties").c_str(), 1);
    static EffectLoader loader;
    static bool opened = false;
    std::string error;
    if (!opened) {
        EffectLog::Install(false);
        opened = loader.Open(DefaultLoaderPaths(), &error);
    }
    EXPECT_TRUE(opened) << error;
    PlayOptions o;
    o.deviceRoot = kSample;
    o.properties = kSample + "/sample.properties";
    o.input = std::string(ORLUNE_BINARY_DIR) + "/sample-input.wav";
    o.output = testing::TempDir() + "/report-test-out.wav";
    o.block = block;
    o.progress = false;
    o.events = events;
    RunRecorder recorder;
    recorder.Listen();
    const auto observe = reinterpret_cast<LadObserve>(loader.DetectSymbol("LadStandinObserve"));
    if (observe != nullptr) {
        observe(Measured, &recorder);
        recorder.SetDetectorObservable();
    }
    PlayEffect* effect = loader.Create();
    effect->KivOutProcPlayInit();
    PlayResult result;
    EXPECT_TRUE(RunPlay(o, effect, &result, &error, &recorder)) << error;
    loader.Delete(effect);
    if (observe != nullptr) {
        observe(nullptr, nullptr);
    }
    unlink(o.output.c_str());
    return recorder.Finish(result.framesFed);
}

struct Expected {
    int64_t start;
    int64_t end;  // -1: the run's end
    std::string label;
};

TEST(PlayReport, TimelineFollowsTheScriptedParametersAndLoggedTunings) {
    // Loudspeaker MUSIC, a swap at 0.5 s, GAME at 1 s, the wired headset at 2 s; the detector
    // measures on the loudspeaker after the stream start.
    const RunTrace t = Play(480, {At(-1, 51, 3), At(0.5, 5, 1), At(1.0, 35, 1), At(2.0, 12, 2)});
    const std::map<int, std::vector<Expected>> rows = {
            {ROW_DEVICE, {{0, 96000, "loudspeaker"}, {96000, -1, "wired headset"}}},
            {ROW_FOLD, {{0, 96000, "FULL"}}},
            {ROW_SCENE, {{0, 48000, "MUSIC"}, {48000, 96000, "GAME"}}},
            {ROW_LEVEL, {{0, -1, "ONE"}}},
            {ROW_HP_MODE, {{96000, -1, "HP_3D_OFF / DEFAULT_MODE"}}},
            {ROW_TUNING,
             {{0, 48000, "4001: 1003/1200"},
              {48000, 96000, "4021: 1017/1202"},
              {96000, -1, "41001: 3003/3600"}}},
            // 9600 frames of cross-fade from the block at 0.5 s.
            {ROW_SWAP,
             {{24000, 33600, "cross-fade"},
              {33600, 96000, "left/right swapped"},
              {96000, -1, "left/right swapped (not heard: needs the loudspeaker, effect on)"}}},
            {ROW_GUARD, {}},
    };
    for (const auto& row : rows) {
        const std::vector<Segment>& got = t.rows[row.first].segments;
        ASSERT_EQ(row.second.size(), got.size()) << t.rows[row.first].name;
        for (size_t i = 0; i < got.size(); ++i) {
            const Expected& e = row.second[i];
            EXPECT_EQ(e.label, got[i].label) << t.rows[row.first].name;
            EXPECT_EQ(e.start, got[i].start) << got[i].label;
            EXPECT_EQ(e.end < 0 ? t.rows[ROW_DEVICE].segments.back().end : e.end, got[i].end)
                    << got[i].label;
        }
    }
    ASSERT_EQ(4u, t.params.size() - 3);  // after the default 0=1, 32=1, 12=1
    EXPECT_EQ(24000, t.params[4].frame);
    EXPECT_EQ("12=2", t.params.back().text);
    // One input and one output measurement per algorithm frame on the loudspeaker.
    EXPECT_EQ(96000 / 480, t.detectorFrames);
}

TEST(PlayReport, EdgesSitAtTheSamplesHardStartsAndStopsAtAnyBlockSize) {
    // The sample's tones start at 0.25 s and stop at 2.75 s on both channels.
    for (int block : {480, 1440, 256, 4800}) {
        const RunTrace t = Play(block, {});
        ASSERT_EQ(4u, t.edges.size()) << block;
        for (size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(i < 2 ? 12000 : 132000, t.edges[i].frame) << block << " edge " << i;
            EXPECT_EQ(static_cast<int>(i % 2), t.edges[i].channel);
            EXPECT_EQ(i < 2, t.edges[i].rising);
            EXPECT_TRUE(t.edges[i].faded);
            // The zoomed input shows the step at the edge.
            ASSERT_EQ(static_cast<size_t>(RunTrace::kZoomLength), t.edges[i].before.size());
            const float at = t.edges[i].before[RunTrace::kZoomBefore];
            const float ahead = t.edges[i].before[RunTrace::kZoomBefore - 1];
            EXPECT_NE(at == 0.0f, ahead == 0.0f) << block << " edge " << i;
        }
    }
}

TEST(PlayReport, PageStaysUnderTwoMegabytesForAnyTrace) {
    // An hour in which every row changes on every block and every list is at its cap.
    RunTrace t;
    t.span = 3600LL * 48000;
    t.inWave.assign(2, MinMaxColumns(RunTrace::kColumns, t.span));
    t.outWave = t.inWave;
    for (MinMaxColumns* m : {&t.inPeak, &t.outRms, &t.detInPeak, &t.detOutRms}) {
        *m = MinMaxColumns(RunTrace::kColumns, t.span);
        m->AddSpan(0, t.span, -12.345678f);
    }
    t.detectorObservable = t.detectorLoaded = true;
    TimelineBuilder timeline;
    for (int64_t f = 0; f < t.span; f += 480) {
        for (int r = 0; r < ROW_COUNT; ++r) {
            timeline.Set(r, f, "a long label that changes on every block " + std::to_string(f % 3),
                         f % 960 == 0);
        }
    }
    timeline.Finish(t.span);
    t.rows = timeline.Rows();
    const std::string longText(3000, 'x');
    for (size_t i = 0; i < RunTrace::kMaxMarks; ++i) {  // spread, so no two share a marker
        for (auto* marks : {&t.params, &t.events, &t.errors, &t.loud}) {
            marks->push_back({static_cast<int64_t>(i) * t.span / 4000, longText});
        }
    }
    t.errorCount = t.loudCount = RunTrace::kMaxMarks * 10;
    EdgeMark e;
    e.before.assign(RunTrace::kZoomLength, -0.123456f);
    e.after.assign(RunTrace::kZoomLength, 0.654321f);
    for (int64_t i = 0; i < 100000; ++i) {
        e.frame = i * (t.span / 100000);
        t.edges.push_back(e);
    }
    PlayOptions o;
    o.input = std::string(4000, 'i');
    PlayResult r;
    r.applied.assign(100000, "at 1234.56 s: 12=2");
    EffectLogFacts facts;
    facts.problems.assign(20, std::string(3000, 'p'));
    facts.events.assign(100000, longText);
    const std::string page = PlayReportPage({&o, &r, &facts, &t, "", "", ""});
    EXPECT_LT(page.size(), 2u * 1024 * 1024);
    EXPECT_GT(page.size(), 500u * 1024);  // the trace did fill the page
}

// The command line protects its user: bad paths and bounds are refused with status 1 before any
// audio is touched, and what the run cannot honour is said.
TEST(PlayCommandLine, RefusesWhatWouldHarmAndSaysWhatIsLost) {
    const std::string dir = testing::TempDir() + "/play-cli";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const std::string input = std::string(ORLUNE_BINARY_DIR) + "/sample-input.wav";
    const std::string copy = dir + "/in.wav";
    std::filesystem::copy_file(input, copy);
    std::filesystem::create_hard_link(copy, dir + "/link.wav");
    ASSERT_EQ(0, mkfifo((dir + "/fifo.properties").c_str(), 0644));
    const std::string program =
            "timeout -k 2 120 " +
            BuiltProgramCommand(std::string(ORLUNE_BINARY_DIR) + "/bin/orlune-play") +
            " --device-root " + kSample + " ";
    const std::string props = " --properties " + kSample + "/sample.properties ";
    // Arguments, exit status, a text of the output.
    const std::tuple<std::string, int, const char*> cases[] = {
            {props + copy + " " + dir + "/link.wav", 1, "is the input file"},
            {props + copy + " " + dir + "/../play-cli/in.wav", 1, "is the input file"},
            {"--properties " + dir + "/none " + copy + " " + dir + "/o.wav", 1,
             "cannot read --properties"},
            {"--properties " + dir + "/fifo.properties " + copy + " " + dir + "/o.wav", 1,
             "not a regular file"},
            {props + "--block 7201 " + copy + " " + dir + "/o.wav", 1, "from 1 to 7200"},
            {props + "--at 999:12=2 " + copy + " " + dir + "/o.wav", 0,
             "at 999.00 s: 12=2 lies past the end of the input"},
    };
    for (const auto& [args, status, text] : cases) {
        SCOPED_TRACE(args);
        FILE* pipe = popen((program + args + " 2>&1").c_str(), "r");
        ASSERT_NE(nullptr, pipe);
        std::string out;
        char buf[4096];
        for (size_t n; (n = fread(buf, 1, sizeof(buf), pipe)) > 0;) {
            out.append(buf, n);
        }
        const int exit = pclose(pipe);
        EXPECT_EQ(status, WIFEXITED(exit) ? WEXITSTATUS(exit) : -1) << out;
        EXPECT_NE(std::string::npos, out.find(text)) << out;
    }
    EXPECT_EQ(std::filesystem::file_size(input), std::filesystem::file_size(copy));
    std::filesystem::remove_all(dir);
}

}  // namespace
