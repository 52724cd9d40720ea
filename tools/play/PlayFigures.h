// The SVG figures of orlune-play's report, all on one time axis: signal (waveforms, levels and
// the click remover's edges), timeline, detector, and the zoomed view of one edge.
#pragma once

#include <string>

#include "tools/play/RunTrace.h"

// Plot geometry shared by the figures: a label margin, then one unit per column.
constexpr double kFigureLeft = 170;
constexpr double kFigureWidth = kFigureLeft + RunTrace::kColumns + 30;
// At most this many markers per kind of mark; beyond it, neighbours share a marker.
constexpr size_t kMaxMarkers = 400;
// Timeline pieces narrower than this join their neighbours.
constexpr double kMinSegmentWidth = 8;

std::string SignalFigure(const RunTrace& trace);
std::string TimelineFigure(const RunTrace& trace);
std::string DetectorFigure(const RunTrace& trace);
std::string EdgeZoom(const RunTrace& trace, size_t index);

// "1.234 s" for a frame position.
std::string SecondsText(int64_t frame, int rate);
