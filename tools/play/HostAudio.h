// WAV files in and out in the host's sample format and channel layout, as the platform hands
// blocks to an effect: interleaved, in place, with room for the output channels.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include <sndfile.h>
#include <system/audio.h>

#include "tools/play/PlayOptions.h"

audio_format_t ToAudioFormat(HostFormat format);
int BytesPerSample(HostFormat format);

class WavReader {
public:
    ~WavReader();
    bool Open(const std::string& path, std::string* error);
    int Channels() const { return mInfo.channels; }
    int Rate() const { return mInfo.samplerate; }
    int64_t Frames() const { return mInfo.frames; }
    // Reads up to `frames` frames into `block` (host format, `layout` interleaved channels
    // laid out from the file's channels, channel c taking file channel c modulo the file's
    // count); returns the frames read. Missing frames are silence.
    int Read(HostFormat format, int layout, int frames, uint8_t* block);

private:
    SNDFILE* mFile = nullptr;
    SF_INFO mInfo = {};
    std::vector<int32_t> mInts;
    std::vector<float> mFloats;
    std::vector<int16_t> mShorts;
};

class WavWriter {
public:
    ~WavWriter();
    bool Open(const std::string& path, HostFormat format, int channels, int rate,
              std::string* error);
    // Writes `frames` frames of `channels` interleaved host-format samples from `block`; when
    // the file has more channels the missing ones are silence.
    bool Write(const uint8_t* block, int frames, int channels);
    void Close();

private:
    SNDFILE* mFile = nullptr;
    HostFormat mFormat = HostFormat::S16;
    int mChannels = 0;
    std::vector<int32_t> mInts;
    std::vector<float> mFloats;
    std::vector<int16_t> mShorts;
};
