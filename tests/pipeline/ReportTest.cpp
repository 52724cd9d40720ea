// What a run reports: algorithm errors (logged per frame, reported as an event once), the
// status line of every 250th block, and PCM dumps: four headerless 32-bit files per enable,
// numbered by the process-wide count.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

TEST(PipelineReportTest, ApplyErrorIsLoggedPerFrameAndReportedOnce) {
    const struct {
        int channels, code;
        std::string line;
    } kCases[] = {{2, -5, "KivApply: Orlune algorithm apply failed, ret = -5"},
                  {8, -7, "Quex_KIV_Apply result is -7"}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.line);
        LogCapture log;
        PipelineHost host;
        // The stand-in's Apply returns the code.
        setenv("ORLUNE_STANDIN_FAIL", ("Apply=" + std::to_string(c.code)).c_str(), 1);
        const std::vector<int32_t> out =
                host.Run16(Noise32(480 * 5, c.channels, 4), 480, c.channels, 2);
        unsetenv("ORLUNE_STANDIN_FAIL");
        EXPECT_EQ(log.Count(c.line, "orlune_mobile", ANDROID_LOG_ERROR), 5) << log.Dump();
        EXPECT_EQ(log.Count("report 916120002 EFFECTNAME=ORLUNE ALGOERRORCODE=" +
                                    std::to_string(c.code) + ".000000 ALGOERRORTIMES=1.000000",
                            "tova_view"),
                  1);
        // A failed frame leaves its place in the output as it was: silence.
        EXPECT_EQ(out, std::vector<int32_t>(480 * 5 * 2, 0));
    }
}

TEST(PipelineReportTest, StatusLineComesWithTheBlockAfterEvery250) {
    LogCapture log;
    PipelineHost host;
    auto run = [&](int blocks) {
        host.Run16(Noise32(240 * blocks, 2, 1), 240, 2, 2);
        return log.CountContaining("KivOutProcPlaySamples currentStatus");
    };
    const std::string status = "KivOutProcPlaySamples currentStatus = enabled, enableCount is ";
    const std::string rest = " ,countchans is 2, samples:240, format:1";
    EXPECT_EQ(run(250), 0);
    EXPECT_EQ(run(1), 1);
    EXPECT_EQ(log.Count(status + "250" + rest, "orlune_mobile", ANDROID_LOG_INFO), 1) << log.Dump();
    EXPECT_EQ(run(249), 1);
    // The enable count runs on across periods (250 + 249), the block count starts again.
    EXPECT_EQ(run(1), 2);
    EXPECT_EQ(log.Count(status + "499" + rest), 1) << log.Dump();
}

// The stream volumes belong to the report records of the current set-up: a set-up that
// creates new records (here the region switch) starts them again, so the same value is a
// change once more.
TEST(PipelineReportTest, StreamVolumesStartAgainWithTheRecordsOfANewSetUp) {
    LogCapture log;
    PipelineHost host;
    host.Effect()->KivParamsSetFloat(kIdTypeVolume, 0.5f);
    host.Effect()->KivParamsSetFloat(kIdTypeVolume, 0.5f);
    host.Effect()->KivParamsSetInt(kIdMusicRegion, 1);
    EXPECT_EQ(log.CountContaining("InitKiv, tid:"), 2);     // set-up ran again
    host.Effect()->KivParamsSetFloat(kIdTypeVolume, 0.0f);  // what fresh records hold: no change
    host.Effect()->KivParamsSetFloat(kIdTypeVolume, 0.5f);
    EXPECT_EQ(log.Count("typeVolume = 0.500000", "orlune_mobile", ANDROID_LOG_INFO), 2)
            << log.Dump();
    EXPECT_EQ(log.CountContaining("Volume = 0.000000"), 0);
}

const char* const kStems[] = {"brisel_handle_in", "brisel_algo_in", "brisel_algo_out",
                              "brisel_handle_out"};

// The samples of tap `tap` (0 handle_in to 3 handle_out) of the dump numbered `number`.
std::vector<int32_t> Tap(const PipelineHost& host, int tap, int number) {
    const std::string path = host.Root().HostPath("/data/audio_debug/" + std::string(kStems[tap]) +
                                                  "_" + std::to_string(number) + ".pcm");
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << path;
    std::vector<int32_t> samples;
    for (int32_t s; in.read(reinterpret_cast<char*>(&s), sizeof s);) {
        samples.push_back(s);
    }
    return samples;
}

