#include "tools/play/SampleWindows.h"

SampleWindows::SampleWindows(int channels, int64_t keepFrames)
    : mChannels(channels > 0 ? channels : 1), mKeep(keepFrames) {}

void SampleWindows::Fill(Wanted& w, int64_t first, const float* frames, int count) const {
    const int64_t length = static_cast<int64_t>(w.samples.size());
    const int64_t from = first > w.start ? first : w.start;
    const int64_t to = first + count < w.start + length ? first + count : w.start + length;
    for (int64_t f = from; f < to; ++f) {
        w.samples[static_cast<size_t>(f - w.start)] =
                frames[static_cast<size_t>(f - first) * mChannels + w.channel];
    }
}

int SampleWindows::Want(int64_t start, int length, int channel) {
    Wanted w{start, channel < mChannels ? channel : 0,
             std::vector<float>(static_cast<size_t>(length > 0 ? length : 0), 0.0f)};
    const int64_t held = static_cast<int64_t>(mHistory.size()) / mChannels;
    Fill(w, mHistoryStart, mHistory.data(), static_cast<int>(held));
    mWindows.push_back(std::move(w));
    return static_cast<int>(mWindows.size()) - 1;
}

void SampleWindows::Feed(int64_t first, const float* frames, int count) {
    for (Wanted& w : mWindows) {
        if (w.start + static_cast<int64_t>(w.samples.size()) > first) {
            Fill(w, first, frames, count);
        }
    }
    const int64_t held = static_cast<int64_t>(mHistory.size()) / mChannels;
    if (mHistory.empty() || first != mHistoryStart + held) {
        mHistory.clear();  // a gap: the history starts again here
        mHistoryStart = first;
    }
    mHistory.insert(mHistory.end(), frames, frames + static_cast<size_t>(count) * mChannels);
    const int64_t excess = static_cast<int64_t>(mHistory.size()) / mChannels - mKeep - count;
    if (excess > 0) {
        mHistory.erase(mHistory.begin(), mHistory.begin() + excess * mChannels);
        mHistoryStart += excess;
    }
}

bool SampleWindows::At(int64_t frame, int channel, float* value) const {
    const int64_t held = static_cast<int64_t>(mHistory.size()) / mChannels;
    if (frame < mHistoryStart || frame >= mHistoryStart + held || channel >= mChannels) {
        return false;
    }
    *value = mHistory[static_cast<size_t>(frame - mHistoryStart) * mChannels + channel];
    return true;
}
