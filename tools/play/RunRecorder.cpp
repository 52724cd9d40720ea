#include "tools/play/RunRecorder.h"

#include <math.h>
#include <stdlib.h>
#include <string.h>

#include <android/log.h>

#include "config/NameLists.h"
#include "config/VirtualIds.h"
#include "abi/KivIoInfo.h"
#include "popelim/ProcessTypes.h"
#include "tools/play/EffectLog.h"
#include "tools/play/HostAudio.h"
#include "tools/play/HostSamples.h"

namespace {

float ToDbfs(double linear) {
    return linear > 1e-6 ? static_cast<float>(20.0 * log10(linear)) : -120.0f;
}

void LogTrampoline(void* context, int priority, const char* tag, const char* message) {
    static_cast<RunRecorder*>(context)->OnLogLine(priority, tag, message);
}

// Peak and RMS of interleaved samples, in dBFS.
void Levels(const std::vector<float>& samples, size_t count, float* peak, float* rms) {
    double top = 0.0, squares = 0.0;
    for (size_t i = 0; i < count; ++i) {
        const double v = samples[i];
        top = fabs(v) > top ? fabs(v) : top;
        squares += v * v;
    }
    *peak = ToDbfs(top);
    *rms = ToDbfs(count > 0 ? sqrt(squares / static_cast<double>(count)) : 0.0);
}

const char* DeviceName(int device) {
    switch (device) {
        case 1:
            return "loudspeaker";
        case 2:
            return "wired headset";
        case 3:
            return "Bluetooth headset";
        default:
            return nullptr;
    }
}

}  // namespace

RunRecorder::RunRecorder() = default;

RunRecorder::~RunRecorder() {
    EffectLog::SetListener(nullptr, nullptr);
}

void RunRecorder::Listen() {
    EffectLog::SetListener(LogTrampoline, this);
}

void RunRecorder::OnStart(const PlayStart& start) {
    mStart = start;
    mStarted = true;
    const int columns = RunTrace::kColumns;
    mTrace.rate = start.rate;
    mTrace.span = start.spanFrames > 0 ? start.spanFrames : 1;
    mTrace.outputShift = static_cast<int>(start.outputShift);
    for (int c = 0; c < start.inChannels && c < RunTrace::kWaveChannels; ++c) {
        mTrace.inWave.emplace_back(columns, mTrace.span);
    }
    for (int c = 0; c < start.outChannels && c < RunTrace::kWaveChannels; ++c) {
        mTrace.outWave.emplace_back(columns, mTrace.span);
    }
    for (MinMaxColumns* m :
         {&mTrace.inPeak, &mTrace.inRms, &mTrace.outPeak, &mTrace.outRms, &mTrace.detInPeak,
          &mTrace.detInRms, &mTrace.detOutPeak, &mTrace.detOutRms}) {
        *m = MinMaxColumns(columns, mTrace.span);
    }
    // Edges lie at most one algorithm frame plus the click remover's cache behind the block
    // that reports them; the output of an edge comes up to a block after the input.
    const int64_t keep = 2LL * start.block + 4 * kAlgoFrame + RunTrace::kZoomLength;
    mInput = std::make_unique<SampleWindows>(start.inChannels, keep);
    mOutput = std::make_unique<SampleWindows>(start.outChannels, keep);
}

void RunRecorder::OnParam(int64_t frame, const ParamEvent& e) {
    mModel.Apply(e);
    std::string value;
    switch (e.kind) {
        case ParamEvent::INT:
            value = std::to_string(e.intValue);
            break;
        case ParamEvent::FLOAT:
            value = std::to_string(e.floatValue);
            break;
        case ParamEvent::STRING:
            value = "\"" + e.text + "\"";
            break;
    }
    if (mTrace.params.size() < RunTrace::kMaxMarks) {
        mTrace.params.push_back({frame, std::to_string(e.id) + "=" + value});
    }
    ++mParamCount;
}

