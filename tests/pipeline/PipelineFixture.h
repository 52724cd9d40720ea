// End-to-end helpers for the sample pipeline: a temporary device with a known tuning, the
// shipped library driven as a host drives it, and a model of the stand-in algorithm that
// predicts what the pipeline must return.
#pragma once

#include <stdint.h>

#include <memory>
#include <string>
#include <vector>

#include <system/audio.h>

#include "tests/support/DeviceRoot.h"
#include "tests/support/HostEffect.h"

// The tuning that the test device gives the loudspeaker: gain 1.5, stereo width 1.25.
constexpr int kGainOffsetQ12 = 2048;
constexpr int kWidthOffsetQ12 = 1024;
constexpr int kFrame = 480;  // frames per algorithm run
constexpr int kPopDelayFrames = 48;

// Writes a main and an extended record carrying the tuning and maps every loudspeaker
// volume level of the default situation (FULL, PORTRAIT, MUSIC) to them.
void WriteTestTuning(const DeviceRoot& root);

// A host with one effect instance, set up (KivOutProcPlayInit) with or without the stand-in
// algorithm preloaded. With `enable`, ids 0 and 32 turn the effect on; id 12 picks `device`.
class PipelineHost {
public:
    struct Options {
        bool withAlgorithm = true;
        bool enable = true;
        int device = 1;
        int configChannelOut = 2;  // "msc.brisel.config_channel_out"
    };
    PipelineHost();
    explicit PipelineHost(const Options& options);
    ~PipelineHost();

    HostOrlune* Effect() const { return mEffect; }
    const DeviceRoot& Root() const { return *mRoot; }

    // Runs `input` (host-format samples of the processing channels, interleaved) through the
    // effect in blocks of `block` frames with the host layout `channels`; returns the
    // host-format output, `outChannels` per frame. For the 4-channel layout the part of each
    // block beyond the input is filled with `filler`.
    std::vector<uint8_t> Run(const std::vector<uint8_t>& input, int block, int channels,
                             audio_format_t format, int outChannels, uint8_t filler = 0x5a);

private:
    std::unique_ptr<DeviceRoot> mRoot;
    HostLibrary mLibrary;
    HostOrlune* mEffect = nullptr;
};

int BytesPerSample(audio_format_t format);
// Platform conversions, sample by sample.
std::vector<int32_t> To32(const std::vector<uint8_t>& host, audio_format_t format);
std::vector<uint8_t> FromInt32(const std::vector<int32_t>& samples, audio_format_t format);

// Deterministic loud noise, `frames` x `channels` samples in 32-bit; no run of near-silence.
std::vector<int32_t> Noise32(int frames, int channels, uint32_t variant);

// The stand-in's processing of whole 480-frame frames: stereo in with 2 or 4 out, or
// multichannel in folded to a stereo pair. Gain and width apply only when `enable`.
std::vector<int32_t> StandinStereo(const std::vector<int32_t>& in, bool enable, int outChannels);
std::vector<int32_t> StandinFold(const std::vector<int32_t>& in, int inChannels, bool enable);

// `frames` frames of silence in front of `in`.
std::vector<int32_t> Delayed(const std::vector<int32_t>& in, int frames, int channels);
// Interleaved frames [from, from + count) of `samples`.
std::vector<int32_t> FrameSlice(const std::vector<int32_t>& samples, int channels, int from,
                                int count);
