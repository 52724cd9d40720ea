// memcpy_by_audio_format with the platform's arithmetic (platform-facts.md).
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

using ReadFn = int32_t (*)(const u8*);
using WriteFn = void (*)(u8*, int32_t);

ReadFn Reader(audio_format_t f) {
    switch (f) {
        case AUDIO_FORMAT_PCM_16_BIT:
            return From16;
        case AUDIO_FORMAT_PCM_FLOAT:
            return FromFloat;
        case AUDIO_FORMAT_PCM_24_BIT_PACKED:
            return From24;
        default:
            return nullptr;
    }
}
WriteFn Writer(audio_format_t f) {
    switch (f) {
        case AUDIO_FORMAT_PCM_16_BIT:
            return To16;
        case AUDIO_FORMAT_PCM_FLOAT:
            return ToFloat;
        case AUDIO_FORMAT_PCM_24_BIT_PACKED:
            return To24;
        default:
            return nullptr;
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
        WriteFn write = Writer(dst_format);
        if (write == nullptr) {
            return;
        }
        // Shrinking (or same size): forwards, so that dst == src works.
        size_t dstSize = audio_bytes_per_sample(dst_format);
        for (size_t i = 0; i < count; ++i) {
            write(d + i * dstSize, Load32(s + i * 4));
        }
    } else if (dst_format == AUDIO_FORMAT_PCM_32_BIT) {
        ReadFn read = Reader(src_format);
        if (read == nullptr) {
            return;
        }
        // Expanding: backwards, so that dst == src works.
        size_t srcSize = audio_bytes_per_sample(src_format);
        for (size_t i = count; i-- > 0;) {
            Store32(d + i * 4, read(s + i * srcSize));
        }
    }
}