TEST(PipelineDumpTest, EachTapHoldsWhatPassedItsPointInFilesNumberedByTheEnableCount) {
    LogCapture log;
    PipelineHost host({false, 1, 2});  // off: no fade-in, every tap is exactly predictable
    const std::vector<int32_t> in = As16(Noise32(240 * 2, 2, 3));
    const std::vector<int32_t> none;

    // Without the directory the enable fails and gives its number back.
    host.Effect()->KivParamsSetInt(kIdPcmDump, 1);
    EXPECT_EQ(log.CountContaining("fopen failed", "orlune_mobile"), 1) << log.Dump();
    host.Effect()->KivParamsSetInt(kIdPcmDump, 0);

    host.Root().WriteFile("/data/audio_debug/.keep", "");
    host.Effect()->KivParamsSetInt(kIdPcmDump, 1);
    host.Effect()->KivParamsSetInt(kIdPcmDump, 1);  // a repeat changes nothing
    host.Run16(FrameSlice(in, 2, 0, 240), 240, 2, 2);
    host.Effect()->KivParamsSetInt(kIdPcmDump, 0);  // closes the files
    // A quarter frame: the block in and out, but nothing reached the algorithm yet.
    EXPECT_EQ(Tap(host, 0, 1), FrameSlice(in, 2, 0, 240));
    EXPECT_EQ(Tap(host, 1, 1), none);
    EXPECT_EQ(Tap(host, 2, 1), none);
    EXPECT_EQ(Tap(host, 3, 1), std::vector<int32_t>(240 * 2, 0));

    // Disabling gave the number back: the next dump writes files 1 afresh, and an instance
    // set up while it runs starts its own, numbered 2.
    host.Effect()->KivParamsSetInt(kIdPcmDump, 1);
    HostLibrary library;
    HostOrlune* second = library.Create();
    second->KivOutProcPlayInit();
    EXPECT_EQ(log.Count("EnableAudioDump 1717: OrluneAudioDump enabled."), 3);
    // This block completes one algorithm frame.
    const std::vector<int32_t> out = host.Run16(FrameSlice(in, 2, 240, 240), 240, 2, 2);
    host.Effect()->KivParamsSetInt(kIdPcmDump, 0);
    EXPECT_EQ(Tap(host, 0, 1), FrameSlice(in, 2, 240, 240));
    // The algorithm got the frame behind the pop eliminator's 48-frame delay line.
    const std::vector<int32_t> algoIn = Tap(host, 1, 1);
    EXPECT_EQ(algoIn, FrameSlice(Delayed(in, kPopDelayFrames, 2), 2, 0, 480));
    EXPECT_EQ(Tap(host, 2, 1), Standin(algoIn, 2, false));
    EXPECT_EQ(Tap(host, 3, 1), out);
    second->KivParamsSetInt(kIdPcmDump, 0);
    for (int tap = 0; tap < 4; ++tap) {
        EXPECT_EQ(Tap(host, tap, 2), none) << kStems[tap];
    }
    library.Delete(second);
}

// Dump files of this process that are open now.
int OpenDumpFiles() {
    int open = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string target = std::filesystem::read_symlink(entry.path(), error).string();
        open += target.find("/data/audio_debug/brisel_") != std::string::npos;
    }
    return open;
}

// Deleting an instance whose dump runs closes its files, complete. It is not a request to stop
// dumping: the count of enable requests stays, so the next set-up starts a dump, numbered on.
TEST(PipelineDumpTest, DeletingAnInstanceClosesItsFilesAndLeavesTheCount) {
    LogCapture log;
    PipelineHost host({false, 1, 2});
    host.Root().WriteFile("/data/audio_debug/.keep", "");
    HostLibrary library;
    HostOrlune* first = library.Create();
    first->KivOutProcPlayInit();
    first->KivParamsSetInt(kIdPcmDump, 1);
    std::vector<int16_t> block(240 * 2, 1000);
    for (int i = 0; i < 10; ++i) {
        first->KivOutProcPlaySamples(block.data(), 240, 2, kS16);
    }
    EXPECT_EQ(OpenDumpFiles(), 4);
    library.Delete(first);
    EXPECT_EQ(OpenDumpFiles(), 0);
    EXPECT_EQ(Tap(host, 0, 1).size(), 10u * 240 * 2);  // every block's input, flushed

    HostOrlune* second = library.Create();
    second->KivOutProcPlayInit();
    EXPECT_EQ(OpenDumpFiles(), 4);
    second->KivParamsSetInt(kIdPcmDump, 0);
    EXPECT_EQ(OpenDumpFiles(), 0);
    EXPECT_EQ(Tap(host, 3, 2), std::vector<int32_t>());  // numbered 2, and closed empty
    library.Delete(second);
}

}  // namespace
