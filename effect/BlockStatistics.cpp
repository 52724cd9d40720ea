// Per-block usage counting and the periodic status line of the sample pipeline.
#include "base/Log.h"
#include "effect/orlune.h"

namespace {

// Blocks, counted over all instances, between two status lines and checks of the daily usage
// report: 2.5 s of audio in 480-frame blocks at 48 kHz.
constexpr uint32_t kStatusLogBlocks = 250;

}  // namespace

void Orlune::RecordKivLog(int frames, int channels, audio_format_t format) {
    // The counters are shared by all instances: each block either counts itself or, as the
    // one that finds the count full, logs and starts it again.
    uint32_t blocks = sLogBlockCount.load(std::memory_order_relaxed);
    bool counted;
    do {
        counted = blocks < kStatusLogBlocks;
    } while (!sLogBlockCount.compare_exchange_weak(blocks, counted ? blocks + 1 : 1,
                                                   std::memory_order_relaxed));
    if (counted) {
        if (mIoInfo.enable != 0) {
            sLogEnableCount.fetch_add(1, std::memory_order_relaxed);
        }
    } else {
        ORLUNE_LOGI(kTagMobile,
                    "KivOutProcPlaySamples currentStatus = %s, enableCount is %u ,countchans is "
                    "%d, samples:%d, format:%x",
                    mIoInfo.enable == 1 ? "enabled" : "disabled",
                    sLogEnableCount.load(std::memory_order_relaxed), channels, frames,
                    static_cast<unsigned>(format));
        mEvents.TriggerSendLog();
    }
    mEvents.AddEnableFrame(mIoInfo.enable == 1);
    mEvents.AddVEFrame(gVoiceEnhanceEnable == 1);
    mEvents.AddDeviceFrame(mDeviceType);
}
