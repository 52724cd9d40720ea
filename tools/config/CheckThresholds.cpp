// The raw volume thresholds: negative words and rows that do not ascend.
#include <string>

#include "config/NameLists.h"
#include "effect/orlune.h"
#include "tools/config/Checks.h"

namespace {

// The scenes that copy a configured row.
std::string RowUsers(int row) {
    switch (row) {
        case SCENE_MUSIC:
            return "MUSIC, RING and headphones";
        case SCENE_GAME:
            return "GAME and GAME_HIGH_TEMP";
        case SCENE_MOVIE:
            return "MOVIE and VOICEENHANCE";
        default:
            return kSceneNames[row];
    }
}

}  // namespace

void InspectThresholds(ConfigReport* r) {
    for (int i = 0; i < kVolumeThrRawWords; ++i) {
        r->thresholdRaw[i] = Orlune::gVolumeThrRaw[i];
    }
    bool given = false;
    for (const ValueCount& c : CountedValues()) {
        given = given || c.id == 30160;
    }
    if (!given) {
        r->Add(Severity::Warning, "no_thresholds",
               "main XML has no volume thresholds (ID 30160): every index above 0 is LOUD");
        return;
    }
    for (int row = 0; row < 6; ++row) {
        const int16_t* t = &r->thresholdRaw[1 + 6 * row];
        std::string text;
        for (int i = 0; i < 6; ++i) {
            text += (i == 0 ? "" : " ") + std::to_string(t[i]);
        }
        for (int i = 0; i < 6; ++i) {
            if (t[i] < 0) {
                r->Add(Severity::Error, "negative_threshold",
                       std::string("volume thresholds ") + kSceneNames[row] + " (" + text +
                               "): position " + std::to_string(i) + " is negative and becomes 0 (" +
                               RowUsers(row) + ")");
            }
        }
        for (int i = 0; i + 1 < 6; ++i) {
            if (t[i + 1] < t[i]) {
                r->Add(Severity::Error, "threshold_order",
                       std::string("volume thresholds ") + kSceneNames[row] + " (" + text +
                               ") do not ascend: the first threshold the index does not exceed "
                               "decides, so some levels are skipped (" +
                               RowUsers(row) + ")");
                break;
            }
            if (t[i + 1] == t[i]) {
                r->Add(Severity::Warning, "threshold_order",
                       std::string("volume thresholds ") + kSceneNames[row] + " (" + text +
                               "): level " + kVolumeLevelNames[i + 1] + " can never be chosen");
            }
        }
    }
}
