// An instance with the algorithm replaced by a double that keeps every parameter block handed
// to it, and helpers to fill the process-wide tuning maps with records that say who they are.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "effect/orlune.h"
#include "params/ParamIds.h"
#include "tests/support/LogCapture.h"

// One set-parameter call as the algorithm saw it.
struct SetParaCall {
    AudioOrluneMobilePara para;
    AudioOrluneMobileParaExt ext;
};

// Marker words that no overlay touches: they carry the real id a record was registered under.
constexpr int kMainMarkerWord = 400;
constexpr int kExtMarkerWord = 100;

class ParamsFixture : public ::testing::Test {
protected:
    void SetUp() override {
        o = std::make_unique<Orlune>();
        o->initialised = 1;
        o->mAlgoSetPara = [](void**, void*, const AudioOrluneMobilePara* para,
                             const AudioOrluneMobileParaExt* ext) {
            calls.push_back(SetParaCall{*para, *ext});
            return nextResult;
        };
        // Every scene gets the row 2, 4, 6, 8, 10, 12: the default index 5 is level TWO.
        for (auto& row : o->volumeThresholds) {
            std::copy(kRow, kRow + kThresholdsPerScene, row);
        }
        // Only the modes a test adds exist, and the older UI type holds. Other process-wide state
        // is not reset: under ctest each test runs in a process of its own.
        {
            ConfigUpdate update;
            update.Tables().gUiType = 0;
            update.Tables().gVituralMapTable.clear();
            update.Tables().gRealMapTable.clear();
            update.Tables().gRealMapTableExt.clear();
        }
        log.Clear();
    }

    // Maps `virtualId` to the real pair (realId, realId + 1) and adds both records, marked;
    // without `records` the pair is left dangling.
    static void AddMode(int virtualId, int realId, bool records = true) {
        ConfigUpdate update;
        ParamTableSet& tables = update.Tables();
        tables.gVituralMapTable[virtualId] = RealParamIdStru{realId, realId + 1};
        if (records) {
            tables.gRealMapTable[realId].words[kMainMarkerWord] = static_cast<int16_t>(realId);
            tables.gRealMapTableExt[realId + 1].words[kExtMarkerWord] =
                    static_cast<int16_t>(realId + 1);
        }
    }
    static void SetUiType(int16_t uiType) {
        ConfigUpdate update;
        update.Tables().gUiType = uiType;
    }
    static const SetParaCall& LastCall() {
        static const SetParaCall kNone = {};
        return calls.empty() ? kNone : calls.back();
    }
    // Real id of the main record of the last call (-1 when nothing was called).
    static int LastMainId() { return calls.empty() ? -1 : LastCall().para.words[kMainMarkerWord]; }
    static uint16_t MainWord(int i) { return static_cast<uint16_t>(LastCall().para.words[i]); }
    static uint16_t ExtWord(int i) { return static_cast<uint16_t>(LastCall().ext.words[i]); }
    std::string Get(const char* keys) { return o->KivParamsGet(android::String8(keys)).c_str(); }

    static constexpr int16_t kRow[kThresholdsPerScene] = {2, 4, 6, 8, 10, 12};
    static inline std::vector<SetParaCall> calls;
    static inline int32_t nextResult = 0;
    std::unique_ptr<Orlune> o;
    LogCapture log;
};
