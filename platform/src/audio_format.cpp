// Host version of the platform's memcpy_by_audio_format, with its arithmetic. It converts
// between 32-bit samples and 16-bit, packed 24-bit or float ones: 16- and 24-bit samples sit
// in the top bits of the 32-bit word (narrowing drops the low bits); floats are scaled by 2^31
// and rounded, saturating at -1 and 1, with NaN read as 0. The same format is a plain copy;
// any other pair leaves the destination untouched.
#include <audio_utils/format.h>

#include <math.h>
#include <stdint.h>
#include <string.h>

namespace {

using u8 = unsigned char;

int32_t Load32(const u8* p) {
    int32_t v;
    memcpy(&v, p, sizeof v);
    return v;
}
void Store32(u8* p, int32_t v) {
    memcpy(p, &v, sizeof v);
}

int32_t From16(const u8* p) {
    int16_t v;
    memcpy(&v, p, sizeof v);
    return static_cast<int32_t>(static_cast<uint32_t>(v) << 16);
}
void To16(u8* p, int32_t x) {
    int16_t v = static_cast<int16_t>(x >> 16);
    memcpy(p, &v, sizeof v);
}

int32_t FromFloat(const u8* p) {
    float f;
    memcpy(&f, p, sizeof f);
    if (isnan(f)) {
        return 0;
    }
    if (f <= -1.0f) {
        return INT32_MIN;
    }
    if (f >= 1.0f) {
        return INT32_MAX;
    }
    return static_cast<int32_t>(round(static_cast<double>(f) * 2147483648.0));
}
void ToFloat(u8* p, int32_t x) {
    float f = static_cast<float>(x) * (1.0f / 2147483648.0f);
    memcpy(p, &f, sizeof f);
}

int32_t From24(const u8* p) {
    uint32_t v = (uint32_t{p[0]} << 8) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 24);
    return static_cast<int32_t>(v);
}
void To24(u8* p, int32_t x) {
    uint32_t v = static_cast<uint32_t>(x >> 8);
    p[0] = static_cast<u8>(v);
    p[1] = static_cast<u8>(v >> 8);
    p[2] = static_cast<u8>(v >> 16);
}

// Separate buffers never overlap (the platform's contract), which lets the compiler vectorise.
template <size_t SrcSize, int32_t (*Read)(const u8*)>
void ExpandSeparate(u8* __restrict d, const u8* __restrict s, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        Store32(d + i * 4, Read(s + i * SrcSize));
    }
}

// The loops are instantiated per format so that each sample's conversion is inlined: this
// runs twice per host block on the audio thread.
template <size_t SrcSize, int32_t (*Read)(const u8*)>
void ExpandTo32(u8* d, const u8* s, size_t count) {
    if (d == s) {
        // In place: backwards, so that no source sample is overwritten before it is read.
        for (size_t i = count; i-- > 0;) {
            Store32(d + i * 4, Read(s + i * SrcSize));
        }
    } else {
        ExpandSeparate<SrcSize, Read>(d, s, count);
    }
}

// Shrinking (or same size): forwards, which also works in place.
template <size_t DstSize, void (*Write)(u8*, int32_t)>
void ShrinkSeparate(u8* __restrict d, const u8* __restrict s, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        Write(d + i * DstSize, Load32(s + i * 4));
    }
}

template <size_t DstSize, void (*Write)(u8*, int32_t)>
void ShrinkFrom32(u8* d, const u8* s, size_t count) {
    if (d != s) {
        ShrinkSeparate<DstSize, Write>(d, s, count);
        return;
    }
    for (size_t i = 0; i < count; ++i) {
        Write(d + i * DstSize, Load32(s + i * 4));
    }
}

}  // namespace

extern "C" void memcpy_by_audio_format(void* dst, audio_format_t dst_format, const void* src,
                                       audio_format_t src_format, size_t count) {
    if (dst == nullptr || src == nullptr || count == 0) {
        return;
    }
    if (dst_format == src_format) {
        if (dst != src) {
            memcpy(dst, src, count * audio_bytes_per_sample(src_format));
        }
        return;
    }
    u8* d = static_cast<u8*>(dst);
    const u8* s = static_cast<const u8*>(src);
    if (src_format == AUDIO_FORMAT_PCM_32_BIT) {
        switch (dst_format) {
            case AUDIO_FORMAT_PCM_16_BIT:
                ShrinkFrom32<2, To16>(d, s, count);
                break;
            case AUDIO_FORMAT_PCM_FLOAT:
                ShrinkFrom32<4, ToFloat>(d, s, count);
                break;
            case AUDIO_FORMAT_PCM_24_BIT_PACKED:
                ShrinkFrom32<3, To24>(d, s, count);
                break;
            default:
                break;  // not converted by the platform: dst untouched
        }
    } else if (dst_format == AUDIO_FORMAT_PCM_32_BIT) {
        switch (src_format) {
            case AUDIO_FORMAT_PCM_16_BIT:
                ExpandTo32<2, From16>(d, s, count);
                break;
            case AUDIO_FORMAT_PCM_FLOAT:
                ExpandTo32<4, FromFloat>(d, s, count);
                break;
            case AUDIO_FORMAT_PCM_24_BIT_PACKED:
                ExpandTo32<3, From24>(d, s, count);
                break;
            default:
                break;
        }
    }
}