void RunRecorder::OnBlockIn(int64_t frame, const uint8_t* block, int frames) {
    mInBlock = true;
    mBlockFrame = frame;
    mBlockFrames = frames;
    mBlockRefused = false;
    mLastEdgeFrame = 0;
    mLastEdgeRank = -1;
    mMeasuresIn = 0;
    mMeasuresOut = 0;
    mFrameNow = frame;
    if (!mStarted || frames <= 0) {
        return;
    }
    const int channels = mStart.inChannels;
    const int bytes = BytesPerSample(mStart.format);
    const size_t n = static_cast<size_t>(frames) * channels;
    mFloats.resize(n);
    for (size_t i = 0; i < n; ++i) {
        mFloats[i] = Int32ToFloat(SampleToInt32(mStart.format, block + i * bytes));
    }
    TraceBlock(frame, frames, channels, mTrace.inWave, mTrace.inPeak, mTrace.inRms, *mInput);
}

// Draws the block now in mFloats (interleaved, `channels` wide) into one stream's waveform
// and level plots, and keeps it for the zoomed edge views.
void RunRecorder::TraceBlock(int64_t frame, int frames, int channels,
                             std::vector<MinMaxColumns>& waves, MinMaxColumns& peakPlot,
                             MinMaxColumns& rmsPlot, SampleWindows& windows) {
    for (size_t c = 0; c < waves.size(); ++c) {
        waves[c].AddSamples(frame, mFloats.data() + c, frames, channels);
    }
    float peak = 0, rms = 0;
    Levels(mFloats, static_cast<size_t>(frames) * channels, &peak, &rms);
    peakPlot.AddSpan(frame, frame + frames, peak);
    rmsPlot.AddSpan(frame, frame + frames, rms);
    windows.Feed(frame, mFloats.data(), frames);
}

int RunRecorder::FramesInBlock() const {
    const int64_t n = (mBlockFrame + mBlockFrames - mCacheStart) / kAlgoFrame;
    return n > 0 ? static_cast<int>(n) : 0;
}

void RunRecorder::OnBlockDone(int64_t frame, int frames) {
    mInBlock = false;
    if (mBlockRefused) {
        mCacheStart += frames;  // the block never reached the cache
    } else if (mBound) {
        mCacheStart += static_cast<int64_t>(kAlgoFrame) * FramesInBlock();
        const EffectModel::Swap before = mModel.SwapState();
        mModel.Block(frames, mStart.inChannels == 2);
        // A block counts as cross-fading when any part of it was.
        const EffectModel::Swap after = mModel.SwapState();
        mBlockSwap = before != after ? EffectModel::Swap::Fading : after;
    }
    UpdateTimeline(frame);
    mFrameNow = frame + frames;
}

void RunRecorder::OnOutput(int64_t frame, const uint8_t* samples, int frames, int channels) {
    if (!mStarted || frames <= 0) {
        return;
    }
    // Laid out as the output file: missing channels are silence.
    const int fileChannels = mStart.outChannels;
    const int bytes = BytesPerSample(mStart.format);
    const size_t n = static_cast<size_t>(frames) * fileChannels;
    mFloats.assign(n, 0.0f);
    for (int f = 0; f < frames; ++f) {
        for (int c = 0; c < channels && c < fileChannels; ++c) {
            const uint8_t* s = samples + (static_cast<size_t>(f) * channels + c) * bytes;
            mFloats[static_cast<size_t>(f) * fileChannels + c] =
                    Int32ToFloat(SampleToInt32(mStart.format, s));
        }
    }
    TraceBlock(frame, frames, fileChannels, mTrace.outWave, mTrace.outPeak, mTrace.outRms,
               *mOutput);
}

void RunRecorder::AddMark(std::vector<Mark>* marks, size_t* count, const std::string& text) {
    if (marks->size() < RunTrace::kMaxMarks) {
        marks->push_back({mInBlock ? mBlockFrame : mFrameNow, text});
    }
    if (count != nullptr) {
        ++*count;
    }
}

