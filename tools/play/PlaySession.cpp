#include "tools/play/PlaySession.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>

#include "abi/KivIoInfo.h"
#include "effect/OutChannels.h"
#include "params/ParamIds.h"
#include "popelim/ProcessTypes.h"
#include "tools/play/EffectLog.h"
#include "tools/play/HostAudio.h"

namespace {

bool SetsAtStart(const PlayOptions& o, int id) {
    for (const ParamEvent& e : o.events) {
        if (e.atStart && e.id == id) {
            return true;
        }
    }
    return false;
}

// Output channels the effect writes back, by its own rule; a host knows this from how it
// configured the stream.
int EffectOutChannels(int configOut, int device, int previous) {
    return outchannels::PerBlock(configOut, device, {previous, previous}).host;
}

bool NonSilent(const uint8_t* block, size_t samples, int bytes) {
    for (size_t i = 0; i < samples * bytes; ++i) {
        if (block[i] != 0) {
            return true;
        }
    }
    return false;
}

// Index of the first frame with a non-zero sample, or -1.
int FirstSoundFrame(const uint8_t* block, int frames, int channels, int bytes) {
    for (int f = 0; f < frames; ++f) {
        if (NonSilent(block + static_cast<size_t>(f) * channels * bytes, channels, bytes)) {
            return f;
        }
    }
    return -1;
}

void MakeDirs(const std::string& path) {
    for (size_t at = 1; at <= path.size(); ++at) {
        if (at == path.size() || path[at] == '/') {
            mkdir(path.substr(0, at).c_str(), 0755);
        }
    }
}

class Progress {
public:
    Progress(bool on, double totalSeconds) : mOn(on), mTotal(totalSeconds) {}
    void Update(double seconds) {
        if (!mOn || mTotal <= 0.0) {
            return;
        }
        const int percent = static_cast<int>(100.0 * seconds / mTotal);
        if (percent != mLast) {
            mLast = percent;
            fprintf(stderr, "\rprocessing %3d%%  %.1f s of %.1f s", std::min(percent, 100), seconds,
                    mTotal);
            fflush(stderr);
        }
    }
    void Done() {
        if (mOn && mLast >= 0) {
            fprintf(stderr, "\r%60s\r", "");
        }
    }

private:
    bool mOn;
    double mTotal;
    int mLast = -1;
};

}  // namespace

int PropertyInt(const std::string& file, const char* key, int defaultValue) {
    std::ifstream in(file);
    std::string line;
    int value = defaultValue;
    const std::string prefix = std::string(key) + "=";
    while (std::getline(in, line)) {
        if (line.compare(0, prefix.size(), prefix) == 0) {
            const std::string text = line.substr(prefix.size());
            char* end = nullptr;
            errno = 0;
            const long v = strtol(text.c_str(), &end, 0);
            value = (text.empty() || end == text.c_str() || errno != 0) ? defaultValue
                                                                        : static_cast<int>(v);
        }
    }
    return value;
}

void ApplyParam(PlayEffect* effect, const ParamEvent& e) {
    switch (e.kind) {
        case ParamEvent::INT:
            effect->KivParamsSetInt(e.id, e.intValue);
            break;
        case ParamEvent::FLOAT:
            effect->KivParamsSetFloat(e.id, e.floatValue);
            break;
        case ParamEvent::STRING:
            effect->KivParamsSetString(e.id, e.text);
            break;
    }
}

std::string DescribeParam(const ParamEvent& e) {
    char head[48];
    if (e.atStart) {
        snprintf(head, sizeof(head), "start: ");
    } else {
        snprintf(head, sizeof(head), "at %.2f s: ", e.seconds);
    }
    std::string value;
    switch (e.kind) {
        case ParamEvent::INT:
            value = std::to_string(e.intValue);
            break;
        case ParamEvent::FLOAT: {
            char f[32];
            snprintf(f, sizeof(f), "%g (float)", static_cast<double>(e.floatValue));
            value = f;
            break;
        }
        case ParamEvent::STRING:
            value = "\"" + e.text + "\"";
            break;
    }
    return head + std::to_string(e.id) + "=" + value;
}

