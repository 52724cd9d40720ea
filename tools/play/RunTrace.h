// Everything the HTML report of a run shows, gathered while the run goes: waveform and level
// columns, the timeline, the edges the click remover found, and the marks of parameters,
// events, errors and detector warnings. Sizes stay bounded whatever the input's length.
#pragma once

#include <math.h>
#include <stdint.h>

#include <string>
#include <vector>

#include "tools/play/Timeline.h"
#include "tools/report/Columns.h"

struct Mark {
    int64_t frame = 0;
    std::string text;
};

struct EdgeMark {
    int64_t frame = 0;  // input frame of the edge
    int channel = 0;
    bool rising = false;
    bool faded = false;  // the click remover was on: the edge was faded, not only found
    int value = 0;
    std::vector<float> before;  // the input around the edge (kZoomBefore frames ahead of it)
    std::vector<float> after;   // the output at the same instant
};

struct RunTrace {
    static constexpr int kColumns = 1200;      // plot width: one column per pixel
    static constexpr int kWaveChannels = 2;    // channels drawn per stream
    static constexpr int kZoomBefore = 48;     // zoom window: frames before the edge
    static constexpr int kZoomLength = 192;    // and its whole length
    static constexpr size_t kZoomEdges = 32;   // edges with a zoomed plot
    static constexpr size_t kMaxMarks = 4000;  // marks kept per kind (all are counted)

    int rate = 48000;
    int64_t span = 1;  // frames on the time axis
    int outputShift = 0;
    std::vector<MinMaxColumns> inWave;  // per channel, full scale 1
    std::vector<MinMaxColumns> outWave;
    MinMaxColumns inPeak, inRms, outPeak, outRms;  // dBFS per host block
    // The detector's own measurements per algorithm frame, when it could be observed.
    bool detectorObservable = false;
    bool detectorLoaded = false;
    int64_t detectorFrames = 0;
    MinMaxColumns detInPeak, detInRms, detOutPeak, detOutRms;
    float loudLimitDbfs = NAN;

    std::vector<TimelineRow> rows;
    std::vector<Mark> params;
    std::vector<Mark> events;
    std::vector<Mark> errors;
    std::vector<Mark> loud;
    size_t errorCount = 0;
    size_t loudCount = 0;
    std::vector<EdgeMark> edges;
    bool uiTypeKnown = false;
    int uiType = 0;
};
