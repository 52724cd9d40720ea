#include "tools/config/ThresholdSteps.h"

std::vector<int> LevelsByIndex(const int16_t thresholds[6], int maxIndex) {
    std::vector<int> levels;
    for (int index = 0; index <= maxIndex; ++index) {
        int level = 6;
        for (int i = 0; i < 6; ++i) {
            const int t = thresholds[i] < 0 ? 0 : thresholds[i];
            if (index <= t) {
                level = i;
                break;
            }
        }
        levels.push_back(level);
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
