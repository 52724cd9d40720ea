// Short stretches of one channel of a stream, cut out as the stream goes by: the zoomed views
// around the click remover's edges. A window may start before the newest samples (a recent
// history is kept) or end after them (it fills as later samples arrive).
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

class SampleWindows {
public:
    // `channels` interleaved channels; the history keeps at least `keepFrames` frames.
    SampleWindows(int channels, int64_t keepFrames);

    // Asks for `length` frames of `channel` from frame `start` on; returns the window's index.
    int Want(int64_t start, int length, int channel);
    // The next frames of the stream, interleaved floats, beginning at stream frame `first`.
    void Feed(int64_t first, const float* frames, int count);
    // A sample of the history; false when it is no longer (or not yet) there.
    bool At(int64_t frame, int channel, float* value) const;

    // A window's samples; those never seen are 0.
    const std::vector<float>& Window(int index) const { return mWindows[index].samples; }

private:
    struct Wanted {
        int64_t start;
        int channel;
        std::vector<float> samples;
    };
    void Fill(Wanted& w, int64_t first, const float* frames, int count) const;

    int mChannels;
    int64_t mKeep;
    int64_t mHistoryStart = 0;
    std::vector<float> mHistory;
    std::vector<Wanted> mWindows;
};
