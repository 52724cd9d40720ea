#include "tools/play/PlayFigures.h"

#include <math.h>
#include <stdio.h>

#include "tools/report/Marks.h"
#include "tools/report/Svg.h"

namespace {

constexpr double kLaneHeight = 56;
constexpr double kLevelHeight = 110;
constexpr double kRowHeight = 16;
constexpr double kRowGap = 3;
constexpr double kAxisHeight = 14;
constexpr size_t kMarkersThroughLanes = 60;
constexpr size_t kTitleChars = 200;

double Seconds(const RunTrace& t) {
    return static_cast<double>(t.span) / t.rate;
}

PlotArea Area(double y, double h, double lo, double hi) {
    PlotArea a;
    a.x = kFigureLeft;
    a.y = y;
    a.w = RunTrace::kColumns;
    a.h = h;
    a.lo = lo;
    a.hi = hi;
    return a;
}

double XOf(const RunTrace& t, int64_t frame) {
    const double f = frame < 0 ? 0 : (frame > t.span ? t.span : frame);
    return kFigureLeft + RunTrace::kColumns * f / static_cast<double>(t.span);
}

std::string Lane(const MinMaxColumns& wave, double y, const std::string& name, const char* cls) {
    const PlotArea a = Area(y, kLaneHeight, -1, 1);
    std::string out = SvgRect(a.x, a.y, a.w, a.h, "frame");
    out += "<line class=\"grid\" x1=\"" + Num(a.x) + "\" y1=\"" + Num(a.Y(0)) + "\" x2=\"" +
           Num(a.x + a.w) + "\" y2=\"" + Num(a.Y(0)) + "\"/>";
    out += "<path class=\"" + std::string(cls) + "\" d=\"" + BandPath(wave, a) + "\"/>";
    out += SvgText(6, y + kLaneHeight / 2 + 4, name, "lane");
    return out;
}

// Peak lines and RMS bands (dBFS) of two streams in one plot.
std::string LevelPlot(const MinMaxColumns& peakA, const MinMaxColumns& rmsA,
                      const MinMaxColumns& peakB, const MinMaxColumns& rmsB, double y,
                      const std::string& name, float limit) {
    const PlotArea a = Area(y, kLevelHeight, -90, 0);
    std::string out = SvgRect(a.x, a.y, a.w, a.h, "frame");
    out += ValueTicks(a, {0, -20, -40, -60, -80}, "");
    out += "<path class=\"band-in\" d=\"" + BandPath(rmsA, a) + "\"/>";
    out += "<path class=\"band-out\" d=\"" + BandPath(rmsB, a) + "\"/>";
    out += "<path class=\"line-in\" d=\"" + LinePath(peakA, a, true) + "\"/>";
    out += "<path class=\"line-out\" d=\"" + LinePath(peakB, a, true) + "\"/>";
    if (!isnan(limit)) {
        out += "<line class=\"limit\" x1=\"" + Num(a.x) + "\" y1=\"" + Num(a.Y(limit)) +
               "\" x2=\"" + Num(a.x + a.w) + "\" y2=\"" + Num(a.Y(limit)) +
               "\"><title>loud limit " + Num(limit) + " dBFS</title></line>";
    }
    out += SvgText(6, y + 14, name, "lane");
    out += SvgText(6, y + 28, "dBFS: line peak,", "tick");
    out += SvgText(6, y + 40, "band RMS range", "tick");
    return out;
}

// Markers for `frames` on a strip from y0 to y1, grouped when there are many.
std::string Markers(const RunTrace& t, const std::vector<int64_t>& frames,
                    const std::vector<std::string>& titles, double y0, double y1,
                    const std::string& cls, const std::vector<std::string>& links,
                    const std::vector<std::string>& extraClasses) {
    std::string out;
    for (const MarkGroup& g : GroupMarks(frames, t.span, RunTrace::kColumns, kMaxMarkers)) {
        const double x = XOf(t, frames[g.first]);
        std::string title = Clip(titles[g.first], kTitleChars);
        if (g.count > 1) {
            title = std::to_string(g.count) + " from " + title;
        }
        std::string group =
                "<g class=\"" + cls + (extraClasses.empty() ? "" : " " + extraClasses[g.first]) +
                "\" data-count=\"" + std::to_string(g.count) + "\"><title>" + Escape(title) +
                "</title><line x1=\"" + Num(x) + "\" y1=\"" + Num(y0) + "\" x2=\"" + Num(x) +
                "\" y2=\"" + Num(y1) + "\"/><path d=\"M" + Num(x - 4) + "," + Num(y0) + "L" +
                Num(x + 4) + "," + Num(y0) + "L" + Num(x) + "," + Num(y0 + 7) + "Z\"/></g>";
        if (!links.empty() && !links[g.first].empty()) {
            group = "<a href=\"#" + links[g.first] + "\">" + group + "</a>";
        }
        out += group;
    }
    return out;
}

std::string MarkRow(const RunTrace& t, const std::vector<Mark>& marks, double y,
                    const std::string& name, const std::string& cls) {
    std::vector<int64_t> frames;
    std::vector<std::string> titles;
    for (const Mark& m : marks) {
        frames.push_back(m.frame);
        titles.push_back(SecondsText(m.frame, t.rate) + ": " + m.text);
    }
    std::string out = SvgText(6, y + kRowHeight - 4, name, "lane");
    out += SvgRect(kFigureLeft, y, RunTrace::kColumns, kRowHeight, "frame");
    out += Markers(t, frames, titles, y, y + kRowHeight, cls, {}, {});
    return out;
}

}  // namespace

