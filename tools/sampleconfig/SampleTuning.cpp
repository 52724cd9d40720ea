#include "tools/sampleconfig/SampleTuning.h"

#include <math.h>

#include <set>

#include "config/VirtualIds.h"

namespace {

constexpr int kLevels = vid::kLevels;
constexpr int kKinds = vid::kHeadphoneKinds;
constexpr int kHpModes = vid::kHeadphoneModes;

int32_t SpeakerMainId(int scene, int level) {
    return 1001 + 2 * (kLevels * scene + level);
}
int32_t SpeakerExtId(int scene) {
    return 1200 + 2 * scene;
}
int32_t HeadphoneMainId(int mode, int kind, int level) {
    return 3001 + 2 * (kKinds * kLevels * mode + kLevels * kind + level);
}
int32_t HeadphoneExtId(int mode) {
    return 3600 + 2 * mode;
}

}  // namespace

int16_t GainWord(double gainDb) {
    return static_cast<int16_t>(lround(4096.0 * pow(10.0, gainDb / 20.0)) - 4096);
}

int16_t WidthWord(double width) {
    return static_cast<int16_t>(lround(4096.0 * width) - 4096);
}

bool BuildSampleTuning(const SampleSource& s, SampleTuning* t, std::string* error) {
    std::set<int16_t> speakerWords;
    for (int scene = 0; scene < SCENE_COUNT; ++scene) {
        for (int level = 0; level < kLevels; ++level) {
            const double db = s.speaker[scene].gainDb + level * s.speakerLevelStepDb;
            const int16_t word = GainWord(db);
            if (!speakerWords.insert(word).second) {
                *error = std::string("speaker ") + kSceneNames[scene] + " level " +
                         kVolumeLevelNames[level] + " has the gain of another speaker tuning";
                return false;
            }
            t->mainRecords.push_back({SpeakerMainId(scene, level), word});
        }
        t->extRecords.push_back({SpeakerExtId(scene), WidthWord(s.speaker[scene].width)});
    }
    std::set<int16_t> headphoneWords;
    for (int mode = 0; mode < kHpModes; ++mode) {
        for (int kind = 0; kind < kKinds; ++kind) {
            for (int level = 0; level < kLevels; ++level) {
                const double db = s.headphone[mode].gainDb + kind * s.headphoneKindStepDb +
                                  level * s.headphoneLevelStepDb;
                const int16_t word = GainWord(db);
                if (!headphoneWords.insert(word).second) {
                    *error = std::string("headphone ") + kHpModeNames[mode] + " kind " +
                             kParamModeNames[kind] + " level " + kVolumeLevelNames[level] +
                             " has the gain of another headphone tuning";
                    return false;
                }
                t->mainRecords.push_back({HeadphoneMainId(mode, kind, level), word});
            }
        }
        t->extRecords.push_back({HeadphoneExtId(mode), WidthWord(s.headphone[mode].width)});
    }

    for (int fold = 0; fold < vid::kSpeakerFolds; ++fold) {
        for (int orientation = 0; orientation < vid::kSpeakerOrientations; ++orientation) {
            for (int scene = 0; scene < SCENE_COUNT; ++scene) {
                for (int level = 0; level < kLevels; ++level) {
                    t->mappings.push_back({vid::SpeakerId(fold, orientation, scene, level),
                                           SpeakerMainId(scene, level), SpeakerExtId(scene),
                                           s.speaker[scene].gainDb + level * s.speakerLevelStepDb,
                                           s.speaker[scene].width,
                                           std::string("SPEAKER_") + kFoldStateNames[fold] + "_" +
                                                   kOrientationNames[orientation] + "_" +
                                                   kSceneNames[scene] + "_" +
                                                   kVolumeLevelNames[level]});
                }
            }
        }
    }
    for (int mode = 0; mode < kHpModes; ++mode) {
        for (int kind = 0; kind < kKinds; ++kind) {
            for (int level = 0; level < kLevels; ++level) {
                t->mappings.push_back({vid::HeadphoneId(mode, kind, level),
                                       HeadphoneMainId(mode, kind, level), HeadphoneExtId(mode),
                                       s.headphone[mode].gainDb + kind * s.headphoneKindStepDb +
                                               level * s.headphoneLevelStepDb,
                                       s.headphone[mode].width,
                                       std::string("HEADPHONE_") + kHpModeNames[mode] + "_" +
                                               kParamModeNames[kind] + "_" +
                                               kVolumeLevelNames[level]});
            }
        }
    }
    return true;
}
