// The per-block sample pipeline: host samples in, algorithm frames through, processed samples
// back in the host's format with one algorithm frame of latency.
#include <string.h>

#include <audio_utils/format.h>

#include "base/Log.h"
#include "effect/OutChannels.h"
#include "effect/PipelineLimits.h"
#include "base/VolumeDb.h"
#include "effect/orlune.h"

namespace {

// Why a block is refused. A refused block is handed back untouched and changes no state.
enum BlockReject {
    BLOCK_OK = 0,
    BLOCK_NULL_BUFFER,
    BLOCK_BAD_FRAMES,
    BLOCK_BAD_CHANNELS,
    BLOCK_BAD_FORMAT,
    BLOCK_INPUT_OVERRUN,
    BLOCK_OUTPUT_TOO_WIDE,
};

// Formats that the platform converts to and from 32-bit; every other one would leave the
// cache holding stale samples.
bool FormatSupported(audio_format_t format) {
    return format == AUDIO_FORMAT_PCM_16_BIT || format == AUDIO_FORMAT_PCM_32_BIT ||
           format == AUDIO_FORMAT_PCM_FLOAT || format == AUDIO_FORMAT_PCM_24_BIT_PACKED;
}

// Samples the host buffer holds: frames times channels (with 4 channels the first two carry
// the input and all four are written back).
int64_t HostCapacity(int frames, int channels) {
    return static_cast<int64_t>(frames) * channels;
}

// Folds two counts into one value that tells block shapes apart for the once-per-change log
// (a x 16 + b: distinct while b is below 16, as the host's channel counts 2 to 10 are).
int ShapeKey(int a, int b) {
    return static_cast<int>(static_cast<uint32_t>(a) * 16u + static_cast<uint32_t>(b));
}

void LogReject(BlockReject why, int value, int frames, int channels, audio_format_t format,
               int32_t freeSamples, int32_t outChannels) {
    static const char* const kFn = "KivOutProcPlaySamples";
    switch (why) {
        case BLOCK_NULL_BUFFER:
            ORLUNE_LOGE(kTagMobile, "%s: null buffer of %d frames, block ignored", kFn, frames);
            break;
        case BLOCK_BAD_FRAMES:
            ORLUNE_LOGE(kTagMobile, "%s: invalid frame count %d, block returned untouched", kFn,
                        value);
            break;
        case BLOCK_BAD_CHANNELS:
            ORLUNE_LOGE(kTagMobile, "%s: invalid channel count %d, block returned untouched", kFn,
                        value);
            break;
        case BLOCK_BAD_FORMAT:
            ORLUNE_LOGE(kTagMobile, "%s: unsupported format %#x, block returned untouched", kFn,
                        static_cast<unsigned>(format));
            break;
        case BLOCK_INPUT_OVERRUN:
            ORLUNE_LOGE(kTagMobile,
                        "%s: block of %d frames x %d channels overruns the input cache (%d "
                        "samples free), returned untouched",
                        kFn, frames, channels, freeSamples);
            break;
        case BLOCK_OUTPUT_TOO_WIDE:
            ORLUNE_LOGE(kTagMobile,
                        "%s: %d output channels do not fit a %d-channel block, returned "
                        "untouched",
                        kFn, outChannels, channels);
            break;
        case BLOCK_OK:
            break;
    }
}

}  // namespace

void Orlune::UpdateKivAndHandleOutChannel() {
    const outchannels::OutChannels out = outchannels::PerBlock(
            mConfigChannelOut, mDeviceType, {mOutChannelCount, mIoInfo.outChannels});
    mOutChannelCount = out.host;
    mIoInfo.outChannels = out.algo;
}

