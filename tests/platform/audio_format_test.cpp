// memcpy_by_audio_format: the platform's arithmetic for every pair with 32-bit on one side, into
// a separate buffer as the effect converts. (The effect refuses the other formats before
// converting.)
#include <audio_utils/format.h>

#include <gtest/gtest.h>
#include <math.h>
#include <string.h>

#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
constexpr audio_format_t k16 = AUDIO_FORMAT_PCM_16_BIT;
constexpr audio_format_t k32 = AUDIO_FORMAT_PCM_32_BIT;
constexpr audio_format_t kFloat = AUDIO_FORMAT_PCM_FLOAT;
constexpr audio_format_t k24 = AUDIO_FORMAT_PCM_24_BIT_PACKED;
constexpr int32_t kMin = INT32_MIN, kMax = INT32_MAX;
constexpr float kStep = 1.0f / 2147483648.0f;  // 2^-31

template <typename T>
Bytes Raw(std::initializer_list<T> values) {
    Bytes out(values.size() * sizeof(T));
    memcpy(out.data(), values.begin(), out.size());
    return out;
}

// 24-bit packed samples as little-endian byte triples.
Bytes Packed(std::initializer_list<uint32_t> values) {
    Bytes out;
    for (uint32_t v : values) {
        out.insert(out.end(), {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16)});
    }
    return out;
}

// Converts `in` into a separate buffer whose bytes past the result must stay untouched.
void Expect(audio_format_t dst, audio_format_t src, const Bytes& in, Bytes want) {
    want.resize(want.size() + 4, 0xab);
    Bytes out(want.size(), 0xab);
    memcpy_by_audio_format(out.data(), dst, in.data(), src,
                           in.size() / audio_bytes_per_sample(src));
    EXPECT_EQ(out, want) << dst << " <- " << src;
}

TEST(PlatformAudioFormat, PairsWith32BitOnOneSide) {
    Expect(k32, k16, Raw<int16_t>({0, 1, -1, 32767, -32768}),
           Raw<int32_t>({0, 0x10000, -0x10000, 0x7fff0000, kMin}));
    // Arithmetic shifts floor, no rounding.
    Expect(k16, k32, Raw<int32_t>({0, kMax, kMin, -1, 0xffff, 0x18000, -0x10000, -0x10001}),
           Raw<int16_t>({0, 32767, -32768, -1, 0, 1, -1, -2}));
    // Clamped at +-1, NaN gives 0, otherwise rounded half away from zero.
    Expect(k32, kFloat,
           Raw<float>({-1.0f, -2.0f, -INFINITY, 1.0f, 1.5f, INFINITY, NAN, -NAN, 0.0f, 0.5f, -0.5f,
                       kStep, 0.5f * kStep, -0.5f * kStep, 0.25f * kStep, -1.5f * kStep,
                       nextafterf(1.0f, 0.0f), nextafterf(-1.0f, 0.0f)}),
           Raw<int32_t>({kMin, kMin, kMin, kMax, kMax, kMax, 0, 0, 0, 0x40000000, -0x40000000, 1, 1,
                         -1, 0, -2, 2147483520, -2147483520}));
    Expect(kFloat, k32, Raw<int32_t>({0, kMax, kMin, 1, -1, 0x40000000, 0x7fffff00}),
           Raw<float>({0.0f, 1.0f, -1.0f, kStep, -kStep, 0.5f, 0x7fffff00 * kStep}));
    Expect(k32, k24, Packed({0x123456, 0x800000, 0xffffff, 0x7fffff, 0x000001}),
           Raw<int32_t>({0x12345600, kMin, -256, 0x7fffff00, 0x100}));
    Expect(k24, k32, Raw<int32_t>({0x12345678, -1, kMin, kMax, 0xff, -0x101}),
           Packed({0x123456, 0xffffff, 0x800000, 0x7fffff, 0x000000, 0xfffffe}));
}

}  // namespace
