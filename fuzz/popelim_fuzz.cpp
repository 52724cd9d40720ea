// Random configurations, blocks, sizes and handle edits through FallingPopElim and the exported
// stand-alone functions. Besides the sanitizers' findings it stops on a processed block that is
// not the work buffer, on a stereo block or stereo fade that disagrees with the channel-by-channel
// one, and on a fade step that differs from the plain 64-bit division.
#include <android/log.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <stdint.h>
#include <stdlib.h>

#include <vector>

#include "popelim/CuttingEdge.h"
#include "popelim/EdgeFade.h"
#include "popelim/EdgeSearch.h"
#include "popelim/FallingPopElim.h"
#include "popelim/RampDivider.h"
#include "popelim/PopElimBlock.h"
#include "popelim/StereoSearch.h"

namespace {

void DropLine(const __android_logger_data*, const char*) {}

ProcessConfig ConsumeConfig(FuzzedDataProvider& in) {
    ProcessConfig config;
    config.channelCount = in.ConsumeBool() ? in.ConsumeIntegral<uint32_t>() : 2 - in.ConsumeBool();
    config.bitDepth = in.ConsumeBool() ? in.ConsumeIntegral<uint32_t>() : 4;
    config.bufferSize = in.ConsumeBool() ? in.ConsumeIntegralInRange<uint32_t>(0, 4000) : 3840;
    config.outputType = in.ConsumeIntegral<int32_t>();
    config.format = in.ConsumeBool() ? in.ConsumeIntegral<int32_t>() : 3;
    return config;
}

// One of two usual block sizes, any small size, or any size at all.
unsigned ConsumeSize(FuzzedDataProvider& in) {
    const int kind = in.ConsumeIntegralInRange(0, 3);
    return kind == 0   ? 3840
           : kind == 1 ? 1536
           : kind == 2 ? in.ConsumeIntegralInRange<unsigned>(0, 4096)
                       : in.ConsumeIntegral<unsigned>();
}

// A block of exactly `size` bytes (a token one for absurd sizes, which must be refused unread)
// made of runs of levels, so that both kinds of edge turn up.
std::vector<int32_t> ConsumeBlock(FuzzedDataProvider& in, unsigned size) {
    std::vector<int32_t> block(size <= 16384 ? (size + 3) / 4 : 4, 0);
    size_t i = 0;
    while (i < block.size() && in.remaining_bytes() > 0) {
        const size_t run = in.ConsumeIntegralInRange<size_t>(1, 128);
        const int32_t level = in.ConsumeIntegral<int16_t>();
        const int32_t low = in.ConsumeIntegral<uint16_t>();
        for (size_t k = 0; k < run && i < block.size(); ++k, ++i) {
            block[i] = static_cast<int32_t>(static_cast<uint32_t>(level) << 16) | low;
        }
    }
    return block;
}

// The stereo path of a block must leave the same samples as the channel-by-channel path (up to
// 480 frames, the most a stereo block holds), with channel 1 now and then a copy of channel 0 so
// that the two share their edges.
void CheckStereoPath(FuzzedDataProvider& in) {
    const ProcessHandle handle{
            2,       4,     kPopBlockBytes, 0,
            3,       48000, nullptr,        in.ConsumeIntegralInRange<uint32_t>(0, 4000),
            nullptr, 0};
    const unsigned frames = in.ConsumeIntegralInRange<unsigned>(0, popelim::kStereoMaxFrames);
    const uint32_t bufferSamples = in.ConsumeIntegralInRange<uint32_t>(0, kPopBlockBytes / 4);
    const bool shared = in.ConsumeBool();
    const bool enable = in.ConsumeBool();
    std::vector<int32_t> fast = ConsumeBlock(in, kPopBlockBytes);
    for (size_t f = 0; shared && f < fast.size() / 2; ++f) {
        fast[2 * f + 1] = fast[2 * f];
    }
    std::vector<int32_t> plain = fast;
    popelim::SearchAndFadeStereo(fast.data(), handle, kPopBlockBytes, enable, frames,
                                 bufferSamples);
    popelim::SearchAndFadeChannels(plain.data(), 2, handle, kPopBlockBytes, enable, frames,
                                   bufferSamples);
    if (fast != plain) {
        abort();
    }
}

// A fade step k × s / n must equal the truncating 64-bit division for every ramp length.
void CheckRampStep(FuzzedDataProvider& in) {
    const int64_t n = in.ConsumeBool() ? in.ConsumeIntegralInRange<int64_t>(1, 4200)
                                       : in.ConsumeIntegralInRange<int64_t>(1, 0xFFFFFFFF);
    const int64_t k = in.ConsumeIntegralInRange<int64_t>(0, n - 1);
    const int32_t s = in.ConsumeIntegral<int32_t>();
    if (popelim::RampDivider(n).Scale(k, s) != k * s / n) {
        abort();
    }
}

// The stereo fades of the processing path, which scale several frames per step, must leave
// every sample of both channels as the frame-by-frame fades do.
void CheckStereoFade(FuzzedDataProvider& in) {
    constexpr unsigned kFrames = popelim::kStereoMaxFrames;
    const ProcessHandle handle{
            2,       4,     kPopBlockBytes, 0,
            3,       48000, nullptr,        in.ConsumeIntegralInRange<uint32_t>(0, 4000),
            nullptr, 0};
    const unsigned channel = in.ConsumeIntegralInRange<unsigned>(0, 1);
    const uint32_t pos = in.ConsumeIntegralInRange<uint32_t>(0, kFrames);
    const uint32_t writable = in.ConsumeIntegralInRange<uint32_t>(0, kFrames);
    const bool fadeOut = in.ConsumeBool();
    std::vector<int32_t> fast = ConsumeBlock(in, kPopBlockBytes);
    std::vector<int32_t> plain = fast;
    popelim::FixedStrideSamples<2> fastView{fast.data() + channel};
    popelim::ChannelSamples plainView{plain.data() + channel, 2};
    if (fadeOut) {
        popelim::FadeOutAt(fastView, handle, kPopBlockBytes, pos, writable);
        popelim::FadeOutAt(plainView, handle, kPopBlockBytes, pos, writable);
    } else {
        popelim::FadeInFrom(fastView, handle, kPopBlockBytes, pos, writable);
        popelim::FadeInFrom(plainView, handle, kPopBlockBytes, pos, writable);
    }
    if (fast != plain) {
        abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    __android_log_set_logger(DropLine);
    FuzzedDataProvider in(data, size);

    static FallingPopElim elim;
    static ProcessHandle classHandle;
    static int32_t classBuffer[kPopBlockBytes / 4];
    static uint8_t classCache[kPopCacheBytes];
    classHandle = ProcessHandle{};
    const ProcessConfig classConfig = ConsumeConfig(in);
    elim.CuttingEdgeFadeinoutInit(&classConfig, &classHandle, classBuffer, classCache);
    const ProcessConfig sharedConfig = ConsumeConfig(in);
    ProcessHandle* shared = CuttingEdgeFadeinoutInit(&sharedConfig);

    while (in.remaining_bytes() > 0) {
        const bool useClass = in.ConsumeBool();
        switch (in.ConsumeIntegralInRange(0, 6)) {
            case 0: {
                const unsigned bytes = ConsumeSize(in);
                const bool enable = in.ConsumeBool();
                const unsigned clearSize = in.ConsumeIntegralInRange<unsigned>(0, kPopCacheBytes);
                const std::vector<int32_t> block = ConsumeBlock(in, bytes);
                int32_t* out = useClass ? elim.CuttingEdgeProcess(&classHandle, block.data(), bytes,
                                                                  enable, clearSize)
                                        : CuttingEdgeProcess(shared, block.data(), bytes, enable);
                ProcessHandle* h = useClass ? &classHandle : shared;
                if (out != nullptr && (h == nullptr || out != h->buffer)) {
                    abort();
                }
                break;
            }
            case 1:
                if (useClass) {
                    elim.ClearCachedBuffer(&classHandle,
                                           in.ConsumeIntegralInRange<unsigned>(0, kPopCacheBytes));
                } else {
                    ClearCachedBuffer(shared);
                }
                break;
            case 2:
                // Another rate makes the next accepted block reset the cache.
                if (useClass) {
                    classHandle.sampleRate = in.ConsumeIntegral<uint32_t>();
                } else if (shared != nullptr) {
                    shared->sampleRate = in.ConsumeIntegral<uint32_t>();
                }
                break;
            case 3: {
                // The class's members called on their own, with any position and channel.
                const unsigned channel = in.ConsumeIntegralInRange<unsigned>(0, 3);
                const unsigned bytes = ConsumeSize(in);
                const unsigned pos = in.ConsumeIntegralInRange<unsigned>(0, 1000);
                elim.FindRaisingEdge(&classHandle, channel);
                elim.FindFallingEdge(&classHandle, channel);
                if (in.ConsumeBool()) {
                    elim.FadeIn(&classHandle, bytes, pos, channel);
                } else {
                    elim.FadeOut(&classHandle, bytes, pos, channel);
                }
                break;
            }
            case 4:
                CheckRampStep(in);
                break;
            case 5:
                CheckStereoFade(in);
                break;
            default:
                CheckStereoPath(in);
                break;
        }
    }
    return 0;
}
