// Host stand-in of the detection library's detector: measures the peak and RMS level of the
// buffers it is given (metricA = peak, metricB = RMS, both in dBFS, written to the record passed
// in) and logs when the output peak exceeds the configured limit.
#pragma once

#include <mutex>

#include "abi/LoudDetector.h"

namespace lad_standin {

constexpr const char* kTag = "louddetect_standin";

// A host harness may watch every measurement (output: 0 for an input buffer, 1 for an output
// buffer); the device's library has no such hook.
using MeasureObserver = void (*)(void* context, int output, float peakDbfs, float rmsDbfs);
void SetMeasureObserver(MeasureObserver observer, void* context);

class StandinDetector : public android::LoudDetector {
public:
    StandinDetector() = default;
    ~StandinDetector() override;

    int Init(int type) override;
    int CheckBuffer(android::sp<android::LadReportInfo> first,
                    android::sp<android::LadReportInfo> second) override;
    int UpdateProcTime(android::sp<android::LadReportInfo> first,
                       android::sp<android::LadReportInfo> second) override;
    int StartStream(android::sp<android::LadReportInfo> first,
                    android::sp<android::LadReportInfo> second) override;
    int StopStream(android::sp<android::LadReportInfo> first,
                   android::sp<android::LadReportInfo> second) override;
    int SetInputBuffer(android::sp<android::LadReportInfo> info, const void* samples, int frames,
                       int sampleRate, audio_format_t format, int channels) override;
    int SetOutputBuffer(android::sp<android::LadReportInfo> info, const void* samples, int frames,
                        int sampleRate, audio_format_t format, int channels) override;

private:
    int Measure(const android::sp<android::LadReportInfo>& info, const void* samples, int frames,
                audio_format_t format, int channels, bool output);

    // A host may start and stop the stream on another thread than the one that hands over the
    // buffers: every operation runs under this lock (records included).
    std::mutex mLock;
    float mLimitDbfs = 0.0f;
    int mType = -1;
};

}  // namespace lad_standin
