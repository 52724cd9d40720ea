// orlune-play's report data from scripted runs of the shipped library in this process, and the
// page's size bound on a trace far busier than any run.
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <tuple>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/BuiltProgram.h"
#include "RunProgram.h"
#include "tools/play/EffectLoader.h"
#include "tools/play/EffectLog.h"
#include "tools/play/PlayReport.h"
#include "tools/play/PlaySession.h"
#include "tools/play/RunRecorder.h"

namespace {

const std::string kSample = std::string(ORLUNE_BINARY_DIR) + "/sample-device";

using LadObserve = void (*)(void (*)(void*, int, float, float), void*);

void Measured(void* recorder, int output, float peak, float rms) {
    static_cast<RunRecorder*>(recorder)->OnDetectorMeasure(output != 0, peak, rms);
}

ParamEvent At(double seconds, int id, int value) {
    return {seconds, seconds < 0, ParamEvent::INT, id, value, 0.0f, ""};
}

// Plays the bundled sample through the shipped library, as orlune-play does with --report.
RunTrace Play(int block, const std::vector<ParamEvent>& events) {
    setenv("ORLUNE_DEVICE_ROOT", kSample.c_str(), 1);
    setenv("ORLUNE_PROPERTIES", (kSample + "/sample.properties").c_str(), 1);
    static EffectLoader loader;
    static std::string error;
    static const bool opened =
            (EffectLog::Install(false), loader.Open(DefaultLoaderPaths(), &error));
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

using Segments = std::vector<std::tuple<int64_t, int64_t, std::string>>;  // start, end, label

TEST(PlayReport, TimelineFollowsTheScriptedParametersAndLoggedTunings) {
    // Loudspeaker MUSIC, a swap at 0.5 s, GAME at 1 s, the wired headset at 2 s; the detector
    // measures on the loudspeaker after the stream start.
    const RunTrace t = Play(480, {At(-1, 51, 3), At(0.5, 5, 1), At(1.0, 35, 1), At(2.0, 12, 2)});
    const int64_t end = t.span;
    const std::map<int, Segments> rows = {
            {ROW_DEVICE, {{0, 96000, "loudspeaker"}, {96000, end, "wired headset"}}},
            {ROW_FOLD, {{0, 96000, "FULL"}}},
            {ROW_SCENE, {{0, 48000, "MUSIC"}, {48000, 96000, "GAME"}}},
            {ROW_LEVEL, {{0, end, "ONE"}}},
            {ROW_HP_MODE, {{96000, end, "HP_3D_OFF / DEFAULT_MODE"}}},
            {ROW_TUNING,
             {{0, 48000, "4001: 1003/1200"},
              {48000, 96000, "4021: 1017/1202"},
              {96000, end, "41001: 3003/3600"}}},
            // 9600 frames of cross-fade from the block at 0.5 s.
            {ROW_SWAP,
             {{24000, 33600, "cross-fade"},
              {33600, 96000, "left/right swapped"},
              {96000, end, "left/right swapped (not heard: needs the loudspeaker, effect on)"}}},
            {ROW_GUARD, {}},
    };
    for (const auto& [row, want] : rows) {
        Segments got;
        for (const Segment& s : t.rows[row].segments) {
            got.emplace_back(s.start, s.end, s.label);
        }
        EXPECT_EQ(want, got) << t.rows[row].name;
    }
    ASSERT_EQ(4u, t.params.size() - 3);  // after the default 0=1, 32=1, 12=1
    EXPECT_EQ("12=2", t.params.back().text);
    // One input and one output measurement per algorithm frame on the loudspeaker.
    EXPECT_EQ(96000 / 480, t.detectorFrames);
}

TEST(PlayReport, EdgesSitAtTheSamplesHardStartsAndStopsAtAnyBlockSize) {
    // The sample's tones start at 0.25 s and stop at 2.75 s on both channels.
    for (int block : {480, 1440, 256, 4800}) {
        SCOPED_TRACE(block);
        const RunTrace t = Play(block, {});
        ASSERT_EQ(4u, t.edges.size());
        for (size_t i = 0; i < 4; ++i) {
            const EdgeMark& e = t.edges[i];
            EXPECT_EQ(std::make_tuple(i < 2 ? 12000 : 132000, static_cast<int>(i % 2), i < 2, true),
                      std::make_tuple(e.frame, e.channel, e.rising, e.faded))
                    << i;
            // The zoomed input shows the step at the edge.
            ASSERT_EQ(static_cast<size_t>(RunTrace::kZoomLength), e.before.size());
            EXPECT_NE(e.before[RunTrace::kZoomBefore] == 0.0f,
                      e.before[RunTrace::kZoomBefore - 1] == 0.0f)
                    << i;
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
    const std::string copy = dir + "/in.wav", out = " " + dir + "/o.wav";
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
            {"--properties " + dir + "/fifo.properties " + copy + out, 1, "not a regular file"},
            {props + "--block 7201 " + copy + out, 1, "from 1 to 7200"},
            {props + "--at 999:12=2 " + copy + out, 0,
             "at 999.00 s: 12=2 lies past the end of the input"},
    };
    for (const auto& [args, status, text] : cases) {
        std::string said;
        EXPECT_EQ(status, Shell(program + args, &said, true)) << args << "\n" << said;
        EXPECT_NE(std::string::npos, said.find(text)) << args << "\n" << said;
    }
    EXPECT_EQ(std::filesystem::file_size(input), std::filesystem::file_size(copy));
    std::filesystem::remove_all(dir);
}

}  // namespace
