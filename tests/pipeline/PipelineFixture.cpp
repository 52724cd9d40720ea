#include "tests/pipeline/PipelineFixture.h"

#include <string.h>

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include <audio_utils/format.h>

namespace {

constexpr int kUnityQ12 = 4096;
constexpr int kGainOffsetQ12 = 2048;
constexpr int kWidthOffsetQ12 = 1024;

int32_t Saturate(int64_t v) {
    return static_cast<int32_t>(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX));
}

}  // namespace

void WriteTestTuning(const DeviceRoot& root, std::vector<std::string> map) {
    std::vector<int> main(401, 0);
    main[400] = kGainOffsetQ12;
    std::vector<int> ext(301, 0);
    ext[300] = kWidthOffsetQ12;
    root.WriteKiv("kiv_config.xml", XmlDocument({NvRecord(41, main), NvRecord(42, ext)}));
    if (map.empty()) {
        for (int level = 0; level <= 6; ++level) {
            map.push_back(NvMap(4000 + level, 41, 42));
        }
    }
    root.WriteKiv("kiv_config_vmap.xml", XmlDocument(map));
}

PipelineHost::PipelineHost(const HostOptions& options) : mRoot(new DeviceRoot()) {
    if (options.tuned) {
        WriteTestTuning(*mRoot);
    }
    mRoot->SetProperty("msc.brisel.config_channel_out", std::to_string(options.configChannelOut));
    EXPECT_NE(PreloadStandin(StandinPath("lib64orlune7_1.so")), nullptr);
    EXPECT_TRUE(mLibrary.Loaded());
    mEffect = mLibrary.Create();
    mEffect->KivOutProcPlayInit();
    mEffect->KivParamsSetInt(kIdDeviceType, options.device);
    if (options.enable) {
        mEffect->KivParamsSetInt(kIdWidenEnable, 1);
        mEffect->KivParamsSetInt(kIdEffectEnable, 1);
    }
}

std::vector<uint8_t> PipelineHost::Run(const std::vector<uint8_t>& input, int block, int channels,
                                       audio_format_t format, int outChannels) {
    const int bytes = audio_bytes_per_sample(format);
    const int inChannels = channels == 4 ? 2 : channels;
    const size_t inFrameBytes = static_cast<size_t>(inChannels) * bytes;
    const int frames = static_cast<int>(input.size() / inFrameBytes);
    const int capacity = channels < 4 ? 4 : channels;
    std::vector<uint8_t> buffer(static_cast<size_t>(block) * capacity * bytes);
    std::vector<uint8_t> output;
    for (int at = 0; at < frames; at += block) {
        const int n = std::min(block, frames - at);
        memset(buffer.data(), 0x5a, buffer.size());
        memcpy(buffer.data(), input.data() + at * inFrameBytes, n * inFrameBytes);
        mEffect->KivOutProcPlaySamples(reinterpret_cast<short*>(buffer.data()), n, channels,
                                       format);
        output.insert(output.end(), buffer.begin(),
                      buffer.begin() + static_cast<size_t>(n) * outChannels * bytes);
    }
    return output;
}

std::vector<int32_t> PipelineHost::Run16(const std::vector<int32_t>& input, int block, int channels,
                                         int outChannels) {
    return To32(Run(FromInt32(input, kS16), block, channels, kS16, outChannels), kS16);
}

std::vector<int32_t> To32(const std::vector<uint8_t>& host, audio_format_t format) {
    std::vector<int32_t> out(host.size() / audio_bytes_per_sample(format));
    memcpy_by_audio_format(out.data(), AUDIO_FORMAT_PCM_32_BIT, host.data(), format, out.size());
    return out;
}

std::vector<uint8_t> FromInt32(const std::vector<int32_t>& samples, audio_format_t format) {
    std::vector<uint8_t> out(samples.size() * audio_bytes_per_sample(format));
    memcpy_by_audio_format(out.data(), format, samples.data(), AUDIO_FORMAT_PCM_32_BIT,
                           samples.size());
    return out;
}

std::vector<int32_t> As16(const std::vector<int32_t>& samples) {
    return To32(FromInt32(samples, kS16), kS16);
}

std::vector<int32_t> Noise32(int frames, int channels, uint32_t variant) {
    // Levels (top 16 bits) between 1000 and 16000 in magnitude: never near silence.
    std::mt19937 rng(variant);
    std::uniform_int_distribution<int32_t> level(1000 << 16, 16000 << 16);
    std::vector<int32_t> out(static_cast<size_t>(frames) * channels);
    for (int32_t& s : out) {
        s = rng() & 1 ? level(rng) : -level(rng);
    }
    return out;
}

std::vector<int32_t> Standin(const std::vector<int32_t>& in, int inChannels, bool enable,
                             int outChannels) {
    const int64_t gain = enable ? kUnityQ12 + kGainOffsetQ12 : kUnityQ12;
    const int64_t width = enable ? kUnityQ12 + kWidthOffsetQ12 : kUnityQ12;
    const int half = inChannels / 2;
    const size_t frames = in.size() / inChannels / kFrame * kFrame;
    std::vector<int32_t> out;
    for (size_t i = 0; i < frames; ++i) {
        int64_t l = 0, r = 0;
        for (int c = 0; c < 2 * half; c += 2) {
            l += in[i * inChannels + c];
            r += in[i * inChannels + c + 1];
        }
        const int64_t mid = (l / half + r / half) / 2;
        const int64_t side = ((l / half - r / half) / 2) * width / kUnityQ12;
        const int32_t left = Saturate((mid + side) * gain / kUnityQ12);
        const int32_t right = Saturate((mid - side) * gain / kUnityQ12);
        out.insert(out.end(), {left, right});
        if (outChannels == 4) {
            out.insert(out.end(), {static_cast<int32_t>((int64_t{left} + right) / 2),
                                   static_cast<int32_t>((int64_t{left} - right) / 2)});
        }
    }
    return out;
}

std::vector<int32_t> ExpectedStereo(const std::vector<int32_t>& in, bool enable, int outChannels) {
    return Delayed(Standin(Delayed(in, kPopDelayFrames, 2), 2, enable, outChannels), kFrame,
                   outChannels);
}

std::vector<int32_t> Delayed(const std::vector<int32_t>& in, int frames, int channels) {
    std::vector<int32_t> out(static_cast<size_t>(frames) * channels, 0);
    out.insert(out.end(), in.begin(), in.end());
    return out;
}

std::vector<int32_t> FrameSlice(const std::vector<int32_t>& samples, int channels, int from,
                                int count) {
    const auto begin = samples.begin() + static_cast<ptrdiff_t>(from) * channels;
    return std::vector<int32_t>(begin, begin + static_cast<ptrdiff_t>(count) * channels);
}