void RunRecorder::OnLogLine(int priority, const char* tag, const char* message) {
    const std::string t = tag != nullptr ? tag : "";
    EdgeLine edge;
    TuningLine tuning;
    int uiType = 0;
    float peak = 0, limit = 0;
    const bool initLine = strncmp(message, "InitKiv, tid:", 13) == 0;
    if (strstr(message, "Load orlune algo lib OK.") != nullptr) {
        mBound = true;
    } else if (ParseUiTypeLine(message, &uiType)) {
        mTrace.uiTypeKnown = true;
        mTrace.uiType = uiType;
        mModel.SetUiType(uiType);
    } else if (initLine) {
        // The buffers are emptied: the cache starts again with the block being read.
        mModel.Reinitialised();
        mCacheStart = mInBlock ? mBlockFrame : mFrameNow;
    } else if (strstr(message, "load lib success") != nullptr) {
        mTrace.detectorLoaded = true;
    } else if (ParseEdgeLine(message, &edge)) {
        if (mInBlock && mStarted) {
            NoteEdge(edge);
        }
    } else if (ParseTuningLine(message, &tuning)) {
        NoteTuning(tuning);
    } else if (t == "tova_view" && strncmp(message, "report ", 7) == 0) {
        AddMark(&mTrace.events, &mEventCount, message);
    } else if (ParseLoudLine(message, &peak, &limit)) {
        mTrace.loudLimitDbfs = limit;
        AddMark(&mTrace.loud, &mTrace.loudCount, message);
    }
    if (mInBlock && (strstr(message, "returned untouched") != nullptr ||
                     strstr(message, "block ignored") != nullptr)) {
        mBlockRefused = true;
    }
    if (mStarted && priority >= ANDROID_LOG_ERROR && !initLine) {
        AddMark(&mTrace.errors, &mTrace.errorCount,
                "E/" + (t.empty() ? std::string("-") : t) + ": " + message);
    }
}

void RunRecorder::NoteEdge(const EdgeLine& edge) {
    // The click remover reports per algorithm frame, channel by channel, the rising edge before
    // the falling one; a line that does not follow the previous one in that order belongs to a
    // later frame. Where a block ran several frames, the frame whose samples show the edge is
    // taken: quiet before a rising edge, the logged level then near silence at a falling one.
    const int frames = FramesInBlock() > 0 ? FramesInBlock() : 1;
    const int rank = edge.channel * 2 + (edge.rising ? 0 : 1);
    int first = mLastEdgeRank < 0 ? 0 : mLastEdgeFrame + (rank <= mLastEdgeRank ? 1 : 0);
    first = first < frames ? first : frames - 1;
    int chosen = first;
    for (int k = first; k < frames; ++k) {
        const int64_t x = FrameStart(k) + edge.pos - kPopCacheFrames;
        float before = 0, at = 0;
        if (!mInput->At(x - 1, edge.channel, &before) || !mInput->At(x, edge.channel, &at)) {
            continue;
        }
        const int levelBefore = static_cast<int>(truncf(before * 32768.0f));
        const int levelAt = static_cast<int>(truncf(at * 32768.0f));
        const bool shows = edge.rising ? abs(levelBefore) <= 9 && abs(levelAt) >= 10
                                       : abs(levelBefore - edge.value) <= 1 &&
                                                 abs(levelAt) < abs(edge.value / 10);
        if (shows) {
            chosen = k;
            break;
        }
    }
    mLastEdgeFrame = chosen;
    mLastEdgeRank = rank;

    EdgeMark mark;
    mark.frame = FrameStart(chosen) + edge.pos - kPopCacheFrames;
    mark.channel = edge.channel;
    mark.rising = edge.rising;
    mark.faded = mModel.ClickRemoverOn();
    mark.value = edge.value;
    if (mTrace.edges.size() < RunTrace::kZoomEdges) {
        const int64_t from = mark.frame - RunTrace::kZoomBefore;
        mEdgeWindows.push_back(mInput->Want(from, RunTrace::kZoomLength, edge.channel));
        mEdgeWindows.push_back(
                mOutput->Want(from + mStart.outputShift, RunTrace::kZoomLength, edge.channel));
    }
    mTrace.edges.push_back(mark);
}

void RunRecorder::NoteTuning(const TuningLine& tuning) {
    mBlockTuning = tuning;
    mBlockHadTuning = true;
    if (tuning.headphone) {
        mModel.SetHeadphoneModeIndex(vid::DecodeHeadphoneId(tuning.virtualId).mode);
    }
}

void RunRecorder::OnDetectorMeasure(bool output, float peakDbfs, float rmsDbfs) {
    if (!mInBlock) {
        return;
    }
    const int64_t x = FrameStart(output ? mMeasuresOut++ : mMeasuresIn++);
    (output ? mTrace.detOutPeak : mTrace.detInPeak).AddSpan(x, x + kAlgoFrame, peakDbfs);
    (output ? mTrace.detOutRms : mTrace.detInRms).AddSpan(x, x + kAlgoFrame, rmsDbfs);
    mTrace.detectorFrames += output ? 0 : 1;
}

