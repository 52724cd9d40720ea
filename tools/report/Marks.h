// Point marks on a time axis (edges, parameter changes, errors) kept to a bounded number of
// drawn markers: each mark gets its own marker while there are few; beyond that, marks that
// fall into the same bin of pixel columns share one marker that counts them.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

struct MarkGroup {
    int column = 0;    // pixel column of the group's first mark
    size_t first = 0;  // index of its first mark
    size_t count = 0;  // marks in the group
};

// `positions` in ascending order; `span` positions fill `columns` columns.
std::vector<MarkGroup> GroupMarks(const std::vector<int64_t>& positions, int64_t span, int columns,
                                  size_t maxMarkers);
