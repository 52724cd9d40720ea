// memcpy_by_audio_format: the platform's arithmetic for every pair with 32-bit on one side,
// same-format copies, pairs that do nothing, and in-place conversion in both directions.
#include <audio_utils/format.h>

#include <gtest/gtest.h>
#include <math.h>
#include <stdint.h>
#include <string.h>

#include <limits>
#include <vector>

namespace {

constexpr audio_format_t k16 = AUDIO_FORMAT_PCM_16_BIT;
constexpr audio_format_t k32 = AUDIO_FORMAT_PCM_32_BIT;
constexpr audio_format_t kFloat = AUDIO_FORMAT_PCM_FLOAT;
constexpr audio_format_t k24 = AUDIO_FORMAT_PCM_24_BIT_PACKED;
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr float kStep = 1.0f / 2147483648.0f;  // 2^-31

template <typename Dst, typename Src>
std::vector<Dst> Convert(const std::vector<Src>& src, audio_format_t dstFormat,
                         audio_format_t srcFormat) {
    std::vector<Dst> dst(src.size());
    memcpy_by_audio_format(dst.data(), dstFormat, src.data(), srcFormat, src.size());
    return dst;
}

// 24-bit packed samples as little-endian byte triples.
std::vector<uint8_t> Packed(std::initializer_list<uint32_t> values) {
    std::vector<uint8_t> out;
    for (uint32_t v : values) {
        out.insert(out.end(), {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16)});
    }
    return out;
}

TEST(PlatformAudioFormat, SixteenBitToAndFrom32) {
    EXPECT_EQ(Convert<int32_t>(std::vector<int16_t>{0, 1, -1, 32767, -32768}, k32, k16),
              (std::vector<int32_t>{0, 0x10000, -0x10000, 0x7fff0000, kMin}));
    // Arithmetic shift: floors, no rounding.
    EXPECT_EQ(Convert<int16_t>(std::vector<int32_t>{0, kMax, kMin, -1, 0xffff, 0x10000, -0x10000,
                                                    -0x10001, 0x18000},
                               k16, k32),
              (std::vector<int16_t>{0, 32767, -32768, -1, 0, 1, -1, -2, 1}));

    std::vector<int16_t> all;
    for (int v = -32768; v <= 32767; ++v) {
        all.push_back(static_cast<int16_t>(v));
    }
    EXPECT_EQ(Convert<int16_t>(Convert<int32_t>(all, k32, k16), k16, k32), all);
}

TEST(PlatformAudioFormat, FloatTo32ClampsAndRoundsHalfAwayFromZero) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Convert<int32_t>(std::vector<float>{-1.0f, -2.0f, -inf, 1.0f, 1.5f, inf, nan, -nan},
                               k32, kFloat),
              (std::vector<int32_t>{kMin, kMin, kMin, kMax, kMax, kMax, 0, 0}));
    EXPECT_EQ(Convert<int32_t>(
                      std::vector<float>{0.0f, -0.0f, 0.5f, -0.5f, kStep, -kStep, 0.5f * kStep,
                                         -0.5f * kStep, 0.25f * kStep, 1.5f * kStep, -1.5f * kStep,
                                         nextafterf(1.0f, 0.0f), nextafterf(-1.0f, 0.0f)},
                      k32, kFloat),
              (std::vector<int32_t>{0, 0, 0x40000000, -0x40000000, 1, -1, 1, -1, 0, 2, -2,
                                    2147483520, -2147483520}));
}

TEST(PlatformAudioFormat, ThirtyTwoToFloatScalesBy2ToMinus31) {
    EXPECT_EQ(Convert<float>(std::vector<int32_t>{0, kMax, kMin, 1, -1, 0x40000000, 0x7fffff00},
                             kFloat, k32),
              (std::vector<float>{0.0f, 1.0f, -1.0f, kStep, -kStep, 0.5f, 0x7fffff00 * kStep}));

    // Values with at most 24 significant bits survive both ways.
    std::vector<int32_t> exact;
    for (int32_t k = -(1 << 23); k < (1 << 23); k += 4099) {
        exact.push_back(k * 256);
    }
    exact.push_back(kMin);
    EXPECT_EQ(Convert<int32_t>(Convert<float>(exact, kFloat, k32), k32, kFloat), exact);
}

TEST(PlatformAudioFormat, PackedTwentyFourToAndFrom32) {
    std::vector<uint8_t> in = Packed({0x123456, 0x800000, 0xffffff, 0x7fffff, 0x000001});
    std::vector<int32_t> out(6, 0x55555555);
    memcpy_by_audio_format(out.data(), k32, in.data(), k24, 5);
    EXPECT_EQ(out, (std::vector<int32_t>{0x12345600, kMin, -256, 0x7fffff00, 0x100, 0x55555555}));

    std::vector<int32_t> src{0x12345678, -1, kMin, kMax, 0xff, -0x101};
    std::vector<uint8_t> packed(src.size() * 3);
    memcpy_by_audio_format(packed.data(), k24, src.data(), k32, src.size());
    EXPECT_EQ(packed, Packed({0x123456, 0xffffff, 0x800000, 0x7fffff, 0x000000, 0xfffffe}));

    std::vector<uint8_t> all;
    for (uint32_t v = 0; v < (1u << 24); v += 251) {
        all.insert(all.end(), {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16)});
    }
    size_t count = all.size() / 3;
    std::vector<int32_t> wide(count);
    std::vector<uint8_t> back(all.size());
    memcpy_by_audio_format(wide.data(), k32, all.data(), k24, count);
    memcpy_by_audio_format(back.data(), k24, wide.data(), k32, count);
    EXPECT_EQ(back, all);
}

