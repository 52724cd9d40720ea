#include "tools/config/TuningGrid.h"

#include <map>

#include "config/NameLists.h"
#include "config/VirtualIds.h"

namespace {

GridCell Cell(const std::map<int32_t, const IdResolution*>& ids, const ConfigReport& r,
              int32_t virtualId, const std::string& name) {
    GridCell cell;
    cell.virtualId = virtualId;
    const auto found = ids.find(virtualId);
    const IdResolution* id = found != ids.end() ? found->second : nullptr;
    const std::string head = std::to_string(virtualId) + " " + name + ": ";
    if (id == nullptr || !id->mapped) {
        cell.kind = CellKind::MissingVirtualId;
        cell.label = "-";
        cell.title = head + "not in the virtual map; the previous tuning stays in force";
        return cell;
    }
    const std::string records = std::to_string(id->id) + "/" + std::to_string(id->extId);
    cell.label = records;
    const bool duplicate = r.duplicateNumids.count(virtualId) != 0 ||
                           r.duplicateIds.count(id->id) != 0 ||
                           r.duplicateIds.count(id->extId) != 0;
    if (!id->resolved) {
        cell.kind = CellKind::MissingRecord;
        cell.title = head + "ID " + std::to_string(id->id) + " / EXTID " +
                     std::to_string(id->extId) + ", but a record is missing";
    } else if (!id->hasTables) {
        cell.kind = CellKind::NoTables;
        cell.title = head + "ID " + std::to_string(id->id) + " / EXTID " +
                     std::to_string(id->extId) + ", without the binary tables";
    } else if (duplicate) {
        cell.kind = CellKind::Shadowed;
        cell.title = head + "ID " + std::to_string(id->id) + " / EXTID " +
                     std::to_string(id->extId) + "; a later duplicate was dropped";
    } else {
        cell.kind = CellKind::Record;
        cell.title =
                head + "ID " + std::to_string(id->id) + " / EXTID " + std::to_string(id->extId);
    }
    return cell;
}

}  // namespace

std::vector<TuningGrid> BuildTuningGrids(const ConfigReport& r) {
    std::map<int32_t, const IdResolution*> ids;
    for (const IdResolution& id : r.ids) {
        ids[id.virtualId] = &id;
    }
    std::vector<TuningGrid> grids;
    for (int fold = 0; fold < vid::kSpeakerFolds; ++fold) {
        TuningGrid g;
        g.title = std::string("loudspeaker, ") + kFoldStateNames[fold];
        for (int orientation = 0; orientation < vid::kSpeakerOrientations; ++orientation) {
            for (int scene = 0; scene < vid::kSpeakerScenes; ++scene) {
                const std::string row =
                        std::string(kOrientationNames[orientation]) + " " + kSceneNames[scene];
                g.rows.push_back(row);
                g.cells.emplace_back();
                for (int level = 0; level < kGridLevels; ++level) {
                    const int32_t id = vid::SpeakerId(fold, orientation, scene, level);
                    g.cells.back().push_back(Cell(ids, r, id,
                                                  std::string(kFoldStateNames[fold]) + " " + row +
                                                          " " + kVolumeLevelNames[level]));
                }
            }
        }
        grids.push_back(g);
    }
    TuningGrid hp;
    hp.title = "headphones";
    for (int mode = 0; mode < vid::kHeadphoneModes; ++mode) {
        for (int kind = 0; kind < vid::kHeadphoneKinds; ++kind) {
            const std::string row = std::string(kHpModeNames[mode]) + " " + kParamModeNames[kind];
            hp.rows.push_back(row);
            hp.cells.emplace_back();
            for (int level = 0; level < kGridLevels; ++level) {
                hp.cells.back().push_back(Cell(ids, r, vid::HeadphoneId(mode, kind, level),
                                               row + " " + kVolumeLevelNames[level]));
            }
        }
    }
    grids.push_back(hp);
    return grids;
}

const char* CellKindClass(CellKind kind) {
    switch (kind) {
        case CellKind::Record:
            return "record";
        case CellKind::NoTables:
            return "no-tables";
        case CellKind::Shadowed:
            return "shadowed";
        case CellKind::MissingRecord:
            return "missing-record";
        case CellKind::MissingVirtualId:
            return "missing-vid";
    }
    return "";
}

const char* CellKindMeaning(CellKind kind) {
    switch (kind) {
        case CellKind::Record:
            return "resolves to a record (ID/EXTID)";
        case CellKind::NoTables:
            return "resolves, but without the binary tables";
        case CellKind::Shadowed:
            return "resolves; a duplicate of its NUMID or record was dropped";
        case CellKind::MissingRecord:
            return "mapped, but a record is missing";
        case CellKind::MissingVirtualId:
            return "virtual id missing";
    }
    return "";
}
