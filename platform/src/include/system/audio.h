// The subset of the platform's audio definitions that the effect uses.
#pragma once

#include <stdint.h>

typedef enum {
    AUDIO_FORMAT_INVALID = 0xFFFFFFFFu,
    AUDIO_FORMAT_DEFAULT = 0,
    AUDIO_FORMAT_PCM_16_BIT = 0x1u,
    AUDIO_FORMAT_PCM_8_BIT = 0x2u,
    AUDIO_FORMAT_PCM_32_BIT = 0x3u,
    AUDIO_FORMAT_PCM_8_24_BIT = 0x4u,
    AUDIO_FORMAT_PCM_FLOAT = 0x5u,
    AUDIO_FORMAT_PCM_24_BIT_PACKED = 0x6u,
} audio_format_t;

// Bytes per sample of a PCM format; 0 for anything that is not linear PCM.
static inline uint32_t audio_bytes_per_sample(audio_format_t format) {
    switch (format) {
        case AUDIO_FORMAT_PCM_16_BIT:
            return 2;
        case AUDIO_FORMAT_PCM_8_BIT:
            return 1;
        case AUDIO_FORMAT_PCM_32_BIT:
        case AUDIO_FORMAT_PCM_8_24_BIT:
        case AUDIO_FORMAT_PCM_FLOAT:
            return 4;
        case AUDIO_FORMAT_PCM_24_BIT_PACKED:
            return 3;
        default:
            return 0;
    }
}
