// The run's timeline: one row per thing that can change during playback, each a list of
// segments over input frames with the label in force. Blocks report their state in order; a
// segment grows while the label stays the same.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <vector>

struct Segment {
    int64_t start = 0;  // first input frame
    int64_t end = 0;    // one past the last
    std::string label;
    bool problem = false;  // e.g. a virtual id that resolved to nothing
};

enum TimelineRowId {
    ROW_DEVICE,
    ROW_FOLD,
    ROW_ORIENTATION,
    ROW_SCENE,
    ROW_LEVEL,
    ROW_HP_MODE,
    ROW_TUNING,
    ROW_CLICK_REMOVER,
    ROW_SWAP,
    ROW_GUARD,
    ROW_COUNT,
};

struct TimelineRow {
    std::string name;
    std::vector<Segment> segments;
};

// A row's segments as drawn `width` units wide: a segment narrower than `minWidth` joins its
// narrow neighbours in one "busy" piece that counts them, so a row never draws more than about
// width / minWidth pieces however often its value changed.
struct DrawnSegment {
    double x0 = 0;
    double x1 = 0;
    size_t index = 0;   // the (first) segment drawn
    size_t merged = 1;  // segments in the piece; more than one: a busy piece
};
std::vector<DrawnSegment> FitToWidth(const std::vector<Segment>& segments, int64_t span,
                                     double width, double minWidth);

class TimelineBuilder {
public:
    TimelineBuilder();
    // From `frame` on, `row` shows `label`; an empty label shows nothing.
    void Set(int row, int64_t frame, const std::string& label, bool problem = false);
    // Closes every open segment at `frame`.
    void Finish(int64_t frame);
    const std::vector<TimelineRow>& Rows() const { return mRows; }

private:
    std::vector<TimelineRow> mRows;
    std::vector<bool> mOpen;
};
