// Hangs the binary tables onto every extended record that a known virtual id reaches. Only
// these ids get table pointers, so the mode logic must only hand the algorithm their records.
#include "base/Log.h"
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

}  // namespace

void Orlune::KivInitConfigPointer() {
    ConfigUpdate update;  // the pointers go into the set being built
    ParamTableSet& tables = update.Tables();
    // Headphones: nine modes, levels 0..3 of the default kind, all with scene 0.
    for (int mode = 0; mode < 9; ++mode) {
        for (int level = 0; level < 4; ++level) {
            PointTables(tables, 41000 + 80 * mode + level, 0, Device::Headphone);
        }
    }
    // Loudspeaker: per fold state, portrait scenes 0..8 (scene 8 uses TWS scene 2), then
    // landscape scenes 0..8 (TWS scenes 8..15, scene 8 uses TWS scene 10).
    for (int fold = 0; fold < 3; ++fold) {
        for (int scene = 0; scene < 9; ++scene) {
            for (int level = 0; level < 7; ++level) {
                PointTables(tables, 4000 * fold + 20 * scene + level, scene < 8 ? scene : 2,
                            Device::Speaker);
            }
        }
        for (int scene = 0; scene < 9; ++scene) {
            for (int level = 0; level < 7; ++level) {
                PointTables(tables, 4000 * fold + 400 + 20 * scene + level,
                            scene < 8 ? 8 + scene : 10, Device::Speaker);
            }
        }
    }
}