bool RunPlay(const PlayOptions& o, PlayEffect* effect, PlayResult* r, std::string* error,
             PlayObserver* observer) {
    WavReader reader;
    if (!reader.Open(o.input, error)) {
        return false;
    }
    r->rate = reader.Rate();
    r->fileChannels = reader.Channels();
    if (r->rate != 48000) {
        r->notes.push_back("the input is at " + std::to_string(r->rate) +
                           " Hz; the effect is tuned for 48000 Hz and does not resample");
    }

    const int layout = o.channels;
    const int inChannels = layout == 4 ? 2 : layout;
    if (r->fileChannels > inChannels) {
        // The layout takes the file's first channels; say what is lost and what would keep it.
        const int keeping = r->fileChannels <= 8 ? 8 : r->fileChannels <= 10 ? 10 : 0;
        r->notes.push_back("the input has " + std::to_string(r->fileChannels) +
                           " channels; --channels " + std::to_string(layout) + " carries " +
                           std::to_string(inChannels) + ", so channels " +
                           std::to_string(inChannels + 1) + " to " +
                           std::to_string(r->fileChannels) + " are dropped" +
                           (keeping != 0 ? "; --channels " + std::to_string(keeping) + " keeps them"
                                         : "; no layout carries more than 10"));
    }
    const double inputSeconds = r->rate > 0 ? static_cast<double>(reader.Frames()) / r->rate : 0;
    for (const ParamEvent& e : o.events) {
        if (!e.atStart && e.seconds > inputSeconds) {
            char end[32];
            snprintf(end, sizeof(end), "%.2f s", inputSeconds);
            r->notes.push_back("warning: " + DescribeParam(e) +
                               " lies past the end of the input (" + end +
                               ") and is never applied");
        }
    }
    const int configOut = PropertyInt(o.properties, "msc.brisel.config_channel_out", 2);
    int device = 0;

    // Parameters at the start: the audible defaults first, then the user's in their order.
    std::vector<ParamEvent> start;
    if (!o.noDefaults) {
        for (int id : {kIdWidenEnable, kIdEffectEnable, kIdDeviceType}) {
            if (!SetsAtStart(o, id)) {
                ParamEvent e;
                e.id = id;
                e.intValue = 1;
                start.push_back(e);
            }
        }
    }
    std::vector<ParamEvent> timeline;
    for (const ParamEvent& e : o.events) {
        (e.atStart ? start : timeline).push_back(e);
    }
    if (o.dump) {
        // The effect does not create the dump directory; on a device it exists already.
        MakeDirs(o.deviceRoot + "/data/audio_debug");
        ParamEvent e;
        e.id = kIdPcmDump;
        e.intValue = 1;
        start.push_back(e);
    }
    std::stable_sort(
            timeline.begin(), timeline.end(),
            [](const ParamEvent& a, const ParamEvent& b) { return a.seconds < b.seconds; });
    for (const ParamEvent& e : start) {
        if (observer != nullptr) {
            observer->OnParam(0, e);
        }
        ApplyParam(effect, e);
        r->applied.push_back(DescribeParam(e));
        if (e.kind == ParamEvent::INT && e.id == kIdDeviceType) {
            device = e.intValue;
        }
    }

    int outChannels = outchannels::AtInit(configOut, device);
    outChannels = EffectOutChannels(configOut, device, outChannels);
    r->outChannels = layout == 2 ? 2 : (configOut != 2 ? 4 : 2);
    if (layout == 2 && outChannels == 4) {
        r->notes.push_back(
                "the device is configured for 4 output channels "
                "(msc.brisel.config_channel_out); a stereo block has no room for "
                "them, so use --channels 4");
    }
    const bool bound = EffectLog::Facts().bound;
    r->nominalLatency = bound ? kAlgoFrame + (inChannels == 2 ? kPopCacheFrames : 0) : 0;

    WavWriter writer;
    if (!writer.Open(o.output, o.format, r->outChannels, r->rate, error)) {
        return false;
    }

    const int bytes = BytesPerSample(o.format);
    const audio_format_t format = ToAudioFormat(o.format);
    const int capacity = std::max(layout, 4);
    std::vector<uint8_t> block(static_cast<size_t>(o.block) * capacity * bytes);
    const int64_t total = reader.Frames();
    const int latency = r->nominalLatency;
    const int64_t wanted = o.compensate ? total : total + latency;
    int64_t skip = o.compensate ? latency : 0;
    int64_t inOnset = -1;
    int64_t outOnset = -1;
    size_t next = 0;
    Progress progress(o.progress && isatty(STDERR_FILENO) && total > 5 * r->rate,
                      static_cast<double>(total) / r->rate);
    if (observer != nullptr) {
        PlayStart s;
        s.rate = r->rate;
        s.spanFrames = (wanted + skip + o.block - 1) / o.block * o.block;
        s.format = o.format;
        s.inChannels = inChannels;
        s.outChannels = r->outChannels;
        s.block = o.block;
        s.latency = latency;
        s.outputShift = latency - skip;
        observer->OnStart(s);
    }

    while (r->outputFrames < wanted) {
        while (next < timeline.size() &&
               timeline[next].seconds * r->rate <= static_cast<double>(r->framesFed)) {
            const ParamEvent& e = timeline[next++];
            if (observer != nullptr) {
                observer->OnParam(r->framesFed, e);
            }
            ApplyParam(effect, e);
            r->applied.push_back(DescribeParam(e));
            if (e.kind == ParamEvent::INT && e.id == kIdDeviceType) {
                device = e.intValue;
            }
        }
        outChannels = EffectOutChannels(configOut, device, outChannels);
        int frames = o.block;
        const int got = reader.Read(o.format, inChannels, frames, block.data());
        r->inputFrames += got;
        if (got > 0 && got < frames && r->inputFrames >= total) {
            frames = got;  // the file's last, shorter block, as a host may send it
        } else if (got == 0) {
            frames = o.block;  // silence that pushes the latency out
        }
        if (inOnset < 0) {
            const int f = FirstSoundFrame(block.data(), frames, inChannels, bytes);
            if (f >= 0) {
                inOnset = r->framesFed + f;
            }
        }
        memset(block.data() + static_cast<size_t>(frames) * inChannels * bytes, 0,
               static_cast<size_t>(frames) * (capacity - inChannels) * bytes);

        if (observer != nullptr) {
            observer->OnBlockIn(r->framesFed, block.data(), frames);
        }
        const auto t0 = std::chrono::steady_clock::now();
        effect->KivOutProcPlaySamples(reinterpret_cast<short*>(block.data()), frames, layout,
                                      format);
        r->processSeconds +=
                std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        if (observer != nullptr) {
            observer->OnBlockDone(r->framesFed, frames);
        }
        ++r->blocks;

        // A refused stereo block comes back as it went in: two channels.
        const int written = layout == 2 ? 2 : outChannels;
        int from = 0;
        if (skip > 0) {
            from = static_cast<int>(std::min<int64_t>(skip, frames));
            skip -= from;
        }
        const int keep =
                static_cast<int>(std::min<int64_t>(frames - from, wanted - r->outputFrames));
        if (keep > 0) {
            const uint8_t* out = block.data() + static_cast<size_t>(from) * written * bytes;
            if (outOnset < 0) {
                const int f = FirstSoundFrame(out, keep, written, bytes);
                if (f >= 0) {
                    outOnset = r->framesFed + from + f;
                }
            }
            if (observer != nullptr) {
                observer->OnOutput(r->outputFrames, out, keep, written);
            }
            if (!writer.Write(out, keep, written)) {
                *error = "cannot write " + o.output;
                return false;
            }
            r->outputFrames += keep;
        }
        r->framesFed += frames;
        progress.Update(static_cast<double>(r->framesFed) / r->rate);
    }
    progress.Done();
    writer.Close();
    if (inOnset >= 0 && outOnset >= 0) {
        r->measuredLatency = outOnset - inOnset;
    }

    if (o.dump) {
        ParamEvent e;
        e.id = kIdPcmDump;
        e.intValue = 0;
        ApplyParam(effect, e);  // closes and flushes the dump files
        r->applied.push_back("end: 100=0");
    }
    return true;
}
