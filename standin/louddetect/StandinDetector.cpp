#include "standin/louddetect/StandinDetector.h"

#include <android/log.h>
#include <string.h>

#include "standin/louddetect/LadConfig.h"
#include "standin/louddetect/LevelMeter.h"
#include "standin/louddetect/StandinData.h"

using android::LadReportInfo;
using android::sp;

namespace lad_standin {

namespace {

static_assert(sizeof(RecordData) <= sizeof(LadReportInfo::data), "fits the data block");

MeasureObserver gObserver = nullptr;
void* gObserverContext = nullptr;

RecordData ReadData(const LadReportInfo& info) {
    RecordData data;
    memcpy(&data, info.data, sizeof data);
    return data;
}

void WriteData(LadReportInfo& info, const RecordData& data) {
    memcpy(info.data, &data, sizeof data);
}

}  // namespace

void SetMeasureObserver(MeasureObserver observer, void* context) {
    gObserver = observer;
    gObserverContext = context;
}

StandinDetector::~StandinDetector() {
    __android_log_print(ANDROID_LOG_INFO, kTag, "detector released");
}

int StandinDetector::Init(int type) {
    std::lock_guard<std::mutex> lock(mLock);
    bool found = false;
    mLimitDbfs = ReadLimitDbfs(type, &found);
    mType = type;
    __android_log_print(ANDROID_LOG_INFO, kTag, "init type %d, limit %.2f dBFS%s", type,
                        static_cast<double>(mLimitDbfs), found ? "" : " (default)");
    return (type >= 0 && type < kConfigTypes) ? 0 : -1;
}

int StandinDetector::CheckBuffer(sp<LadReportInfo> first, sp<LadReportInfo> second) {
    std::lock_guard<std::mutex> lock(mLock);
    if (second == nullptr) {
        return -1;
    }
    if (second->metricA <= mLimitDbfs) {
        return 0;
    }
    float inputPeak = (first != nullptr) ? first->metricA : kSilenceDbfs;
    __android_log_print(ANDROID_LOG_WARN, kTag,
                        "loud output: peak %.2f dBFS above limit %.2f dBFS (input peak %.2f dBFS)",
                        static_cast<double>(second->metricA), static_cast<double>(mLimitDbfs),
                        static_cast<double>(inputPeak));
    second->infoFlag0 = 1;  // loud output seen since the record was last initialised
    return 1;
}

int StandinDetector::UpdateProcTime(sp<LadReportInfo> first, sp<LadReportInfo> second) {
    std::lock_guard<std::mutex> lock(mLock);
    for (LadReportInfo* info : {first.get(), second.get()}) {
        if (info != nullptr) {
            RecordData data = ReadData(*info);
            ++data.procTimeUpdates;
            WriteData(*info, data);
        }
    }
    return 0;
}

int StandinDetector::StartStream(sp<LadReportInfo> first, sp<LadReportInfo> second) {
    std::lock_guard<std::mutex> lock(mLock);
    for (LadReportInfo* info : {first.get(), second.get()}) {
        if (info != nullptr) {
            RecordData data = ReadData(*info);
            data.streaming = 1;
            WriteData(*info, data);
        }
    }
    __android_log_print(ANDROID_LOG_INFO, kTag, "stream start");
    return 0;
}

int StandinDetector::StopStream(sp<LadReportInfo> first, sp<LadReportInfo> second) {
    std::lock_guard<std::mutex> lock(mLock);
    for (LadReportInfo* info : {first.get(), second.get()}) {
        if (info != nullptr) {
            RecordData data = ReadData(*info);
            data.streaming = 0;
            WriteData(*info, data);
        }
    }
    __android_log_print(ANDROID_LOG_INFO, kTag, "stream stop");
    return 0;
}

int StandinDetector::SetInputBuffer(sp<LadReportInfo> info, const void* samples, int frames,
                                    int /*sampleRate*/, audio_format_t format, int channels) {
    return Measure(info, samples, frames, format, channels, false);
}

int StandinDetector::SetOutputBuffer(sp<LadReportInfo> info, const void* samples, int frames,
                                     int /*sampleRate*/, audio_format_t format, int channels) {
    return Measure(info, samples, frames, format, channels, true);
}

int StandinDetector::Measure(const sp<LadReportInfo>& info, const void* samples, int frames,
                             audio_format_t format, int channels, bool output) {
    if (info == nullptr || samples == nullptr || frames <= 0 || channels <= 0 ||
        format != AUDIO_FORMAT_PCM_32_BIT) {
        __android_log_print(ANDROID_LOG_ERROR, kTag,
                            "refused buffer: frames %d, channels %d, format %#x", frames, channels,
                            static_cast<unsigned>(format));
        return -1;
    }
    std::lock_guard<std::mutex> lock(mLock);
    size_t count = static_cast<size_t>(frames) * static_cast<size_t>(channels);
    Levels levels = MeasureInt32(static_cast<const int32_t*>(samples), count);
    info->metricA = levels.peakDbfs;
    info->metricB = levels.rmsDbfs;
    if (gObserver != nullptr) {
        gObserver(gObserverContext, output ? 1 : 0, levels.peakDbfs, levels.rmsDbfs);
    }
    RecordData data = ReadData(*info);
    ++(output ? data.outputBlocks : data.inputBlocks);
    WriteData(*info, data);
    return 0;
}

}  // namespace lad_standin
