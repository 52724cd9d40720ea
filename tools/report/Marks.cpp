#include "tools/report/Marks.h"

std::vector<MarkGroup> GroupMarks(const std::vector<int64_t>& positions, int64_t span, int columns,
                                  size_t maxMarkers) {
    std::vector<MarkGroup> groups;
    if (positions.empty() || columns <= 0 || maxMarkers == 0) {
        return groups;
    }
    span = span > 0 ? span : 1;
    auto columnOf = [&](int64_t p) {
        const int64_t c = p <= 0 ? 0 : p * columns / span;
        return static_cast<int>(c >= columns ? columns - 1 : c);
    };
    // Bins wide enough that even one mark per bin stays within the bound.
    const int bin = positions.size() <= maxMarkers
                            ? 0
                            : static_cast<int>((static_cast<size_t>(columns) + maxMarkers - 1) /
                                               maxMarkers);
    for (size_t i = 0; i < positions.size(); ++i) {
        const int column = columnOf(positions[i]);
        if (bin > 0 && !groups.empty() && column / bin == groups.back().column / bin) {
            ++groups.back().count;
        } else {
            groups.push_back({column, i, 1});
        }
    }
    return groups;
}
