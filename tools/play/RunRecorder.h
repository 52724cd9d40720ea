// Watches a run of orlune-play from the host's side and builds its RunTrace: the blocks going
// in and out, the parameters set, every log line of the effect (tied to the block during which
// it was logged), and the stand-in detector's measurements when it lets itself be observed.
#pragma once

#include <stdint.h>

#include <memory>
#include <string>
#include <vector>

#include "tools/play/EffectLines.h"
#include "tools/play/EffectModel.h"
#include "tools/play/PlaySession.h"
#include "tools/play/RunTrace.h"
#include "tools/play/SampleWindows.h"
#include "tools/play/Timeline.h"

class RunRecorder : public PlayObserver {
public:
    RunRecorder();
    ~RunRecorder() override;
    // Starts listening to the effect's log lines (before its set-up, to see the UI type).
    void Listen();

    void OnStart(const PlayStart& start) override;
    void OnParam(int64_t frame, const ParamEvent& event) override;
    void OnBlockIn(int64_t frame, const uint8_t* block, int frames) override;
    void OnBlockDone(int64_t frame, int frames) override;
    void OnOutput(int64_t frame, const uint8_t* samples, int frames, int channels) override;

    void OnLogLine(int priority, const char* tag, const char* message);
    // One measurement of the detector: an algorithm frame's input or output level.
    void OnDetectorMeasure(bool output, float peakDbfs, float rmsDbfs);
    void SetDetectorObservable() { mTrace.detectorObservable = true; }

    // Closes the timeline and hands over the trace.
    RunTrace Finish(int64_t framesFed);

private:
    void TraceBlock(int64_t frame, int frames, int channels, std::vector<MinMaxColumns>& waves,
                    MinMaxColumns& peakPlot, MinMaxColumns& rmsPlot, SampleWindows& windows);
    struct PathTuning {
        bool known = false;
        TuningLine line;
    };
    void NoteEdge(const EdgeLine& edge);
    void NoteTuning(const TuningLine& tuning);
    void UpdateTimeline(int64_t frame);
    void AddMark(std::vector<Mark>* marks, size_t* count, const std::string& text);
    // Algorithm frames processed by the current block so far, and where the k-th one starts.
    int FramesInBlock() const;
    int64_t FrameStart(int k) const { return mCacheStart + 480LL * k; }

    PlayStart mStart;
    bool mStarted = false;
    RunTrace mTrace;
    TimelineBuilder mTimeline;
    EffectModel mModel;
    std::unique_ptr<SampleWindows> mInput;
    std::unique_ptr<SampleWindows> mOutput;
    std::vector<int> mEdgeWindows;  // per zoomed edge: its input and output window index
    std::vector<float> mFloats;     // one block as floats

    // The current block, while the effect has it.
    bool mInBlock = false;
    int64_t mBlockFrame = 0;
    int mBlockFrames = 0;
    bool mBlockRefused = false;
    int mLastEdgeFrame = 0;  // algorithm frame of the block's last edge line
    int mLastEdgeRank = -1;  // its place in the click remover's order
    int mMeasuresIn = 0;
    int mMeasuresOut = 0;
    int64_t mCacheStart = 0;  // input frame at the start of the effect's input cache
    int64_t mFrameNow = 0;    // where lines outside blocks are placed

    PathTuning mSpeaker;  // the last id found on each path
    PathTuning mHeadphone;
    TuningLine mBlockTuning;  // the current block's tuning line, if it logged one
    bool mBlockHadTuning = false;
    bool mBound = false;
    EffectModel::Swap mBlockSwap = EffectModel::Swap::Normal;
    bool mRecordsKnown = false;
    int32_t mRecordId = 0;
    int32_t mRecordExt = 0;
    size_t mEventCount = 0;
    size_t mParamCount = 0;
};