std::string SecondsText(int64_t frame, int rate) {
    char text[32];
    snprintf(text, sizeof(text), "%.3f s", static_cast<double>(frame) / rate);
    return text;
}

std::string SignalFigure(const RunTrace& t) {
    const size_t lanes = t.inWave.size() + t.outWave.size();
    const double wavesHeight = lanes * (kLaneHeight + 4);
    const double height = wavesHeight + 2 * (kLevelHeight + 6) + kAxisHeight + 16;
    std::string out = SvgOpen(kFigureWidth, height, "signal");
    double y = 14;
    for (size_t c = 0; c < t.inWave.size(); ++c, y += kLaneHeight + 4) {
        out += Lane(t.inWave[c], y, "input ch " + std::to_string(c), "wave-in");
    }
    for (size_t c = 0; c < t.outWave.size(); ++c, y += kLaneHeight + 4) {
        out += Lane(t.outWave[c], y, "output ch " + std::to_string(c), "wave-out");
    }
    const MinMaxColumns none(RunTrace::kColumns, t.span);
    out += LevelPlot(t.inPeak, t.inRms, none, none, y, "input level", NAN);
    y += kLevelHeight + 6;
    out += LevelPlot(none, none, t.outPeak, t.outRms, y, "output level", NAN);
    y += kLevelHeight + 6;
    out += TimeTicks(Area(14, 0, 0, 1), Seconds(t), y - 14 + kAxisHeight);

    // One marker per edge over the waveforms, linking to its zoomed view.
    std::vector<int64_t> frames;
    std::vector<std::string> titles, links, classes;
    for (size_t i = 0; i < t.edges.size(); ++i) {
        const EdgeMark& e = t.edges[i];
        frames.push_back(e.frame);
        titles.push_back("edge " + std::to_string(i + 1) + ": " + SecondsText(e.frame, t.rate) +
                         ", channel " + std::to_string(e.channel) +
                         (e.rising ? ", rising" : ", falling") +
                         (e.faded ? ", faded" : ", found, not faded"));
        links.push_back(i < RunTrace::kZoomEdges ? "edge-" + std::to_string(i + 1) : "");
        classes.push_back(e.faded ? "faded" : "not-faded");
    }
    // Lines through the lanes while they are few enough not to hide the waveforms.
    const double bottom = frames.size() <= kMarkersThroughLanes ? 8 + wavesHeight : 14;
    out += Markers(t, frames, titles, 2, bottom, "edge-marker", links, classes);
    return out + "</svg>\n";
}

