// Multichannel input (8 or 10 channels; every other count is framed as 8): whole frames go
// through the algorithm, which folds each to one stereo pair.
#include <string.h>

#include "base/Log.h"
#include "effect/PipelineLimits.h"
#include "effect/orlune.h"

void Orlune::KivMultichannelPlay(int channels) {
    const bool ten = channels == 10;
    const int block = ten ? pipeline::kTenChannelFrameSamples : pipeline::kEightChannelFrameSamples;
    const int n = inBufOffset / block;
    mIoInfo.inChannels = ten ? 10 : 8;
    if (pipeline::UiRuleDisables(*this, false)) {
        mIoInfo.enable = 0;
    }
    // As on the stereo path, frames that would run past the output buffer count as an invalid
    // offset; here nothing is consumed and the input stays cached.
    if (!pipeline::OutBufOffsetValid(*this) || !pipeline::FramesFit(*this, n, mOutChannelCount)) {
        ORLUNE_LOGE(kTagMobile, "KivMultichannelPlay outBufOffset is invalid");
        return;
    }

    const int oc = mOutChannelCount;
    for (int k = 0; k < n; ++k) {
        memcpy(mIoBuffer, mInputCache + k * block, static_cast<size_t>(block) * sizeof(int32_t));
        DumpPcm(mIoBuffer, kAlgoFrame * mIoInfo.inChannels, DUMP_ALGO_IN);
        const int32_t ret =
                mAlgoApply(mAlgoMemTable, mAlgoMemTable + kAlgoMemBanks, mAlgoParamArea, &mIoInfo);
        mEvents.AddAlgoRunTimes();
        if (ret != 0) {
            ORLUNE_LOGE(kTagMobile, "Quex_KIV_Apply result is %d", ret);
            mEvents.errorCodes.AddErrorCode(ret);
        }
        DumpPcm(mIoBuffer, kAlgoFrame * mIoInfo.outChannels, DUMP_ALGO_OUT);
        if (ret == 0) {
            int32_t* dst = mOutputBuffer + outBufOffset + k * oc * kAlgoFrame;
            for (int i = 0; i < kAlgoFrame; ++i) {
                const int32_t l = mIoBuffer[2 * i];
                const int32_t r = mIoBuffer[2 * i + 1];
                dst[i * oc] = l;
                dst[i * oc + 1] = r;
                if (oc == 4) {
                    dst[i * oc + 2] = l;
                    dst[i * oc + 3] = r;
                }
            }
        }
    }

    const int consumed = n * block;
    if (n > 0 && inBufOffset > consumed) {
        memmove(mInputCache, mInputCache + consumed,
                static_cast<size_t>(inBufOffset - consumed) * sizeof(int32_t));
    }
    inBufOffset -= consumed;
    if (inBufOffset < 0) {
        ORLUNE_LOGE(kTagMobile, "kiv error: inBufOffset < 0");
        inBufOffset = 0;
    }
    outBufOffset += oc * (2 * kAlgoFrame * n) / 2;
}