// The whole block runs under the instance lock and reads one set of parameter tables, so
// parameter changes, set-up steps and dump switches of other threads land between blocks.
void Orlune::KivOutProcPlaySamples(short* buffer, int frames, int channels, audio_format_t format) {
    InstanceLock lock(*this);
    UpdateKivAndHandleOutChannel();
    if (initialised == 0) {
        return;
    }

    // Blocks outside the host contract are refused before they touch any state: processing
    // them would read or write past a buffer or run on stale samples.
    const int pc = channels == 4 ? 2 : channels;
    const int32_t writePos =
            (pc != mChannelCount || inBufOffset > kInputCacheSamples) ? 0 : inBufOffset;
    BlockReject why = BLOCK_OK;
    int value = 0;
    if (frames < 0) {
        why = BLOCK_BAD_FRAMES;
        value = frames;
    } else if (channels < 1) {
        why = BLOCK_BAD_CHANNELS;
        value = channels;
    } else if (buffer == nullptr && frames > 0) {
        why = BLOCK_NULL_BUFFER;
    } else if (!FormatSupported(format)) {
        why = BLOCK_BAD_FORMAT;
        value = static_cast<int>(format);
    } else if (static_cast<int64_t>(frames) * pc > kInputCacheSamples - writePos) {
        why = BLOCK_INPUT_OVERRUN;
        value = ShapeKey(frames, channels);
    } else if (static_cast<int64_t>(frames) * mOutChannelCount > HostCapacity(frames, channels)) {
        why = BLOCK_OUTPUT_TOO_WIDE;
        value = ShapeKey(channels, mOutChannelCount);
    }
    if (why != BLOCK_OK) {
        if (why != mRejectReason || value != mRejectValue) {
            LogReject(why, value, frames, channels, format, kInputCacheSamples - writePos,
                      mOutChannelCount);
        }
        mRejectReason = why;
        mRejectValue = value;
        return;
    }
    mRejectReason = BLOCK_OK;
    mRejectValue = 0;
    TablesPin tables(*this);

    mIoInfo.enable = (stereoWidenEnable != 0 && param32Value != 0) ? 1 : 0;

    if (mResetRequest == 1) {
        ORLUNE_LOGI(kTagMobile, "KIV reset");
        const int32_t ret = mAlgoInit(mAlgoMemTable, mAlgoMemTable + kAlgoMemBanks);
        if (ret != 0) {
            ORLUNE_LOGE(kTagMobile, "initialisation failed ret = %d", ret);
            mEvents.errorCodes.AddErrorCode(ret);
        }
        mResetRequest = 0;
    }

    RecordKivLog(frames, pc, format);
    if (pc != mChannelCount) {
        mChannelCount = pc;
        InitKiv(true);
    }

    // The tuning for the current device (the volume word it sets is refreshed below too).
    KivParamsSetNS(pc);

    ReadInputToBuffer(buffer, frames * pc, format);
    const bool single = pc == 2 && SingleFrameBlock(frames);
    const bool tailStale = mOutputTailStale;
    if (tailStale && !single) {
        // What the shift after the last block would have left behind the held frame: a copy.
        memcpy(mOutputBuffer + pipeline::kStereoFrameSamples, mOutputBuffer,
               pipeline::kStereoFrameSamples * sizeof(int32_t));
    }
    mOutputTailStale = single;

    if (pc != 2) {
        KivMultichannelPlay(pc);
    } else {
        mIoInfo.inChannels = 2;
        if (mIoInfo.outChannels == 2) {
            SwapChannel(frames, 2);
        }
        if (pipeline::UiRuleDisables(*this, true)) {
            mIoInfo.enable = 0;
        }
        if (mMuteCountdown > 0) {
            mMuteCountdown -= pipeline::kGuardPerBlock;
        }
        const int n = inBufOffset / pipeline::kStereoFrameSamples;
        if (single) {
            // The usual block: one frame held, one made, one written back. The held frame goes
            // to the host first (its input is already in the cache), so the new one is made at
            // the buffer's start and nothing is shifted. A failed run leaves in place what the
            // shift would have brought there: the frame behind the held one.
            memcpy_by_audio_format(buffer, format, mOutputBuffer, AUDIO_FORMAT_PCM_32_BIT,
                                   pipeline::kStereoFrameSamples);
            if (!KivApply(mInputCache, mOutputBuffer) && !tailStale) {
                memcpy(mOutputBuffer, mOutputBuffer + pipeline::kStereoFrameSamples,
                       pipeline::kStereoFrameSamples * sizeof(int32_t));
            }
            outBufOffset = 0;
            RemoveProcessedSamples(pipeline::kStereoFrameSamples, 1);
            return;
        }
        ProcessFadeInOut(n);
        RemoveProcessedSamples(n * pipeline::kStereoFrameSamples, n);
    }
    if (mOutChannelCount == 4) {
        SwapFourChannel(frames, 4);
    }

    const int64_t outSamples = static_cast<int64_t>(mOutChannelCount) * frames;
    if (outSamples > HostCapacity(frames, channels)) {
        // Only a re-initialisation inside this block can widen the output after the checks
        // above; the processed samples are dropped rather than written past the host buffer.
        ORLUNE_LOGE(kTagMobile,
                    "%s: %d output channels do not fit a %d-channel block, output dropped",
                    "KivOutProcPlaySamples", mOutChannelCount, channels);
        const int32_t drop =
                static_cast<int32_t>(outSamples < outBufOffset ? outSamples : outBufOffset);
        memmove(mOutputBuffer, mOutputBuffer + drop,
                static_cast<size_t>(outBufOffset - drop) * sizeof(int32_t));
        outBufOffset -= drop;
        return;
    }
    WriteBufferToOutput(buffer, static_cast<int>(outSamples), format);
}

