// One run of orlune-play: an effect instance set up against a device root, parameters
// applied at the start and along a timeline, and a WAV file processed block by block.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include "tools/play/EffectLoader.h"
#include "tools/play/PlayOptions.h"

struct PlayResult {
    int64_t blocks = 0;
    int64_t inputFrames = 0;
    int64_t outputFrames = 0;
    int64_t framesFed = 0;  // input plus the silence that pushed the latency out
    int rate = 48000;
    int fileChannels = 0;
    int outChannels = 0;  // channels of the output file
    int nominalLatency = 0;
    int64_t measuredLatency = -1;      // onset in the output minus onset in the input; -1 unknown
    double processSeconds = 0.0;       // time spent inside the effect's block call
    std::vector<std::string> applied;  // parameter calls, as "at 1.50 s: 12=2"
    std::vector<std::string> dumpFiles;
    std::vector<std::string> notes;
};

// What a run looks like from the host's side, for a report of it. Positions are frames of the
// input (as fed, silence included) and of the output file.
struct PlayStart {
    int rate = 48000;
    int64_t spanFrames = 0;  // frames fed by the end of the run, at most
    HostFormat format = HostFormat::S16;
    int inChannels = 2;   // interleaved input channels per block
    int outChannels = 2;  // channels of the output file
    int block = 480;
    int latency = 0;          // nominal, in frames
    int64_t outputShift = 0;  // output file frame of an input frame: input frame + this
};

class PlayObserver {
public:
    virtual ~PlayObserver() = default;
    virtual void OnStart(const PlayStart& start) = 0;
    virtual void OnParam(int64_t frame, const ParamEvent& event) = 0;
    // A block as it goes into the effect, and when the effect has returned it.
    virtual void OnBlockIn(int64_t frame, const uint8_t* block, int frames) = 0;
    virtual void OnBlockDone(int64_t frame, int frames) = 0;
    // Frames written to the output file from `frame` on, `channels` interleaved.
    virtual void OnOutput(int64_t frame, const uint8_t* samples, int frames, int channels) = 0;
};

// Reads "key=value" property files the way the platform layer does (last line wins).
int PropertyInt(const std::string& file, const char* key, int defaultValue);

// Processes the input file; false with `error` set when a file cannot be used.
bool RunPlay(const PlayOptions& options, PlayEffect* effect, PlayResult* result, std::string* error,
             PlayObserver* observer = nullptr);

// Parameter calls and their printable form.
void ApplyParam(PlayEffect* effect, const ParamEvent& event);
std::string DescribeParam(const ParamEvent& event);
