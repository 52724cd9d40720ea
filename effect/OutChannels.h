// How many channels the effect writes back to the host and asks of the algorithm, from the
// configured output channel count ("msc.brisel.config_channel_out") and the output device
// (1 loudspeaker, 2 wired headset, 3 Bluetooth A2DP). Shared by the pipeline and by hosts that
// must size their buffers the same way (orlune-play).
#pragma once

#include <stdint.h>

namespace outchannels {

struct OutChannels {
    int32_t host;  // written back per frame
    int32_t algo;  // produced by the algorithm per frame
};

// At set-up and re-initialisation: four channels only when configured for exactly four and on
// the loudspeaker or a wired headset; the algorithm is asked for the same count.
constexpr int32_t AtInit(int32_t configChannelOut, int32_t device) {
    return configChannelOut == 4 && (device == 1 || device == 2) ? 4 : 2;
}

// At the start of every block. Configured for two, both are two. Configured otherwise, each
// known device has its own pair: the loudspeaker four and four, a wired headset four from the
// algorithm's two (each pair written twice), Bluetooth two and two; any other device value
// keeps `current`.
constexpr OutChannels PerBlock(int32_t configChannelOut, int32_t device, OutChannels current) {
    if (configChannelOut == 2) {
        return {2, 2};
    }
    switch (device) {
        case 1:
            return {4, 4};
        case 2:
            return {4, 2};
        case 3:
            return {2, 2};
        default:
            return current;
    }
}

}  // namespace outchannels