// A stereo block of one algorithm frame that finds exactly that frame in the input cache and one
// frame held in the output buffer, with two output channels and no dump running: it ends with the
// held frame written back and the new one held, whichever way it is run.
bool Orlune::SingleFrameBlock(int frames) const {
    return frames == kAlgoFrame && inBufOffset == pipeline::kStereoFrameSamples &&
           outBufOffset == pipeline::kStereoFrameSamples && mOutChannelCount == 2 &&
           mDumpEnabled == 0;
}

void Orlune::ReadInputToBuffer(const short* buffer, int samples, audio_format_t format) {
    // The caller has checked that the samples fit behind the write position.
    const int32_t writePos = inBufOffset > kInputCacheSamples ? 0 : inBufOffset;
    mIoInfo.volume = VolumeDbToInt(volumeDb);
    inBufOffset = writePos + samples;
    if (samples <= 0) {
        return;
    }
    memcpy_by_audio_format(mInputCache + writePos, AUDIO_FORMAT_PCM_32_BIT, buffer, format,
                           static_cast<size_t>(samples));
    DumpPcm(mInputCache + writePos, samples, DUMP_HANDLE_IN);
}

void Orlune::RemoveProcessedSamples(int consumed, int frames) {
    const int32_t remaining = inBufOffset - consumed;
    if (consumed > 0 && remaining > 0) {
        memmove(mInputCache, mInputCache + consumed,
                static_cast<size_t>(remaining) * sizeof(int32_t));
    }
    inBufOffset = remaining > 0 ? remaining : 0;
    // Frames count as done whether or not the algorithm ran on them. The offset never passes
    // the buffer's end, so the write-back below never reads beyond it.
    const int64_t advanced =
            outBufOffset +
            (static_cast<int64_t>(mOutChannelCount) * pipeline::kStereoFrameSamples * frames) / 2;
    outBufOffset =
            static_cast<int32_t>(advanced > kOutputBufferSamples ? kOutputBufferSamples : advanced);
}

void Orlune::WriteBufferToOutput(short* buffer, int samples, audio_format_t format) {
    if (samples <= 0 || outBufOffset < samples) {
        return;
    }
    DumpPcm(mOutputBuffer, samples, DUMP_HANDLE_OUT);
    memcpy_by_audio_format(buffer, format, mOutputBuffer, AUDIO_FORMAT_PCM_32_BIT,
                           static_cast<size_t>(samples));
    const int32_t remaining = outBufOffset - samples;
    if (remaining > 0) {
        memmove(mOutputBuffer, mOutputBuffer + samples,
                static_cast<size_t>(remaining) * sizeof(int32_t));
    }
    outBufOffset = remaining;
}
