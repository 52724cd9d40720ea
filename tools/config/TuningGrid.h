// The tuning space as grids, cell by cell what each virtual id resolves to: per fold state the
// loudspeaker's orientation x scene rows, and the headphones' mode x kind rows, each with the
// seven volume levels as columns.
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

#include "config/VirtualIds.h"
#include "tools/config/ConfigReport.h"

enum class CellKind {
    Record,            // resolves to two records that carry the binary tables
    NoTables,          // resolves, but the extended record lacks the table pointers
    Shadowed,          // resolves, but a duplicate of its NUMID, ID or EXTID was dropped
    MissingRecord,     // in the virtual map, but a record it names is missing
    MissingVirtualId,  // not in the virtual map
};

struct GridCell {
    int32_t virtualId = 0;
    CellKind kind = CellKind::MissingVirtualId;
    std::string label;  // "ID/EXTID", or "-" without a mapping
    std::string title;  // one line for people
};

struct TuningGrid {
    std::string title;
    std::vector<std::string> rows;
    std::vector<std::vector<GridCell>> cells;  // [row][level]
};

constexpr int kGridLevels = vid::kLevels;  // one column per volume level

// Three grids (FOLDED, FULL, HALF_FOLDED) of 2 x 9 rows, then one of 9 x 4 headphone rows.
std::vector<TuningGrid> BuildTuningGrids(const ConfigReport& report);

// The CSS class of a kind and its legend text.
const char* CellKindClass(CellKind kind);
const char* CellKindMeaning(CellKind kind);