// In place: the source samples sit at the start of a buffer big enough for the wider format.
TEST(PlatformAudioFormat, InPlaceExpandingAndShrinking) {
    {
        std::vector<int32_t> buf(5, 0x55555555);
        const int16_t in[5] = {1, -1, 32767, -32768, 0};
        memcpy(buf.data(), in, sizeof in);
        memcpy_by_audio_format(buf.data(), k32, buf.data(), k16, 5);
        EXPECT_EQ(buf, (std::vector<int32_t>{0x10000, -0x10000, 0x7fff0000, kMin, 0}));
        memcpy_by_audio_format(buf.data(), k16, buf.data(), k32, 5);
        int16_t out[5];
        memcpy(out, buf.data(), sizeof out);
        EXPECT_EQ(std::vector<int16_t>(out, out + 5), std::vector<int16_t>(in, in + 5));
    }
    {
        std::vector<int32_t> buf(4, 0x55555555);
        std::vector<uint8_t> in = Packed({0x123456, 0x800000, 0xffffff, 0x000001});
        memcpy(buf.data(), in.data(), in.size());
        memcpy_by_audio_format(buf.data(), k32, buf.data(), k24, 4);
        EXPECT_EQ(buf, (std::vector<int32_t>{0x12345600, kMin, -256, 0x100}));
        memcpy_by_audio_format(buf.data(), k24, buf.data(), k32, 4);
        EXPECT_EQ(0, memcmp(buf.data(), in.data(), in.size()));
    }
    {
        std::vector<float> in{0.5f, -1.0f, 0.25f};
        std::vector<float> buf = in;
        memcpy_by_audio_format(buf.data(), k32, buf.data(), kFloat, 3);
        int32_t wide[3];
        memcpy(wide, buf.data(), sizeof wide);
        EXPECT_EQ(std::vector<int32_t>(wide, wide + 3),
                  (std::vector<int32_t>{0x40000000, kMin, 0x20000000}));
        memcpy_by_audio_format(buf.data(), kFloat, buf.data(), k32, 3);
        EXPECT_EQ(buf, in);
    }
}

TEST(PlatformAudioFormat, SameFormatCopiesExactlyCountSamples) {
    const audio_format_t formats[] = {
            k16, AUDIO_FORMAT_PCM_8_BIT, k32, AUDIO_FORMAT_PCM_8_24_BIT, kFloat, k24};
    for (audio_format_t f : formats) {
        size_t bytes = audio_bytes_per_sample(f);
        std::vector<uint8_t> src(8 * bytes);
        for (size_t i = 0; i < src.size(); ++i) {
            src[i] = static_cast<uint8_t>(i * 7 + 1);
        }
        std::vector<uint8_t> dst(src.size(), 0xab);
        memcpy_by_audio_format(dst.data(), f, src.data(), f, 5);
        std::vector<uint8_t> want(src.begin(), src.begin() + 5 * bytes);
        want.resize(src.size(), 0xab);
        EXPECT_EQ(dst, want) << "format " << f;

        std::vector<uint8_t> same = src;
        memcpy_by_audio_format(same.data(), f, same.data(), f, 8);
        EXPECT_EQ(same, src) << "format " << f;
    }
}

TEST(PlatformAudioFormat, PairsWithout32BitOrWith8BitLeaveDstUntouched) {
    const audio_format_t pairs[][2] = {{k32, AUDIO_FORMAT_PCM_8_BIT},
                                       {AUDIO_FORMAT_PCM_8_BIT, k32},
                                       {k32, AUDIO_FORMAT_PCM_8_24_BIT},
                                       {AUDIO_FORMAT_PCM_8_24_BIT, k32},
                                       {k16, kFloat},
                                       {kFloat, k16},
                                       {k16, k24},
                                       {k24, kFloat},
                                       {k32, AUDIO_FORMAT_INVALID},
                                       {AUDIO_FORMAT_DEFAULT, k32},
                                       {AUDIO_FORMAT_INVALID, AUDIO_FORMAT_INVALID}};
    const std::vector<uint8_t> src(64, 0x11);
    for (const auto& pair : pairs) {
        std::vector<uint8_t> dst(64, 0xab);
        memcpy_by_audio_format(dst.data(), pair[0], src.data(), pair[1], 8);
        EXPECT_EQ(dst, std::vector<uint8_t>(64, 0xab)) << pair[0] << " <- " << pair[1];
    }
}

}  // namespace
