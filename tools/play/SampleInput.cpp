// Writes the bundled demo input: 3 s of 48 kHz 16-bit stereo, a quarter second of silence,
// then two different tones left and right that start and stop hard at their peak (the clicks
// the effect's pop eliminator softens), then silence again.
#include <math.h>
#include <stdio.h>

#include <vector>

#include <sndfile.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: orlune-sample-input OUT.wav\n");
        return 1;
    }
    constexpr int kRate = 48000;
    constexpr int kFrames = 3 * kRate;
    constexpr int kStart = kRate / 4;
    constexpr int kStop = kFrames - kRate / 4;
    constexpr double kTwoPi = 6.283185307179586;
    std::vector<short> samples(static_cast<size_t>(kFrames) * 2, 0);
    for (int i = kStart; i < kStop; ++i) {
        const double t = static_cast<double>(i - kStart) / kRate;
        // Cosines start at their peak: a hard step out of silence.
        samples[2 * i] = static_cast<short>(lround(12000.0 * cos(kTwoPi * 440.0 * t)));
        samples[2 * i + 1] = static_cast<short>(
                lround(9000.0 * cos(kTwoPi * 660.0 * t) + 3000.0 * cos(kTwoPi * 440.0 * t)));
    }
    SF_INFO info = {};
    info.samplerate = kRate;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(argv[1], SFM_WRITE, &info);
    if (file == nullptr) {
        fprintf(stderr, "orlune-sample-input: cannot write %s: %s\n", argv[1],
                sf_strerror(nullptr));
        return 1;
    }
    const sf_count_t written = sf_writef_short(file, samples.data(), kFrames);
    sf_close(file);
    return written == kFrames ? 0 : 1;
}
