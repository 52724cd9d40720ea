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

// Every id the mode logic can compose; each decodes to its coordinates and has a slot.
std::set<int32_t> ComposedIds() {
    std::set<int32_t> ids;
    auto add = [&ids](int32_t id, bool decodes) {
        EXPECT_TRUE(decodes && DirectIds::Slot(id) >= 0 && DirectIds::Slot(id) < DirectIds::kSlots)
                << id;
        ids.insert(id);
    };
    for (int f = 0; f < vid::kSpeakerFolds; ++f) {
        for (int o = 0; o < vid::kSpeakerOrientations; ++o) {
            for (int s = 0; s < vid::kSpeakerScenes; ++s) {
                for (int l = 0; l < vid::kLevels; ++l) {
                    const vid::SpeakerCoordinates c =
                            vid::DecodeSpeakerId(vid::SpeakerId(f, o, s, l));
                    add(vid::SpeakerId(f, o, s, l),
                        c.fold == f && c.orientation == o && c.scene == s && c.level == l);
                }
            }
        }
    }
    for (int m = 0; m < vid::kHeadphoneModes; ++m) {
        for (int k = 0; k < vid::kHeadphoneKinds; ++k) {
            for (int l = 0; l < vid::kLevels; ++l) {
                const vid::HeadphoneCoordinates c =
                        vid::DecodeHeadphoneId(vid::HeadphoneId(m, k, l));
                add(vid::HeadphoneId(m, k, l), c.mode == m && c.kind == k && c.level == l);
            }
        }
    }
    EXPECT_EQ(ids.size(), 3u * 2 * 9 * 7 + 9 * 4 * 7);  // all distinct
    return ids;
}

// Every composed id names records of its own, so two ids sharing a slot would answer wrongly.
TEST(DirectIds, PublishedSetResolvesLikeItsMapsForEveryComposedIdAndAtEverySlotEdge) {
    // Found, record missing (main, extended; ids that are not composed), and ids at the edges of
    // the slot ranges and just outside them (which the maps still resolve). Records carry their id.
    std::set<int32_t> found = ComposedIds();
    found.insert({0, 4006, 4400, 4799, 11999, 41000, 41719, 4800, 12000, 41720, -20});
    {
        ConfigUpdate update;
        ParamTableSet& t = update.Tables();
        for (int id : found) {
            t.gVituralMapTable[id] = RealParamIdStru{id * 2 + 1, id * 2};
            t.gRealMapTable[id * 2 + 1].words[0] = static_cast<int16_t>(id);
            t.gRealMapTableExt[id * 2].words[0] = static_cast<int16_t>(id);
        }
        t.gVituralMapTable[27] = RealParamIdStru{7001, 7002};  // no main record
        t.gRealMapTableExt[7002] = AudioOrluneMobileParaExt{};
        t.gVituralMapTable[41087] = RealParamIdStru{7003, 7004};  // no extended record
        t.gRealMapTable[7003] = AudioOrluneMobilePara{};
    }
    const ParamTableSet& published = PublishedTables();
    const ParamTableSet copy = published;
    std::set<int32_t> probes = found;
    probes.insert({7, 27, 4007, 8000, 40999, 41087, -1});
    size_t resolved = 0;
    for (int id : probes) {
        const Outcome a = ResolveIn(published, id);
        const Outcome b = ResolveIn(copy, id);
        ASSERT_EQ(std::make_tuple(a.result, a.ids.ID, a.ids.EXTID, a.para == nullptr),
                  std::make_tuple(b.result, b.ids.ID, b.ids.EXTID, b.para == nullptr))
                << id;
        if (a.para != nullptr) {
            ++resolved;
            // Each set hands out its own records, with the same content.
            EXPECT_EQ(a.para, &published.gRealMapTable.at(a.ids.ID)) << id;
            EXPECT_EQ(b.para, &copy.gRealMapTable.at(b.ids.ID)) << id;
            EXPECT_EQ(a.para->words[0], b.para->words[0]) << id;
            EXPECT_EQ(a.ext->words[0], b.ext->words[0]) << id;
        }
    }
    EXPECT_EQ(resolved, found.size());
    EXPECT_EQ(ResolveIn(published, 27).result, Orlune::Resolve::NoRealRecord);
    EXPECT_EQ(ResolveIn(published, 41087).result, Orlune::Resolve::NoRealRecord);
    EXPECT_EQ(ResolveIn(published, 7).result, Orlune::Resolve::NoVirtualId);
}

}  // namespace
