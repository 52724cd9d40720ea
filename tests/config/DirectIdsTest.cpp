// The direct tables of a published set resolve every id exactly as the maps do: a copy of the
// set, which is not published, is resolved through its maps and must give the same answers.
#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "effect/orlune.h"

namespace {

struct Outcome {
    Orlune::Resolve result;
    RealParamIdStru ids;
    const AudioOrluneMobilePara* para;
    const AudioOrluneMobileParaExt* ext;
};

Outcome ResolveIn(const ParamTableSet& tables, int id) {
    Outcome o{Orlune::Resolve::NoVirtualId, RealParamIdStru{-1, -1}, nullptr, nullptr};
    o.result = Orlune::ResolveVirtualId(tables, id, &o.ids, &o.para, &o.ext);
    return o;
}

// Every id the mode logic can compose is distinct, decodes to its coordinates and has a slot
// of its own; nothing else is needed for the direct tables to stand in for the maps.
TEST(DirectIds, EveryComposedIdHasItsOwnSlot) {
    std::set<int32_t> ids, slots;
    for (int f = 0; f < vid::kSpeakerFolds; ++f) {
        for (int o = 0; o < vid::kSpeakerOrientations; ++o) {
            for (int s = 0; s < vid::kSpeakerScenes; ++s) {
                for (int l = 0; l < vid::kLevels; ++l) {
                    const int32_t id = vid::SpeakerId(f, o, s, l);
                    const vid::SpeakerCoordinates c = vid::DecodeSpeakerId(id);
                    EXPECT_TRUE(c.fold == f && c.orientation == o && c.scene == s && c.level == l);
                    ids.insert(id);
                    slots.insert(DirectIds::Slot(id));
                }
            }
        }
    }
    for (int m = 0; m < vid::kHeadphoneModes; ++m) {
        for (int k = 0; k < vid::kHeadphoneKinds; ++k) {
            for (int l = 0; l < vid::kLevels; ++l) {
                const int32_t id = vid::HeadphoneId(m, k, l);
                const vid::HeadphoneCoordinates c = vid::DecodeHeadphoneId(id);
                EXPECT_TRUE(c.mode == m && c.kind == k && c.level == l) << id;
                ids.insert(id);
                slots.insert(DirectIds::Slot(id));
            }
        }
    }
    const size_t count = 3 * 2 * 9 * 7 + 9 * 4 * 7;
    EXPECT_EQ(count, ids.size());
    EXPECT_EQ(count, slots.size());
    EXPECT_GE(*slots.begin(), 0);
    EXPECT_LT(*slots.rbegin(), DirectIds::kSlots);
}

TEST(DirectIds, PublishedSetResolvesLikeItsMapsAtEverySlotEdge) {
    {
        ConfigUpdate update;
        ParamTableSet& t = update.Tables();
        // Found, record missing (main, extended), and ids at the edges of the slot ranges and
        // just outside them (which the maps still resolve). Records carry their id.
        const int found[] = {0, 4006, 4400, 4799, 11999, 41000, 41719, 4800, 12000, 41720, -20};
        for (int id : found) {
            t.gVituralMapTable[id] = RealParamIdStru{id * 2 + 1, id * 2};
            t.gRealMapTable[id * 2 + 1].words[0] = static_cast<int16_t>(id);
            t.gRealMapTableExt[id * 2].words[0] = static_cast<int16_t>(id);
        }
        t.gVituralMapTable[20] = RealParamIdStru{7001, 7002};  // no main record
        t.gRealMapTableExt[7002] = AudioOrluneMobileParaExt{};
        t.gVituralMapTable[41081] = RealParamIdStru{7003, 7004};  // no extended record
        t.gRealMapTable[7003] = AudioOrluneMobilePara{};
    }
    const ParamTableSet& published = PublishedTables();
    const ParamTableSet copy = published;
    const int probes[] = {0,     1,     20,    4006,  4007,  4400,  4799,  4800, 8000,
                          11999, 12000, 40999, 41000, 41081, 41719, 41720, -20,  -1};
    int found = 0;
    for (int id : probes) {
        const Outcome a = ResolveIn(published, id);
        const Outcome b = ResolveIn(copy, id);
        ASSERT_EQ(std::make_tuple(a.result, a.ids.ID, a.ids.EXTID, a.para == nullptr),
                  std::make_tuple(b.result, b.ids.ID, b.ids.EXTID, b.para == nullptr))
                << id;
        if (a.para != nullptr) {
            ++found;
            // Each set hands out its own records, with the same content.
            EXPECT_EQ(a.para, &published.gRealMapTable.at(a.ids.ID)) << id;
            EXPECT_EQ(b.para, &copy.gRealMapTable.at(b.ids.ID)) << id;
            EXPECT_EQ(a.para->words[0], b.para->words[0]) << id;
            EXPECT_EQ(a.ext->words[0], b.ext->words[0]) << id;
        }
    }
    EXPECT_EQ(found, 11);
    EXPECT_EQ(ResolveIn(published, 20).result, Orlune::Resolve::NoRealRecord);
    EXPECT_EQ(ResolveIn(published, 41081).result, Orlune::Resolve::NoRealRecord);
    EXPECT_EQ(ResolveIn(published, 1).result, Orlune::Resolve::NoVirtualId);
}

}  // namespace
