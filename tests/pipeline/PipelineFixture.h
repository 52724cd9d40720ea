// End-to-end helpers for the sample pipeline: a temporary device with a known tuning, the
// shipped library driven as a host drives it, and a model of the stand-in algorithm that
// predicts what the pipeline must return.
#pragma once

#include <stdint.h>

#include <memory>
#include <string>
#include <vector>

#include <system/audio.h>

#include "params/ParamIds.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/HostEffect.h"

constexpr audio_format_t kS16 = AUDIO_FORMAT_PCM_16_BIT;
constexpr int kFrame = 480;  // frames per algorithm run
constexpr int kPopDelayFrames = 48;

// Writes the loudspeaker tuning of HostOptions::tuned: records 41 and 42 (gain 1.5, width 1.25)
// for the virtual-map elements `map`, by default the loudspeaker's default situation.
void WriteTestTuning(const DeviceRoot& root, std::vector<std::string> map = {});

// A host with one effect instance, set up (KivOutProcPlayInit) with the stand-in algorithm
// preloaded. With `enable`, ids 0 and 32 turn the effect on; id 12 picks `device`. With
// `tuned` the loudspeaker's default situation gets gain 1.5 and stereo width 1.25; without it
// no tuning reaches the stand-in, which then passes 16-bit samples through unchanged.
struct HostOptions {
    bool enable = true;
    int device = 1;
    int configChannelOut = 2;  // "msc.brisel.config_channel_out"
    bool tuned = true;
};

class PipelineHost {
public:
    explicit PipelineHost(const HostOptions& options = HostOptions());
    ~PipelineHost() { mLibrary.Delete(mEffect); }

    HostOrlune* Effect() const { return mEffect; }
    const DeviceRoot& Root() const { return *mRoot; }

    // Runs `input` (host-format samples of the processing channels, interleaved) through the
    // effect in blocks of `block` frames with the host layout `channels`; returns the
    // host-format output, `outChannels` per frame. For the 4-channel layout the part of each
    // block beyond the input holds filler bytes.
    std::vector<uint8_t> Run(const std::vector<uint8_t>& input, int block, int channels,
                             audio_format_t format, int outChannels);
    // The same with 16-bit blocks, samples given and returned in 32-bit.
    std::vector<int32_t> Run16(const std::vector<int32_t>& input, int block, int channels,
                               int outChannels);

private:
    std::unique_ptr<DeviceRoot> mRoot;
    HostLibrary mLibrary;
    HostOrlune* mEffect = nullptr;
};

// Platform conversions, sample by sample.
std::vector<int32_t> To32(const std::vector<uint8_t>& host, audio_format_t format);
std::vector<uint8_t> FromInt32(const std::vector<int32_t>& samples, audio_format_t format);
// The samples after a round trip through 16-bit, as the effect sees a 16-bit block.
std::vector<int32_t> As16(const std::vector<int32_t>& samples);

// Deterministic loud noise, `frames` x `channels` samples in 32-bit; no run of near-silence.
std::vector<int32_t> Noise32(int frames, int channels, uint32_t variant);

// The stand-in's processing of whole 480-frame frames: the input folded to a stereo pair (the
// mean of the even and of the odd channels), gain and width applied when `enable`, and with
// four outputs the pair's mean and half difference after it.
std::vector<int32_t> Standin(const std::vector<int32_t>& in, int inChannels, bool enable,
                             int outChannels = 2);
// What the stereo path returns for `in`: the stand-in's processing behind the pop
// eliminator's delay line, one algorithm frame late.
std::vector<int32_t> ExpectedStereo(const std::vector<int32_t>& in, bool enable,
                                    int outChannels = 2);

// `frames` frames of silence in front of `in`.
std::vector<int32_t> Delayed(const std::vector<int32_t>& in, int frames, int channels);
// Interleaved frames [from, from + count) of `samples`.
std::vector<int32_t> FrameSlice(const std::vector<int32_t>& samples, int channels, int from,
                                int count);
