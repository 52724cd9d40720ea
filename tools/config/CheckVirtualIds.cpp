// Every virtual id the mode logic can ask for: does it resolve, to which records, and do those
// records carry the binary tables.
#include <string>

#include "config/NameLists.h"
#include "config/VirtualIds.h"
#include "effect/orlune.h"
#include "tools/config/Checks.h"

namespace {

IdResolution Resolve(int32_t virtualId, IdGroup group, const std::string& name) {
    IdResolution res{virtualId, group, name};
    RealParamIdStru ids{};
    const AudioOrluneMobileParaExt* ext = nullptr;
    const Orlune::Resolve result = Orlune::ResolveVirtualId(virtualId, &ids, nullptr, &ext);
    res.mapped = result != Orlune::Resolve::NoVirtualId;
    res.id = ids.ID;
    res.extId = ids.EXTID;
    res.resolved = result == Orlune::Resolve::Found;
    res.hasTables = res.resolved && ext->lphTable == Orlune::gLphConfig &&
                    ext->surTable == Orlune::gX2BConfig;
    return res;
}

std::string Problem(const IdResolution& id) {
    if (!id.mapped) {
        return "is not in the virtual map";
    }
    const bool main = PublishedTables().gRealMapTable.count(id.id) != 0;
    const bool ext = PublishedTables().gRealMapTableExt.count(id.extId) != 0;
    std::string missing = !main && !ext ? "ID " + std::to_string(id.id) + " and EXTID " +
                                                  std::to_string(id.extId) + " have no records"
                          : !main ? "ID " + std::to_string(id.id) + " has no main record"
                                  : "EXTID " + std::to_string(id.extId) + " has no extended record";
    return "maps to ID " + std::to_string(id.id) + " / EXTID " + std::to_string(id.extId) +
           ", but " + missing;
}

}  // namespace

void InspectVirtualIds(ConfigReport* r) {
    // The ids in the order the table pointers are set: headphones first, then per fold state
    // the portrait and the landscape speaker ids.
    for (int mode = 0; mode < vid::kHeadphoneModes; ++mode) {
        for (int level = 0; level < vid::kHeadphoneTableLevels; ++level) {
            r->ids.push_back(Resolve(vid::HeadphoneId(mode, DEFAULT_MODE, level),
                                     IdGroup::Headphone,
                                     std::string(kHpModeNames[mode]) + "_" + kParamModeNames[0] +
                                             "_" + kVolumeLevelNames[level]));
        }
    }
    for (int fold = 0; fold < vid::kSpeakerFolds; ++fold) {
        for (int orientation = 0; orientation < vid::kSpeakerOrientations; ++orientation) {
            for (int scene = 0; scene < vid::kSpeakerScenes; ++scene) {
                for (int level = 0; level < vid::kLevels; ++level) {
                    r->ids.push_back(Resolve(
                            vid::SpeakerId(fold, orientation, scene, level), IdGroup::Speaker,
                            std::string(kFoldStateNames[fold]) + "_" +
                                    kOrientationNames[orientation] + "_" + kSceneNames[scene] +
                                    "_" + kVolumeLevelNames[level]));
                }
            }
        }
    }
    for (int mode = 0; mode < vid::kHeadphoneModes; ++mode) {
        for (int kind = 0; kind < vid::kHeadphoneKinds; ++kind) {
            for (int level = 0; level < vid::kLevels; ++level) {
                if (vid::HeadphoneIdGetsTables(kind, level)) {
                    continue;  // listed above
                }
                r->ids.push_back(
                        Resolve(vid::HeadphoneId(mode, kind, level), IdGroup::HeadphoneExtra,
                                std::string(kHpModeNames[mode]) + "_" + kParamModeNames[kind] +
                                        "_" + kVolumeLevelNames[level]));
            }
        }
    }

    for (const IdResolution& id : r->ids) {
        const std::string label = "virtual id " + std::to_string(id.virtualId) + " (" +
                                  (id.group == IdGroup::Speaker ? "SPEAKER_" : "HEADPHONE_") +
                                  id.name + ") ";
        if (!id.resolved) {
            r->Add(id.group == IdGroup::HeadphoneExtra ? Severity::Warning : Severity::Error,
                   "unresolved_id",
                   label + Problem(id) + ": at run time the previous tuning stays in force");
        } else if (!id.hasTables) {
            r->Add(Severity::Error, "no_table_pointers",
                   label + "reaches EXTID " + std::to_string(id.extId) +
                           ", which no pointer-set id reaches: the algorithm would get it without "
                           "its binary tables");
        }
    }
}
