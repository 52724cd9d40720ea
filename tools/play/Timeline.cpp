#include "tools/play/Timeline.h"

namespace {

const char* const kRowNames[ROW_COUNT] = {"device",
                                          "fold state",
                                          "orientation",
                                          "scene",
                                          "volume level",
                                          "headphone mode",
                                          "tuning (virtual id: ID/EXTID)",
                                          "click remover",
                                          "swap cross-fade",
                                          "start-up guard"};

}  // namespace

TimelineBuilder::TimelineBuilder() : mRows(ROW_COUNT), mOpen(ROW_COUNT, false) {
    for (int r = 0; r < ROW_COUNT; ++r) {
        mRows[r].name = kRowNames[r];
    }
}

void TimelineBuilder::Set(int row, int64_t frame, const std::string& label, bool problem) {
    std::vector<Segment>& segments = mRows[row].segments;
    if (mOpen[row]) {
        Segment& last = segments.back();
        if (last.label == label && last.problem == problem) {
            last.end = frame;
            return;
        }
        last.end = frame;
        mOpen[row] = false;
    }
    if (!label.empty()) {
        segments.push_back({frame, frame, label, problem});
        mOpen[row] = true;
    }
}

void TimelineBuilder::Finish(int64_t frame) {
    for (int r = 0; r < ROW_COUNT; ++r) {
        if (mOpen[r]) {
            mRows[r].segments.back().end = frame;
            mOpen[r] = false;
        }
    }
}

std::vector<DrawnSegment> FitToWidth(const std::vector<Segment>& segments, int64_t span,
                                     double width, double minWidth) {
    std::vector<DrawnSegment> out;
    const double scale = width / static_cast<double>(span > 0 ? span : 1);
    DrawnSegment busy;
    bool pending = false;
    auto flush = [&]() {
        if (pending) {
            out.push_back(busy);
            pending = false;
        }
    };
    for (size_t i = 0; i < segments.size(); ++i) {
        const double x0 = static_cast<double>(segments[i].start) * scale;
        const double x1 = static_cast<double>(segments[i].end) * scale;
        if (x1 - x0 >= minWidth) {
            flush();
            out.push_back({x0, x1, i, 1});
            continue;
        }
        if (pending && x0 - busy.x1 < minWidth) {
            busy.x1 = x1;
            ++busy.merged;
        } else {
            flush();
            busy = {x0, x1, i, 1};
            pending = true;
        }
        if (busy.x1 - busy.x0 >= minWidth) {
            flush();
        }
    }
    flush();
    return out;
}
