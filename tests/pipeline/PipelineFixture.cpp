#include "tests/pipeline/PipelineFixture.h"

#include <string.h>

#include <gtest/gtest.h>

#include <audio_utils/format.h>

namespace {

constexpr int kUnityQ12 = 4096;

int32_t Saturate(int64_t v) {
    return v > INT32_MAX ? INT32_MAX : (v < INT32_MIN ? INT32_MIN : static_cast<int32_t>(v));
}

// The stand-in's treatment of one stereo pair (see its header): mid/side, width on the side,
// gain on both.
void Tune(int64_t l, int64_t r, bool enable, int32_t* outL, int32_t* outR) {
    const int64_t gain = enable ? kUnityQ12 + kGainOffsetQ12 : kUnityQ12;
    const int64_t width = enable ? kUnityQ12 + kWidthOffsetQ12 : kUnityQ12;
    const int64_t mid = (l + r) / 2;
    const int64_t side = ((l - r) / 2) * width / kUnityQ12;
    *outL = Saturate((mid + side) * gain / kUnityQ12);
    *outR = Saturate((mid - side) * gain / kUnityQ12);
}

}  // namespace

void WriteTestTuning(const DeviceRoot& root) {
    std::vector<int> main(401, 0);
    main[400] = kGainOffsetQ12;
    std::vector<int> ext(301, 0);
    ext[300] = kWidthOffsetQ12;
    root.WriteKiv("kiv_config.xml", XmlDocument({NvRecord(41, main), NvRecord(42, ext)}));
    std::vector<std::string> map;
    for (int level = 0; level <= 6; ++level) {
        map.push_back(NvMap(4000 + level, 41, 42));
    }
    root.WriteKiv("kiv_config_vmap.xml", XmlDocument(map));
}

PipelineHost::PipelineHost() : PipelineHost(Options()) {}

PipelineHost::PipelineHost(const Options& options) : mRoot(new DeviceRoot()) {
    WriteTestTuning(*mRoot);
    mRoot->SetProperty("msc.brisel.config_channel_out", std::to_string(options.configChannelOut));
    if (options.withAlgorithm) {
        EXPECT_NE(PreloadStandin(StandinPath("lib64orlune7_1.so")), nullptr);
    }
    EXPECT_TRUE(mLibrary.Loaded());
    mEffect = mLibrary.Create();
    if (mEffect == nullptr) {
        ADD_FAILURE() << "no instance";
        return;
    }
    mEffect->KivOutProcPlayInit();
    mEffect->KivParamsSetInt(12, options.device);
    if (options.enable) {
        mEffect->KivParamsSetInt(0, 1);
        mEffect->KivParamsSetInt(32, 1);
    }
}

PipelineHost::~PipelineHost() {
    if (mEffect != nullptr) {
        mLibrary.Delete(mEffect);
    }
}

std::vector<uint8_t> PipelineHost::Run(const std::vector<uint8_t>& input, int block, int channels,
                                       audio_format_t format, int outChannels, uint8_t filler) {
    const int bytes = BytesPerSample(format);
    const int inChannels = channels == 4 ? 2 : channels;
    const size_t inFrameBytes = static_cast<size_t>(inChannels) * bytes;
    const int frames = static_cast<int>(input.size() / inFrameBytes);
    const int capacity = channels < 4 ? 4 : channels;
    std::vector<uint8_t> buffer(static_cast<size_t>(block) * capacity * bytes);
    std::vector<uint8_t> output;
    for (int at = 0; at < frames; at += block) {
        const int n = frames - at < block ? frames - at : block;
        memset(buffer.data(), filler, buffer.size());
        memcpy(buffer.data(), input.data() + at * inFrameBytes, n * inFrameBytes);
        mEffect->KivOutProcPlaySamples(reinterpret_cast<short*>(buffer.data()), n, channels,
                                       format);
        output.insert(output.end(), buffer.begin(),
                      buffer.begin() + static_cast<size_t>(n) * outChannels * bytes);
    }
    return output;
}

int BytesPerSample(audio_format_t format) {
    return static_cast<int>(audio_bytes_per_sample(format));
}

std::vector<int32_t> To32(const std::vector<uint8_t>& host, audio_format_t format) {
    std::vector<int32_t> out(host.size() / BytesPerSample(format));
    memcpy_by_audio_format(out.data(), AUDIO_FORMAT_PCM_32_BIT, host.data(), format, out.size());
    return out;
}

std::vector<uint8_t> FromInt32(const std::vector<int32_t>& samples, audio_format_t format) {
    std::vector<uint8_t> out(samples.size() * BytesPerSample(format));
    memcpy_by_audio_format(out.data(), format, samples.data(), AUDIO_FORMAT_PCM_32_BIT,
                           samples.size());
    return out;
}

std::vector<int32_t> Noise32(int frames, int channels, uint32_t variant) {
    std::vector<int32_t> out(static_cast<size_t>(frames) * channels);
    uint32_t state = variant * 2654435761u + 1u;
    for (int32_t& s : out) {
        state = state * 1664525u + 1013904223u;
        // Level (top 16 bits) between 1000 and 16000 in magnitude: never near silence.
        const int32_t level = 1000 + static_cast<int32_t>((state >> 8) % 15000u);
        s = ((state >> 30) & 1u ? level : -level) * 65536 + static_cast<int32_t>(state & 0xffffu);
    }
    return out;
}

std::vector<int32_t> StandinStereo(const std::vector<int32_t>& in, bool enable, int outChannels) {
    const size_t frames = in.size() / 2 / kFrame * kFrame;
    std::vector<int32_t> out(frames * outChannels);
    for (size_t i = 0; i < frames; ++i) {
        int32_t l, r;
        Tune(in[2 * i], in[2 * i + 1], enable, &l, &r);
        out[i * outChannels] = l;
        out[i * outChannels + 1] = r;
        if (outChannels == 4) {
            out[i * 4 + 2] = Saturate((int64_t{l} + r) / 2);
            out[i * 4 + 3] = Saturate((int64_t{l} - r) / 2);
        }
    }
    return out;
}

std::vector<int32_t> StandinFold(const std::vector<int32_t>& in, int inChannels, bool enable) {
    const size_t frames = in.size() / inChannels / kFrame * kFrame;
    const int half = inChannels / 2;
    std::vector<int32_t> out(frames * 2);
    for (size_t i = 0; i < frames; ++i) {
        int64_t l = 0, r = 0;
        for (int c = 0; c < 2 * half; c += 2) {
            l += in[i * inChannels + c];
            r += in[i * inChannels + c + 1];
        }
        Tune(l / half, r / half, enable, &out[2 * i], &out[2 * i + 1]);
    }
    return out;
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
