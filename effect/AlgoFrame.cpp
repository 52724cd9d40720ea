// One stereo algorithm frame: pop eliminator, loud-output detector taps, the algorithm itself
// and the start-up output guard, and the loop that feeds whole frames through it.
#include <string.h>

#include "base/Log.h"
#include "effect/PipelineLimits.h"
#include "effect/orlune.h"
#include "safe_funcs.h"

int32_t* Orlune::PopEliminate(const int* buf, int samples, bool mode) {
    return mPopElim->CuttingEdgeProcess(&mPopHandle, buf, static_cast<unsigned>(samples) * 4u, mode,
                                        static_cast<unsigned>(mPopCacheSize));
}

void Orlune::ProcessFadeInOut(int frameCount) {
    // A frame that would not fit into the output buffer is treated like an invalid offset: the
    // four-channel bound alone would let the last frames run past the buffer's end.
    if (!pipeline::OutBufOffsetValid(*this) ||
        !pipeline::FramesFit(*this, frameCount, mOutChannelCount)) {
        ORLUNE_LOGE(kTagMobile, "ProcessFadeInOut outBufOffset is invalid");
        return;
    }
    if (inBufOffset < pipeline::kStereoFrameSamples) {
        return;
    }
    for (int k = 0; k < frameCount; ++k) {
        KivApply(mInputCache + k * pipeline::kStereoFrameSamples,
                 mOutputBuffer + outBufOffset + k * mOutChannelCount * kAlgoFrame);
    }
}

// `in` is one stereo frame of the input cache. The pop eliminator reads it there and leaves its
// result in mIoBuffer, the algorithm's input, so the frame is copied there only when it goes to
// the algorithm unprocessed. False when the algorithm failed and `out` was left as it was.
bool Orlune::KivApply(const int* in, int* out) {
    static const char* const kFn = "KivApply";
    bool popped = false;
    if (mChannelCount == 2) {
        const bool mode = pipeline::ClickRemoverFades(Tables().gUiType, mIoInfo.enable != 0,
                                                      HP_MODE, hpModeIndex);
        const int32_t* block = PopEliminate(in, pipeline::kStereoFrameSamples, mode);
        if (block == mIoBuffer) {
            popped = true;
        } else if (block != nullptr) {
            const int ret = memcpy_s(mIoBuffer, sizeof(mIoBuffer), block, kPopBlockBytes);
            if (ret != EOK) {
                ORLUNE_LOGE(kTagMobile, "%s: memcpy failed, ret = %d", kFn, ret);
            }
            popped = ret == EOK;
        }
    }
    if (!popped) {
        memcpy(mIoBuffer, in, pipeline::kStereoFrameSamples * sizeof(int32_t));
    }
    DumpPcm(mIoBuffer, kAlgoFrame * mIoInfo.inChannels, DUMP_ALGO_IN);

    const bool detect = mDeviceType == 1 && startStreamState == 3;
    if (detect) {
        mLad.UpdateProcTime(mLadInfoIn, mLadInfoOut);
        mLad.SetInputBuffer(mLadInfoIn, mIoBuffer, kAlgoFrame, pipeline::kAlgoSampleRate,
                            AUDIO_FORMAT_PCM_32_BIT, mIoInfo.inChannels);
    }
    const int32_t ret =
            mAlgoApply(mAlgoMemTable, mAlgoMemTable + kAlgoMemBanks, mAlgoParamArea, &mIoInfo);
    mEvents.AddAlgoRunTimes();
    if (detect) {
        mLad.SetOutputBuffer(mLadInfoOut, mIoBuffer, kAlgoFrame, pipeline::kAlgoSampleRate,
                             AUDIO_FORMAT_PCM_32_BIT, mIoInfo.outChannels);
        mLad.CheckBuffer(mLadInfoIn, mLadInfoOut);
    }
    if (ret != 0) {
        ORLUNE_LOGE(kTagMobile, "%s: Orlune algorithm apply failed, ret = %d", kFn, ret);
        mEvents.errorCodes.AddErrorCode(ret);
        return false;
    }
    DumpPcm(mIoBuffer, kAlgoFrame * mIoInfo.outChannels, DUMP_ALGO_OUT);

    const int oc = mOutChannelCount;
    const bool sameLayout = oc == 2 || mDeviceType == 1;
    const bool guard = pipeline::GuardActive(mMuteCountdown, stereoWidenEnable);
    if (sameLayout && !guard) {
        memcpy(out, mIoBuffer, static_cast<size_t>(oc) * kAlgoFrame * sizeof(int32_t));
        return true;
    }
    for (int i = 0; i < kAlgoFrame; ++i) {
        int* dst = out + i * oc;
        if (sameLayout) {
            memcpy(dst, mIoBuffer + i * oc, static_cast<size_t>(oc) * sizeof(int32_t));
        } else {
            // Four channels out on a headphone device: the algorithm's stereo pair twice.
            dst[0] = mIoBuffer[2 * i];
            dst[1] = mIoBuffer[2 * i + 1];
            dst[2] = mIoBuffer[2 * i];
            dst[3] = mIoBuffer[2 * i + 1];
        }
        if (guard) {
            if (mMuteArmed == 1 && mIoInfo.enable != 0) {
                memset(dst, 0, static_cast<size_t>(oc) * sizeof(int32_t));
            } else if (out[i] < -300 || out[i] > 300) {
                // Armed by the first sample beyond +-300 (32-bit scale, far below audibility).
                // Sample i of the destination, not of frame i: kept as the device does it.
                mMuteArmed = 1;
            }
        }
    }
    return true;
}
