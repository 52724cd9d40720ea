// Sample-format conversion with the platform's arithmetic.
#pragma once

#include <stddef.h>
#include <system/audio.h>

extern "C" {
// Converts `count` samples from `src_format` to `dst_format`. Same-format pairs copy (nothing
// when dst == src); 16-bit, float and 24-bit packed convert to and from 32-bit; every other
// pair leaves dst untouched. dst and src are either separate or start at the same address.
void memcpy_by_audio_format(void* dst, audio_format_t dst_format, const void* src,
                            audio_format_t src_format, size_t count);
}