std::string TimelineFigure(const RunTrace& t) {
    const double rows = t.rows.size() + 3;
    const double height = rows * (kRowHeight + kRowGap) + kAxisHeight + 12;
    std::string out = SvgOpen(kFigureWidth, height, "timeline");
    double y = 6;
    static const char* const kShades[] = {"seg-a", "seg-b", "seg-c"};
    for (const TimelineRow& row : t.rows) {
        out += SvgText(6, y + kRowHeight - 4, row.name, "lane");
        out += SvgRect(kFigureLeft, y, RunTrace::kColumns, kRowHeight, "frame");
        const std::vector<DrawnSegment> pieces =
                FitToWidth(row.segments, t.span, RunTrace::kColumns, kMinSegmentWidth);
        for (size_t p = 0; p < pieces.size(); ++p) {
            const DrawnSegment& d = pieces[p];
            const Segment& s = row.segments[d.index];
            const double x = kFigureLeft + d.x0;
            const double w = d.x1 - d.x0 > 1.5 ? d.x1 - d.x0 : 1.5;
            if (d.merged > 1) {
                out += SvgRect(
                        x, y, w, kRowHeight, "seg-busy",
                        std::to_string(d.merged) + " changes from " + SecondsText(s.start, t.rate));
                continue;
            }
            const std::string title = Clip(s.label, kTitleChars) + " (" +
                                      SecondsText(s.start, t.rate) + " to " +
                                      SecondsText(s.end, t.rate) + ")";
            out += SvgRect(x, y, w, kRowHeight, s.problem ? "seg-bad" : kShades[d.index % 3],
                           title);
            // A label only where it fits (about 5.5 units a character).
            if (w > 5.5 * s.label.size() + 6) {
                out += SvgText(x + 3, y + kRowHeight - 4.5, s.label, "seg");
            }
        }
        y += kRowHeight + kRowGap;
    }
    out += MarkRow(t, t.params, y, "parameters set", "mark param");
    y += kRowHeight + kRowGap;
    out += MarkRow(t, t.events, y, "usage events", "mark event");
    y += kRowHeight + kRowGap;
    out += MarkRow(t, t.errors, y, "errors logged", "mark error");
    y += kRowHeight + kRowGap;
    out += TimeTicks(Area(6, 0, 0, 1), Seconds(t), y - 6 + kAxisHeight);
    return out + "</svg>\n";
}

std::string DetectorFigure(const RunTrace& t) {
    const double height = kLevelHeight + kRowHeight + kAxisHeight + 22;
    std::string out = SvgOpen(kFigureWidth, height, "detector");
    out += LevelPlot(t.detInPeak, t.detInRms, t.detOutPeak, t.detOutRms, 6, "detector in/out",
                     t.loudLimitDbfs);
    const double y = 6 + kLevelHeight + 6;
    out += MarkRow(t, t.loud, y, "loud output", "mark loud");
    out += TimeTicks(Area(6, 0, 0, 1), Seconds(t), y + kRowHeight + kAxisHeight - 6);
    return out + "</svg>\n";
}

std::string EdgeZoom(const RunTrace& t, size_t index) {
    const EdgeMark& e = t.edges[index];
    constexpr double kW = 250, kH = 96;
    float top = 1e-6f;
    for (const std::vector<float>* v : {&e.before, &e.after}) {
        for (float s : *v) {
            top = fabsf(s) > top ? fabsf(s) : top;
        }
    }
    PlotArea a;
    a.x = 4;
    a.y = 4;
    a.w = kW - 8;
    a.h = kH - 8;
    a.lo = -top * 1.1;
    a.hi = top * 1.1;
    std::string out = SvgOpen(kW, kH, "zoom-plot");
    out += SvgRect(a.x, a.y, a.w, a.h, "frame");
    const double edgeX = a.x + a.w * RunTrace::kZoomBefore / (RunTrace::kZoomLength - 1);
    out += "<line class=\"grid\" x1=\"" + Num(edgeX) + "\" y1=\"" + Num(a.y) + "\" x2=\"" +
           Num(edgeX) + "\" y2=\"" + Num(a.y + a.h) + "\"/>";
    out += "<polyline class=\"line-in\" points=\"" + PolylinePoints(e.before, a) + "\"/>";
    out += "<polyline class=\"line-out\" points=\"" + PolylinePoints(e.after, a) + "\"/>";
    return out + "</svg>";
}