void RunRecorder::UpdateTimeline(int64_t frame) {
    const int device = mModel.Device();
    const char* name = DeviceName(device);
    mTimeline.Set(
            ROW_DEVICE, frame,
            name != nullptr ? name : "device " + std::to_string(device) + " (loudspeaker path)");
    if (!mBound) {
        return;
    }
    const bool hp = mModel.Headphones();
    PathTuning& path = hp ? mHeadphone : mSpeaker;
    // A block that logs nothing for its device runs the id last found there: the effect logs
    // a found id only when it changes, and a missing one on every block.
    TuningLine t;
    bool known = false;
    if (mBlockHadTuning && mBlockTuning.headphone == hp) {
        t = mBlockTuning;
        known = true;
        if (t.result == TuningResult::Found) {
            path.known = true;
            path.line = t;
        }
    } else if (path.known) {
        t = path.line;
        known = true;
    }
    mBlockHadTuning = false;

    std::string fold, orientation, scene, level, hpMode, tuning;
    bool problem = false;
    if (known) {
        if (hp) {
            const vid::HeadphoneCoordinates h = vid::DecodeHeadphoneId(t.virtualId);
            hpMode = std::string(NameOf(kHpModeNames, h.mode)) + " / " +
                     NameOf(kParamModeNames, h.kind);
            level = NameOf(kVolumeLevelNames, h.level);
        } else {
            const vid::SpeakerCoordinates s = vid::DecodeSpeakerId(t.virtualId);
            fold = NameOf(kFoldStateNames, s.fold);
            orientation = NameOf(kOrientationNames, s.orientation);
            scene = NameOf(kSceneNames, s.scene);
            level = NameOf(kVolumeLevelNames, s.level);
        }
        const std::string records =
                mRecordsKnown ? std::to_string(mRecordId) + "/" + std::to_string(mRecordExt)
                              : std::string("the built-in record");
        if (t.result == TuningResult::Found) {
            mRecordsKnown = true;
            mRecordId = t.id;
            mRecordExt = t.extId;
            tuning = std::to_string(t.virtualId) + ": " + std::to_string(t.id) + "/" +
                     std::to_string(t.extId);
        } else {
            problem = true;
            tuning = std::to_string(t.virtualId) +
                     (t.result == TuningResult::NoVirtualId ? ": not in the virtual map"
                                                            : ": a record is missing") +
                     "; " + records + " stays";
        }
    }
    mTimeline.Set(ROW_FOLD, frame, fold);
    mTimeline.Set(ROW_ORIENTATION, frame, orientation);
    mTimeline.Set(ROW_SCENE, frame, scene);
    mTimeline.Set(ROW_LEVEL, frame, level);
    mTimeline.Set(ROW_HP_MODE, frame, hpMode);
    mTimeline.Set(ROW_TUNING, frame, tuning, problem);
    if (mStart.inChannels == 2) {
        mTimeline.Set(ROW_CLICK_REMOVER, frame,
                      mModel.ClickRemoverOn() ? "fades edges" : "off: finds edges only",
                      !mModel.ClickRemoverOn());
    }
    const char* heard =
            mModel.SwapAudible() ? "" : " (not heard: needs the loudspeaker, effect on)";
    switch (mBlockSwap) {
        case EffectModel::Swap::Fading:
            mTimeline.Set(ROW_SWAP, frame, std::string("cross-fade") + heard);
            break;
        case EffectModel::Swap::Swapped:
            mTimeline.Set(ROW_SWAP, frame, std::string("left/right swapped") + heard);
            break;
        case EffectModel::Swap::Normal:
            mTimeline.Set(ROW_SWAP, frame, "");
            break;
    }
    mTimeline.Set(ROW_GUARD, frame, mModel.GuardActive() ? "output guard" : "");
}

RunTrace RunRecorder::Finish(int64_t framesFed) {
    mTimeline.Finish(framesFed);
    mTrace.rows = mTimeline.Rows();
    for (size_t i = 0; i < mTrace.edges.size() && 2 * i + 1 < mEdgeWindows.size(); ++i) {
        mTrace.edges[i].before = mInput->Window(mEdgeWindows[2 * i]);
        mTrace.edges[i].after = mOutput->Window(mEdgeWindows[2 * i + 1]);
    }
    return std::move(mTrace);
}
