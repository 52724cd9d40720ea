// Hangs the binary tables onto every extended record that a known virtual id reaches. Only
// these ids get table pointers, so the mode logic must only hand the algorithm their records.
#include "base/Log.h"
#include "config/VirtualIds.h"
#include "effect/orlune.h"

namespace {

enum class Device { Headphone, Speaker };

// The extended record of `virtualId` gets the shared tables and `scene` of both TWS tables. A
// record reached by several ids keeps the scene of the last one visited.
void PointTables(ParamTableSet& tables, int virtualId, int scene, Device device) {
    auto v = tables.gVituralMapTable.find(virtualId);
    if (v == tables.gVituralMapTable.end()) {
        if (device == Device::Headphone) {
            ORLUNE_LOGD(kTagMobile, "%s HP do not find currentParamID currentParamMode: %d ",
                        "KivInitConfigPointer", virtualId);
        } else {
            ORLUNE_LOGD(kTagMobile, "%s SPK do not find currentParamID currentParamMode: %d",
                        "KivInitConfigPointer", virtualId);
        }
        return;
    }
    auto e = tables.gRealMapTableExt.find(v->second.EXTID);
    if (e == tables.gRealMapTableExt.end()) {
        if (device == Device::Headphone) {
            ORLUNE_LOGD(kTagMobile, "%s HP do not currentRealParamExtID currentParamMode: %d",
                        "KivInitConfigPointer", virtualId);
        } else {
            ORLUNE_LOGD(kTagMobile, "%s SPK do not find currentRealParamExtID currentParamMode: %d",
                        "KivInitConfigPointer", virtualId);
        }
        return;
    }
    AudioOrluneMobileParaExt& ext = e->second;
    ext.lphTable = Orlune::gLphConfig;
    ext.surTable = Orlune::gX2BConfig;
    ext.tehTable = Orlune::gTehConfig;
    ext.ascTable1 = Orlune::gAscConfig1;
    ext.ascTable2 = Orlune::gAscConfig2;
    ext.twsTable1 = Orlune::gTwsConfig[0] + scene * kTwsSceneWords;
    ext.twsTable2 = Orlune::gTwsConfig[1] + scene * kTwsSceneWords;
}

static_assert(vid::kSpeakerOrientations * vid::kTwsScenesPerOrientation == kTwsScenes,
              "every TWS scene belongs to one orientation");

}  // namespace

void Orlune::KivInitConfigPointer() {
    ConfigUpdate update;  // the pointers go into the set being built
    ParamTableSet& tables = update.Tables();
    // Headphones: every mode, with the levels of the default kind that get tables, all with TWS
    // scene 0.
    for (int mode = 0; mode < vid::kHeadphoneModes; ++mode) {
        for (int level = 0; level < vid::kHeadphoneTableLevels; ++level) {
            PointTables(tables, vid::HeadphoneId(mode, DEFAULT_MODE, level), 0, Device::Headphone);
        }
    }
    // Loudspeaker: per fold state, the portrait ids and then the landscape ids.
    for (int fold = 0; fold < vid::kSpeakerFolds; ++fold) {
        for (int orientation = 0; orientation < vid::kSpeakerOrientations; ++orientation) {
            for (int scene = 0; scene < vid::kSpeakerScenes; ++scene) {
                for (int level = 0; level < vid::kLevels; ++level) {
                    PointTables(tables, vid::SpeakerId(fold, orientation, scene, level),
                                vid::SpeakerTwsScene(orientation, scene), Device::Speaker);
                }
            }
        }
    }
}
