// Drives the sample pipeline with arbitrary sequences of block shapes (frame counts, channel
// layouts, sample formats, including those outside the host contract) and parameter changes.
// Every host buffer is allocated at exactly the size the host contract gives it, so a write
// past it is caught.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <android/log.h>
#include <system/audio.h>

#include "effect/orlune.h"
#include "params/ParamIds.h"

namespace {

// An algorithm that keeps the frame as it is, widened or folded to the layout it is asked
// for, and fails on request, touching only what the real one may touch.
int32_t gApplyResult = 0;

int32_t FuzzApply(void**, void**, void*, KivIoInfo* io) {
    int32_t* buf = io->inBuf;
    const int in = io->inChannels;
    if (in == 2 && io->outChannels == 4) {
        for (int i = io->frameLength - 1; i >= 0; --i) {
            const int32_t left = buf[2 * i], right = buf[2 * i + 1];
            buf[4 * i] = buf[4 * i + 2] = left;
            buf[4 * i + 1] = buf[4 * i + 3] = right;
        }
    } else if (in > 2) {
        for (int i = 0; i < io->frameLength; ++i) {
            buf[2 * i] = buf[i * in];
            buf[2 * i + 1] = buf[i * in + 1];
        }
    }
    return gApplyResult;
}

// The device's configured output channels, in the properties file of a private device root
// that also has a dump directory.
void SetChannelOut(int value) {
    static const std::string properties = [] {
        char pattern[] = "/tmp/orlune-pipeline-fuzz-XXXXXX";
        const std::string root = mkdtemp(pattern) != nullptr ? pattern : "/tmp";
        std::filesystem::create_directories(root + "/data/audio_debug");
        setenv("ORLUNE_DEVICE_ROOT", root.c_str(), 1);
        setenv("ORLUNE_PROPERTIES", (root + "/properties").c_str(), 1);
        return root + "/properties";
    }();
    FILE* f = fopen(properties.c_str(), "w");
    if (f != nullptr) {
        fprintf(f, "msc.brisel.config_channel_out=%d\n", value);
        fclose(f);
    }
}

void InstallTuning() {
    ConfigUpdate update;
    for (int level = 0; level <= 6; ++level) {
        update.Tables().gVituralMapTable[4000 + level] = RealParamIdStru{41, 42};
    }
    update.Tables().gRealMapTable[41] = AudioOrluneMobilePara{};
    update.Tables().gRealMapTableExt[42] = AudioOrluneMobileParaExt{};
}

// Reads the input front to back, little-endian; zeros once it is used up.
struct Reader {
    const uint8_t* data;
    size_t size;
    size_t pos = 0;
    bool Empty() const { return pos >= size; }
    uint8_t Byte() { return pos < size ? data[pos++] : 0; }
    uint16_t U16() { return static_cast<uint16_t>(Byte() | (Byte() << 8)); }
    uint32_t U32() { return static_cast<uint32_t>(U16()) | (static_cast<uint32_t>(U16()) << 16); }
};

constexpr int kChannels[] = {2, 4, 6, 8, 10, 1, 3, 0, 12, -2};
constexpr audio_format_t kFormats[] = {
        AUDIO_FORMAT_PCM_16_BIT,        AUDIO_FORMAT_PCM_32_BIT, AUDIO_FORMAT_PCM_FLOAT,
        AUDIO_FORMAT_PCM_24_BIT_PACKED, AUDIO_FORMAT_PCM_8_BIT,  AUDIO_FORMAT_PCM_8_24_BIT,
        static_cast<audio_format_t>(7), AUDIO_FORMAT_DEFAULT,
};
constexpr size_t kMaxFramesPerInput = 200000;

// Bytes the host's buffer holds for a block of this shape: room for four channels with the
// four-channel layout, otherwise the block's own channels.
size_t HostBytes(int frames, int channels, audio_format_t format) {
    if (frames <= 0 || channels <= 0) {
        return 1;
    }
    return static_cast<size_t>(frames) * static_cast<size_t>(channels == 4 ? 4 : channels) *
           std::max<size_t>(audio_bytes_per_sample(format), 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    SetChannelOut(2);
    InstallTuning();
    gApplyResult = 0;

    std::unique_ptr<Orlune> o(new Orlune());
    o->mAlgoInit = [](void**, void**) { return 0; };
    o->mAlgoApply = FuzzApply;
    o->mAlgoSetPara = [](void**, void*, const AudioOrluneMobilePara*,
                         const AudioOrluneMobileParaExt*) { return 0; };
    o->mAlgoGetPara = [](void**, void*, AudioOrluneMobilePara*, AudioOrluneMobileParaExt*) {
        return 0;
    };
    o->mAlgoGetVersion = [](char* versions) {
        memcpy(versions, "fuzz", 5);
        return 0;
    };
    o->mAlgoGetSize = [](int32_t* sizes, KivIoInfo*) { return sizes[0] = 0; };
    o->initialised = 1;
    // The set-up call finds the algorithm bound and runs the rest of its steps.
    o->KivOutProcPlayInit();

    Reader in{data, size};
    size_t framesUsed = 0;
    std::vector<uint8_t> buffer;
    while (!in.Empty() && framesUsed < kMaxFramesPerInput) {
        const uint8_t op = in.Byte();
        switch (op % 8) {
            case 0:
            case 1:
            case 2: {  // a block
                const int16_t rawFrames = static_cast<int16_t>(in.U16());
                const int frames = op % 8 == 2 ? rawFrames : (rawFrames & 0x1fff);
                const int channels = kChannels[in.Byte() % (sizeof(kChannels) / sizeof(int))];
                const audio_format_t format =
                        kFormats[in.Byte() % (sizeof(kFormats) / sizeof(kFormats[0]))];
                // Up to 64 bytes from the input, a pattern built on them for the rest.
                buffer.assign(HostBytes(frames, channels, format), 0);
                for (size_t i = 0; i < buffer.size(); ++i) {
                    buffer[i] = i < 64 ? (in.Empty() ? static_cast<uint8_t>(i * 37) : in.Byte())
                                       : static_cast<uint8_t>(buffer[i % 64] + i);
                }
                o->KivOutProcPlaySamples(reinterpret_cast<short*>(buffer.data()), frames, channels,
                                         format);
                framesUsed += frames > 0 ? static_cast<size_t>(frames) : 1;
                break;
            }
            case 3: {  // an integer parameter
                // clang-format off
                static constexpr int kIds[] = {
                        kIdWidenEnable, kIdRingingState, kIdOrientation, kIdChannelSwap,
                        kIdStartGuard, kIdMultiMovie, kIdDeviceType, kIdBtHeadsetType,
                        kIdWiredHeadsetType, kIdHpModeUi0, kIdHpSmartMode, kIdEffectEnable,
                        kIdScene, kIdHighTemp, kIdSwapInhibit, kIdVolumeIndexMusic,
                        kIdStartStream, kIdStopStream, kIdFoldState, kIdPcmDump};
                // clang-format on
                const int id = kIds[in.Byte() % (sizeof(kIds) / sizeof(int))];
                int value = static_cast<int8_t>(in.Byte());
                if (id == kIdPcmDump) {
                    value &= 1;  // dumps on and off; their files stay small
                }
                o->KivParamsSetInt(id, value);
                break;
            }
            case 4: {  // a float parameter, any bit pattern
                const uint32_t bits = in.U32();
                float value;
                memcpy(&value, &bits, sizeof(value));
                o->KivParamsSetFloat(kIdVolumeDb, value);
                break;
            }
            case 5:  // the device's configured output channels, read at re-initialisation
                SetChannelOut((in.Byte() & 1) != 0 ? 4 : 2);
                break;
            case 6:  // the algorithm starts or stops failing
                gApplyResult = (in.Byte() & 1) != 0 ? -5 : 0;
                break;
            case 7:  // a reset request or a query
                if ((in.Byte() & 1) != 0) {
                    o->mResetRequest = 1;
                } else {
                    o->KivParamsGet(android::String8("CHANNEL_SWAPPED"));
                }
                break;
        }
    }
    o->SetAudioDump(0);  // the instance does not close dump files itself
    return 0;
}
