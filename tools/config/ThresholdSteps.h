// The volume level each stream volume index gives under one scene's threshold row: the first
// threshold the index does not exceed decides, above the sixth the level is LOUD (6). Negative
// thresholds count as 0, as the effect reads them (the rule is the effect's own,
// params/BlockRules.h). The data behind the step plots.
#pragma once

#include <stdint.h>

#include <vector>

// Levels for the indices 0 .. maxIndex.
std::vector<int> LevelsByIndex(const int16_t thresholds[6], int maxIndex);
// An index range that shows every threshold of the row and a little beyond.
int StepPlotMaxIndex(const int16_t thresholds[6]);
