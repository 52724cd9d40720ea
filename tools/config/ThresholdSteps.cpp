#include "tools/config/ThresholdSteps.h"

#include "params/BlockRules.h"

std::vector<int> LevelsByIndex(const int16_t thresholds[6], int maxIndex) {
    int16_t row[6];
    for (int i = 0; i < 6; ++i) {
        row[i] = thresholds[i] < 0 ? 0 : thresholds[i];  // as the effect reads the raw words
    }
    std::vector<int> levels;
    for (int index = 0; index <= maxIndex; ++index) {
        levels.push_back(pipeline::VolumeLevelOf(row, 6, index));
    }
    return levels;
}

int StepPlotMaxIndex(const int16_t thresholds[6]) {
    int top = 15;
    for (int i = 0; i < 6; ++i) {
        top = thresholds[i] + 2 > top ? thresholds[i] + 2 : top;
    }
    return top > 200 ? 200 : top;
}
