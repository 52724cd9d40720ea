// PCM dumps: four headerless 32-bit files per enable, numbered by the process-wide count.
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/pipeline/PipelineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

constexpr audio_format_t kS16 = AUDIO_FORMAT_PCM_16_BIT;
const char* const kStems[] = {"brisel_handle_in", "brisel_algo_in", "brisel_algo_out",
                              "brisel_handle_out"};

std::string DumpPath(const PipelineHost& host, const char* stem, int number) {
    return host.Root().HostPath("/data/audio_debug/" + std::string(stem) + "_" +
                                std::to_string(number) + ".pcm");
}

long FileSize(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<long>(st.st_size) : -1;
}

std::vector<int32_t> ReadPcm(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<int32_t> samples(bytes.size() / 4);
    memcpy(samples.data(), bytes.data(), samples.size() * 4);
    return samples;
}

void MakeDumpDir(const PipelineHost& host) {
    host.Root().WriteFile("/data/audio_debug/.keep", "");
}

TEST(PipelineDumpTest, EachTapHoldsWhatPassedItsPoint) {
    LogCapture log;
    PipelineHost::Options options;
    options.enable = false;  // no fade-in at the start: every tap is exactly predictable
    PipelineHost host(options);
    MakeDumpDir(host);
    const std::vector<int32_t> in = Noise32(240 * 2, 2, 3);
    const std::vector<uint8_t> in16 = FromInt32(in, kS16);
    const std::vector<uint8_t> first(in16.begin(), in16.begin() + 240 * 4);
    const std::vector<uint8_t> second(in16.begin() + 240 * 4, in16.end());

    host.Effect()->KivParamsSetInt(100, 1);
    EXPECT_TRUE(log.Has("EnableAudioDump 1717: OrluneAudioDump enabled.")) << log.Dump();
    host.Run(first, 240, 2, kS16, 2);
    host.Effect()->KivParamsSetInt(100, 0);  // closes the files
    EXPECT_TRUE(log.Has("DisableAudioDump 1745: OrluneAudioDump disabled"));
    // A quarter frame: the block in and out, but nothing reached the algorithm yet.
    EXPECT_EQ(ReadPcm(DumpPath(host, kStems[0], 1)), To32(first, kS16));
    EXPECT_EQ(FileSize(DumpPath(host, kStems[1], 1)), 0);
    EXPECT_EQ(FileSize(DumpPath(host, kStems[2], 1)), 0);
    EXPECT_EQ(ReadPcm(DumpPath(host, kStems[3], 1)), std::vector<int32_t>(240 * 2, 0));

    // Disabling gave the number back: the next dump writes files 1 afresh. This block
    // completes one algorithm frame.
    host.Effect()->KivParamsSetInt(100, 1);
    const std::vector<uint8_t> out = host.Run(second, 240, 2, kS16, 2);
    host.Effect()->KivParamsSetInt(100, 0);
    EXPECT_EQ(ReadPcm(DumpPath(host, kStems[0], 1)), To32(second, kS16));
    const std::vector<int32_t> algoIn = ReadPcm(DumpPath(host, kStems[1], 1));
    ASSERT_EQ(algoIn.size(), 480u * 2);
    // The algorithm got the frame behind the pop eliminator's 48-frame delay line.
    EXPECT_EQ(FrameSlice(algoIn, 2, 0, 48), std::vector<int32_t>(48 * 2, 0));
    EXPECT_EQ(FrameSlice(algoIn, 2, 48, 432), FrameSlice(To32(in16, kS16), 2, 0, 432));
    const std::vector<int32_t> algoOut = ReadPcm(DumpPath(host, kStems[2], 1));
    EXPECT_EQ(algoOut, StandinStereo(algoIn, false, 2));
    EXPECT_EQ(ReadPcm(DumpPath(host, kStems[3], 1)), To32(out, kS16));
}

TEST(PipelineDumpTest, MissingDirectoryFailsTheEnableAndLeavesTheCount) {
    LogCapture log;
    PipelineHost host;
    host.Effect()->KivParamsSetInt(100, 1);
    EXPECT_TRUE(
            log.Has("EnableAudioDump 1719:  OrluneAudioDump fopen failed, errno = 2 reason = "
                    "No such file or directory.",
                    "orlune_mobile", ANDROID_LOG_ERROR))
            << log.Dump();
    host.Effect()->KivParamsSetInt(100, 0);
    EXPECT_TRUE(log.Has("SetAudioDump 1758: Audio dump has already been disabled"));

    MakeDumpDir(host);
    host.Effect()->KivParamsSetInt(100, 1);
    host.Effect()->KivParamsSetInt(100, 1);
    EXPECT_TRUE(log.Has("SetAudioDump 1752: Audio dump has already been enabled"));
    for (const char* stem : kStems) {
        EXPECT_EQ(FileSize(DumpPath(host, stem, 1)), 0) << stem;  // numbered 1 after all
    }
    host.Effect()->KivParamsSetInt(100, 0);
}

TEST(PipelineDumpTest, InstanceSetUpWhileADumpRunsStartsItsOwnNumberedDump) {
    LogCapture log;
    PipelineHost host;
    MakeDumpDir(host);
    host.Effect()->KivParamsSetInt(100, 1);

    HostLibrary library;
    HostOrlune* second = library.Create();
    ASSERT_NE(second, nullptr);
    second->KivOutProcPlayInit();
    EXPECT_EQ(log.Count("EnableAudioDump 1717: OrluneAudioDump enabled."), 2);
    for (const char* stem : kStems) {
        EXPECT_EQ(FileSize(DumpPath(host, stem, 2)), 0) << stem;
    }
    second->KivParamsSetInt(100, 0);
    library.Delete(second);
    host.Effect()->KivParamsSetInt(100, 0);
}

}  // namespace
