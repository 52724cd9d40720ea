// Per-block usage counting and the periodic status line of the sample pipeline.
#include "effect/LogTags.h"
#include "effect/orlune.h"

namespace {

constexpr uint32_t kStatusLogBlocks = 250;

}  // namespace

void Orlune::RecordKivLog(int frames, int channels, audio_format_t format) {
    // The counters are shared by all instances and, like the device's, taken without a lock.
    if (sLogBlockCount < kStatusLogBlocks) {
        ++sLogBlockCount;
        if (mIoInfo.enable != 0) {
            ++sLogEnableCount;
        }
    } else {
        ORLUNE_LOGI(
                "KivOutProcPlaySamples currentStatus = %s, enableCount is %u ,countchans is "
                "%d, samples:%d, format:%x",
                mIoInfo.enable == 1 ? "enabled" : "disabled", sLogEnableCount, channels, frames,
                static_cast<unsigned>(format));
        sLogBlockCount = 1;
        mEvents.TriggerSendLog();
    }
    mEvents.AddEnableFrame(mIoInfo.enable == 1);
    mEvents.AddVEFrame(gVoiceEnhanceEnable == 1);
    mEvents.AddDeviceFrame(mDeviceType);
}
